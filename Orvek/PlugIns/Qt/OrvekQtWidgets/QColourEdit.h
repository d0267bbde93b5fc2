#pragma once

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/OrvekQtWidgetsExport.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QPropertyEditWidget.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/ui_QColourEdit.h>

//! Edits a colour as four numbers in one row: title and a text field each for red, green, blue and alpha.
//!
//! The fields are for entry only: they show what was typed, not the stored colour; a host that wants the colour there
//! writes it into them. A component is committed when its field finishes editing. Text that is not a number in C
//! notation, with a decimal point, is ignored. Components have no range, so lights can be brighter than white.
//!
//! Its children are "label", "red", "green", "blue" and "alpha".
class ORVEKQTWIDGETS_EXPORT QColourEdit : public QPropertyEditWidget
{
    Q_OBJECT
    //! The title, and the window title, which the search of a section compares. Default "colour".
    Q_PROPERTY(QString label READ label WRITE setLabel)
    //! Width of the title in pixels, default 80. Returned as set; an impossible width, such as a negative one, is laid
    //! out as the nearest possible one.
    Q_PROPERTY(int labelWidth READ labelWidth WRITE setLabelWidth)
    //! Whether the alpha field is visible on the screen: false while the editor itself is hidden. Setting it shows or
    //! hides the field within the editor; the field is shown by default.
    Q_PROPERTY(bool showAlpha READ showAlpha WRITE setShowAlpha)

public:
    explicit QColourEdit(QWidget* parent = nullptr);

    QString label() const;
    void setLabel(QString label);
    int labelWidth() const;
    void setLabelWidth(int width);
    bool showAlpha() const;
    void setShowAlpha(bool show);
    //! Stores red, green, blue and alpha. The array of four is copied; null is ignored. The fields stay as they are and
    //! no signal is emitted.
    void setColour(const double* rgba);
    void setColour(double r, double g, double b, double a);
    //! The four stored components in the order red, green, blue, alpha; 0 at first. The array belongs to the editor,
    //! lives as long as it does and follows each change.
    const double* colour() const;

Q_SIGNALS:
    //! The user committed a component, even if the number is the same as before; colour() already returns the new one.
    void valueChanged();

public Q_SLOTS:
    //! Connected by name to the signals of the children; hosts need not call them.
    void on_red_editingFinished();
    void on_green_editingFinished();
    void on_blue_editingFinished();
    void on_alpha_editingFinished();

private:
    void commit(const QLineEdit* field, int component);

    int m_labelWidth = 80;
    Ui::QColourEdit m_ui; // the children belong to the editor
    double m_colour[4] = {0.0, 0.0, 0.0, 0.0};
};
