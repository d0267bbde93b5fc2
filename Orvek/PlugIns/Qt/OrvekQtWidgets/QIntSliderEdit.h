#pragma once

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/OrvekQtWidgetsExport.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/ui_QIntSliderEdit.h>

#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtWidgets/QWidget>

//! Edits a whole number between a minimum and a maximum in one row: title, slider, text field, units and a button that
//! returns to the default. The values can have names, which makes it an editor for an enumeration, or be powers of two.
//!
//! What the user does is announced by signals; what the host sets through setValue() is not. The text field keeps what
//! was typed, even if the number was clamped. Text that is not a whole number counts as 0.
//!
//! The wheel scrolls the area around the editor and never changes the value. Its children are "label", "slider",
//! "lineEdit", "units" and "reset".
class ORVEKQTWIDGETS_EXPORT QIntSliderEdit : public QWidget
{
    Q_OBJECT
    //! The text of the label, and the window title, which the search of a section compares. Default "label".
    Q_PROPERTY(QString title READ title WRITE setTitle)
    //! Width of the label in pixels, default 80. Returned as set; an impossible width, such as a negative one, is laid
    //! out as the nearest possible one. The same holds for textWidth and unitsWidth.
    Q_PROPERTY(int labelWidth READ labelWidth WRITE setLabelWidth)
    //! Width of the text field in pixels, default 80. Replaced when the orientation changes.
    Q_PROPERTY(int textWidth READ textWidth WRITE setTextWidth)
    //! Text after the value, for display only. Default empty.
    Q_PROPERTY(QString units READ units WRITE setUnits)
    //! Width of the units in pixels, default 40.
    Q_PROPERTY(int unitsWidth READ unitsWidth WRITE setUnitsWidth)
    //! Lower end of the range. Default 0.
    Q_PROPERTY(int minimum READ minimum WRITE setMinimum)
    //! Upper end of the range. Default 100.
    Q_PROPERTY(int maximum READ maximum WRITE setMaximum)
    //! What the reset button returns to. Default 0; not clamped until it is used.
    Q_PROPERTY(int defaultValue READ defaultValue WRITE setDefaultValue)
    //! Whether the reset button can be used while the value differs from the default. Default false; setting a default
    //! value turns it on. The button is always visible.
    Q_PROPERTY(bool showDefaultButton READ showDefaultButton WRITE setShowDefaultButton)
    //! The value as an int, within the range. Default 0.
    Q_PROPERTY(QVariant value READ value WRITE setValue)
    //! Whether the slider steps through powers of two. Default false.
    Q_PROPERTY(bool powerOfTwo READ powerOfTwo WRITE setPowerOfTwo)
    //! Whether the editor is a row or a column. Default Qt::Horizontal.
    Q_PROPERTY(Qt::Orientation orientation READ orientation WRITE setOrientation)
    //! If true, nothing can be typed into the text field. Default false. Reset and slider still work. Return and Tab
    //! still commit the text, and a name counts as 0: for named values also set the field's focus policy to
    //! Qt::NoFocus.
    Q_PROPERTY(bool readOnlyText READ readOnlyText WRITE setReadOnlyText)
    //! Names of the values 0, 1, 2 and so on; values beyond them show as numbers. Default none. They do not change the
    //! range, and a name committed as text counts as 0.
    Q_PROPERTY(QStringList enums READ enums WRITE setEnums)

public:
    explicit QIntSliderEdit(QWidget* parent = nullptr);

    QString title() const;
    void setTitle(QString title);
    int labelWidth() const;
    void setLabelWidth(int width);
    int textWidth() const;
    void setTextWidth(int width);
    QString units() const;
    void setUnits(QString units);
    int unitsWidth() const;
    void setUnitsWidth(int width);

    //! Ends of the range and of the slider. If the handle has to move, the value follows it, with valueChanged(). A
    //! maximum below the minimum is stored as it is. With powers of two, a minimum below 1 becomes 1, and a maximum
    //! that is not above the minimum becomes twice the minimum. If they are 2^31 apart, which Qt's styles cannot draw,
    //! the slider has one step less, and its last position stands for the maximum.
    int minimum() const;
    void setMinimum(int minimum);
    int maximum() const;
    void setMaximum(int maximum);

    int defaultValue() const;
    //! Also turns showDefaultButton on.
    void setDefaultValue(int value);
    bool showDefaultButton() const;
    void setShowDefaultButton(bool show);
    QVariant value() const;
    //! Sets any value that converts to an int, clamped to the range but not rounded to a power of two, without
    //! valueChanged(); others are ignored. Afterwards the editor's signals are not blocked, even if they were before.
    void setValue(QVariant value);
    //! As setValue(value); the text field is left empty unless showText is true.
    void setValue(QVariant value, bool showText);
    bool powerOfTwo() const;
    //! Turning it on raises the minimum to at least 1 and clamps the value, with valueChanged(); the text stays. Typed
    //! numbers are rounded to the power of two with the nearest exponent, at most 2^30.
    void setPowerOfTwo(bool powerOfTwo);
    Qt::Orientation orientation() const;
    bool readOnlyText() const;
    void setReadOnlyText(bool readOnly);
    QStringList enums() const;
    void setEnums(QStringList names);

    //! The text that shows a value: its name, or the decimal number.
    virtual QString valueToText(int value);
    //! The value of a text, 0 if it is not a whole decimal number.
    virtual int textToValue(QString text);

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    //! The user changed the value; value() already returns the new one. A committed text is announced twice.
    void valueChanged();
    //! The user took hold of the handle; nothing has changed yet. Not emitted for texts and resets.
    void startedEdit();

public Q_SLOTS:
    //! Turns the row into a column or back. The text field becomes as wide as the label in a column and 64 pixels wide
    //! in a row.
    void setOrientation(Qt::Orientation orientation);

    //! Connected by name to the signals of the children; hosts need not call them.
    void on_reset_clicked();
    void on_slider_sliderPressed();
    void on_slider_sliderMoved(int position);
    void on_slider_valueChanged(int position);
    void on_lineEdit_editingFinished();

private:
    void updateSlider();
    int clamped(int value) const;
    int positionOf(int value) const;
    void setSliderRange(int first, int last);
    int valueOf(int position) const;

    Ui::QIntSliderEdit m_ui; // the children belong to the editor
    int m_labelWidth = 80;
    int m_textWidth = 80;
    int m_unitsWidth = 40;
    int m_minimum = 0;
    int m_maximum = 100;
    int m_defaultValue = 0;
    int m_value = 0;
    bool m_powerOfTwo = false;
    bool m_readOnlyText = false;
    QStringList m_enums;
    bool m_showDefaultButton = false;
};
