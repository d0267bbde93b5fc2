#pragma once

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/OrvekQtWidgetsExport.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QPropertyEditWidget.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/ui_QSliderEdit.h>

#include <QtCore/QVariant>

//! Edits a floating-point number between a minimum and a maximum in one row: title, slider with optional step buttons,
//! text field, units and a button that returns to the default.
//!
//! What the user does is announced by signals; what the host sets through setValue() is not. The text field keeps what
//! was typed, even if the number was clamped. Text that is not a number is ignored. Numbers are read and written in C
//! notation, with a decimal point.
//!
//! The wheel scrolls the area around the editor and never changes the value. Its children are "label", "decrement",
//! "slider", "increment", "lineEdit", "units" and "reset".
class ORVEKQTWIDGETS_EXPORT QSliderEdit : public QPropertyEditWidget
{
    Q_OBJECT
    //! The text of the label, and the window title, which the search of a section compares. Default "label".
    Q_PROPERTY(QString title READ title WRITE setTitle)
    //! Whether each move of a dragged handle changes the value at once; otherwise a drag shows the number that its
    //! release will set. Default false.
    Q_PROPERTY(bool liveUpdate READ liveUpdate WRITE setLiveUpdate)
    //! Width of the label in pixels, default 80. Returned as set; an impossible width, such as a negative one, is laid
    //! out as the nearest possible one. The same holds for textWidth and unitsWidth.
    Q_PROPERTY(int labelWidth READ labelWidth WRITE setLabelWidth)
    //! Width of the text field in pixels, default 80.
    Q_PROPERTY(int textWidth READ textWidth WRITE setTextWidth)
    //! Text after the value, for display only. Default empty.
    Q_PROPERTY(QString units READ units WRITE setUnits)
    //! Width of the units in pixels, default 40.
    Q_PROPERTY(int unitsWidth READ unitsWidth WRITE setUnitsWidth)
    //! Whether a step button is shown at each end of the slider. Default false.
    Q_PROPERTY(bool showButtons READ showButtons WRITE setShowButtons)
    //! Whether the reset button can be used while the value differs from the default. Default false; setting a default
    //! value turns it on. The button is always visible.
    Q_PROPERTY(bool showDefaultButton READ showDefaultButton WRITE setShowDefaultButton)
    //! Lower end of the range, in the unit of the value. Default 0.
    Q_PROPERTY(double minimum READ minimum WRITE setMinimum)
    //! Upper end of the range, in the unit of the value. Default 1.
    Q_PROPERTY(double maximum READ maximum WRITE setMaximum)
    //! What the reset button returns to, in the unit of the value. Default 0; not clamped until it is used.
    Q_PROPERTY(double defaultValue READ defaultValue WRITE setDefaultValue)
    //! Distance between two slider positions, in the unit of the value. Default 0: 1000 steps.
    Q_PROPERTY(double step READ step WRITE setStep)
    //! The value as a double, within the range. Default 0.
    Q_PROPERTY(QVariant value READ value WRITE setValue)
    //! Whether equal distances on the slider stand for equal ratios of the value. Default false.
    Q_PROPERTY(bool logarithmic READ logarithmic WRITE setLogarithmic)
    //! Whether the editor is a row or a column. Default Qt::Horizontal.
    Q_PROPERTY(Qt::Orientation orientation READ orientation WRITE setOrientation)

public:
    explicit QSliderEdit(QWidget* parent = nullptr);

    QString title() const;
    void setTitle(QString title);
    bool liveUpdate() const;
    //! Also moves the handle to the value again, with valueChanged().
    void setLiveUpdate(bool liveUpdate);
    int labelWidth() const;
    void setLabelWidth(int width);
    int textWidth() const;
    void setTextWidth(int width);
    QString units() const;
    void setUnits(QString units);
    int unitsWidth() const;
    void setUnitsWidth(int width);
    bool showButtons() const;
    void setShowButtons(bool show);
    bool showDefaultButton() const;
    void setShowDefaultButton(bool show);

    //! Ends of the range. The setters only store the number: value, handle and text follow at the next setValue() or
    //! user edit, so set the range first. If the minimum exceeds the maximum, every value becomes the maximum. The
    //! handle stays at the start if the ends are equal, one is infinite (which clamps to the largest double), or one
    //! has no logarithm but needs it.
    double minimum() const;
    void setMinimum(double minimum);
    double maximum() const;
    void setMaximum(double maximum);

    double defaultValue() const;
    //! Also turns showDefaultButton on.
    void setDefaultValue(double value);
    double step() const;
    //! Gives the slider as many equal steps as fit the current range, at most 10000, so set the range first; values are
    //! not rounded to them. A range that is not a multiple of the step is divided evenly: 0.3 on 0 to 1 gives three
    //! steps of a third each. A step of 0 or less leaves the slider as it is. If the handle has to move, the value
    //! follows it, with valueChanged().
    void setStep(double step);
    QVariant value() const;
    //! Sets any value that converts to a double, clamped to the range, without valueChanged(); others are ignored.
    //! Afterwards the editor's signals are not blocked, even if they were before.
    void setValue(QVariant value);
    //! As setValue(value); the text field is left empty unless showText is true.
    void setValue(QVariant value, bool showText);
    bool logarithmic() const;
    //! Turning it on makes the range usable: a minimum of 0 or less becomes a hundredth of the maximum, and a maximum
    //! that is not above the minimum becomes a hundred times the minimum; a range set later is not checked. Clamps the
    //! value and moves the handle, with valueChanged().
    void setLogarithmic(bool logarithmic);
    Qt::Orientation orientation() const;
    //! Rebuilds the row with the margins of the style. Step buttons stay at the ends of the slider, units and reset
    //! button beside the text field. An editor narrower than its minimumSizeHint() cuts off the right end of the row.
    void setOrientation(Qt::Orientation orientation);

    //! The text that shows a value: six significant digits, with an exponent below 1e-4 and from 1e6 on. Override both
    //! conversions together to show another form, such as degrees for radians.
    virtual QString valueToText(double value);
    //! The value of a text. Sets ok to whether the text is a number; ok must not be null.
    virtual double textToValue(QString text, bool* ok);
    //! Moves the handle by direction single steps, with valueChanged() if it moved. The step buttons pass 1 and -1.
    virtual void incrementDecrement(int direction);

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    //! The user changed the value; value() already returns the new one. A committed text is announced twice.
    void valueChanged();
    //! The user took hold of the handle. Nothing has changed yet, unless the click made the handle jump: then
    //! valueChanged() came before. Not emitted for steps, texts and resets.
    void startedEdit();

public Q_SLOTS:
    //! Connected by name to the signals of the children; hosts need not call them.
    void on_increment_clicked();
    void on_decrement_clicked();
    void on_reset_clicked();
    void on_slider_sliderPressed();
    void on_slider_sliderMoved(int position);
    void on_slider_valueChanged(int position);
    void on_lineEdit_editingFinished();

protected:
    //! Clamps the value and moves the handle to it, with valueChanged(); the text is left as it is.
    void updateSlider();

private:
    double clamped(double value) const;
    bool hasPositions() const;
    int valueToPosition(double value) const;
    double positionToValue(int position) const;

    Ui::QSliderEdit m_ui; // the children belong to the editor
    int m_labelWidth = 80;
    int m_textWidth = 80;
    int m_unitsWidth = 40;
    double m_minimum = 0.0;
    double m_maximum = 1.0;
    double m_defaultValue = 0.0;
    double m_value = 0.0;
    bool m_logarithmic = false;
    bool m_liveUpdate = false;
    bool m_showButtons = false;
    bool m_showDefaultButton = false;
    double m_step = 0.0;
};
