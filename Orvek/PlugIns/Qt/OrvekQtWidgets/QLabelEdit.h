#pragma once

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/OrvekQtWidgetsExport.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/ui_QLabelEdit.h>

#include <QtWidgets/QWidget>

//! Edits a text in one row: title, text field, units and a button that returns to the default.
//!
//! The text is committed as typed when the field finishes editing. The reset button follows the values that the host
//! sets; typing alone does not change it, and on a new editor it is enabled.
//!
//! Its children are "label", "lineEdit", "units" and "reset".
class ORVEKQTWIDGETS_EXPORT QLabelEdit : public QWidget
{
    Q_OBJECT
    //! Whether the reset button can be used while the value differs from the default. Default true. The button is
    //! always visible.
    Q_PROPERTY(bool showDefaultButton READ showDefaultButton WRITE setShowDefaultButton)
    //! If true, the user can change the value neither by typing nor with the reset button. Default false.
    Q_PROPERTY(bool readOnly READ readOnly WRITE setReadOnly)
    //! The value, any text. Default empty.
    Q_PROPERTY(QString value READ value WRITE setValue)
    //! What the reset button returns to. Default empty.
    Q_PROPERTY(QString defaultValue READ defaultValue WRITE setDefaultValue)
    //! The text of the label, and the window title, which the search of a section compares. Default "label".
    Q_PROPERTY(QString title READ title WRITE setTitle)
    //! Width of the label in pixels, default 80. Returned as set; an impossible width, such as a negative one, is laid
    //! out as the nearest possible one. The same holds for unitsWidth.
    Q_PROPERTY(int labelWidth READ labelWidth WRITE setLabelWidth)
    //! Text after the field, for display only. Default empty.
    Q_PROPERTY(QString units READ units WRITE setUnits)
    //! Width of the units in pixels, default 40.
    Q_PROPERTY(int unitsWidth READ unitsWidth WRITE setUnitsWidth)

public:
    explicit QLabelEdit(QWidget* parent = nullptr);

    bool showDefaultButton() const;
    void setShowDefaultButton(bool show);
    bool readOnly() const;
    void setReadOnly(bool readOnly);
    QString value() const;
    //! Shows and stores the text without valueChanged(). Afterwards the editor's signals are not blocked, even if they
    //! were before.
    void setValue(QString value);
    QString defaultValue() const;
    //! Also turns showDefaultButton on.
    void setDefaultValue(QString value);
    QString title() const;
    void setTitle(QString title);
    int labelWidth() const;
    void setLabelWidth(int width);
    QString units() const;
    void setUnits(QString units);
    int unitsWidth() const;
    void setUnitsWidth(int width);

Q_SIGNALS:
    //! The user committed a text, even the same one, or reset it; value() already returns the new one.
    void valueChanged();
    //! Never emitted.
    void startedEdit();

public Q_SLOTS:
    //! Connected by name to the signals of the children; hosts need not call them.
    void on_lineEdit_editingFinished();
    void on_reset_clicked();

private:
    Ui::QLabelEdit m_ui; // the children belong to the editor
    int m_labelWidth = 80;
    int m_unitsWidth = 40;
    QString m_value;
    QString m_defaultValue;
    bool m_showDefaultButton = true;
};
