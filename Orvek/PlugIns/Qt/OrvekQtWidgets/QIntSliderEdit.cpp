#include "QIntSliderEdit.h"

#include "EditorSupport.h"

#include <cmath>
#include <limits>

using EditorSupport::SignalMute;

namespace
{
constexpr int LargestExponent = 30; // of a power of two that fits an int
constexpr int LargestInt = std::numeric_limits<int>::max();
constexpr qint64 TooManySteps = qint64(LargestInt) + 1; // of a slider: Qt's styles divide by zero there

// log2(value), rounded; 0 for values below 1.
int roundedExponent(int value)
{
    return value < 1 ? 0 : static_cast<int>(std::lround(std::log2(value)));
}

int powerOf(int exponent)
{
    return 1 << qBound(0, exponent, LargestExponent);
}
} // namespace

QIntSliderEdit::QIntSliderEdit(QWidget* parent) : QWidget(parent)
{
    m_ui.setupUi(this);
    m_ui.slider->setRange(m_minimum, m_maximum);
    setMinimumHeight(height());
    m_ui.reset->setEnabled(false);
    setValue(QVariant(0));
    m_ui.slider->installEventFilter(this);
    EditorSupport::shareWhatsThis(this, {m_ui.label, m_ui.lineEdit, m_ui.slider});
    setTextWidth(m_textWidth);
    setUnitsWidth(m_unitsWidth);
    setWindowTitle(title());
}

QString QIntSliderEdit::title() const
{
    return m_ui.label->text();
}

void QIntSliderEdit::setTitle(QString title)
{
    EditorSupport::setTitle(this, m_ui.label, title);
}

int QIntSliderEdit::labelWidth() const
{
    return m_labelWidth;
}

void QIntSliderEdit::setLabelWidth(int width)
{
    m_labelWidth = width;
    EditorSupport::setWidth(this, m_ui.label, width);
}

int QIntSliderEdit::textWidth() const
{
    return m_textWidth;
}

void QIntSliderEdit::setTextWidth(int width)
{
    m_textWidth = width;
    EditorSupport::setWidth(this, m_ui.lineEdit, width);
}

QString QIntSliderEdit::units() const
{
    return m_ui.units->text();
}

void QIntSliderEdit::setUnits(QString units)
{
    m_ui.units->setText(units);
}

int QIntSliderEdit::unitsWidth() const
{
    return m_unitsWidth;
}

void QIntSliderEdit::setUnitsWidth(int width)
{
    m_unitsWidth = width;
    EditorSupport::setWidth(this, m_ui.units, width);
}

int QIntSliderEdit::minimum() const
{
    return m_minimum;
}

void QIntSliderEdit::setMinimum(int minimum)
{
    m_minimum = m_powerOfTwo ? qMax(1, minimum) : minimum;
    const int first = positionOf(m_minimum);
    setSliderRange(first, qMax(first, m_ui.slider->maximum()));
}

int QIntSliderEdit::maximum() const
{
    return m_maximum;
}

void QIntSliderEdit::setMaximum(int maximum)
{
    m_maximum = maximum;
    if (m_powerOfTwo && m_maximum <= m_minimum)
        m_maximum = static_cast<int>(qMin(qint64(m_minimum) * 2, qint64(LargestInt)));
    const int last = positionOf(m_maximum);
    setSliderRange(qMin(m_ui.slider->minimum(), last), last);
}

int QIntSliderEdit::defaultValue() const
{
    return m_defaultValue;
}

void QIntSliderEdit::setDefaultValue(int value)
{
    m_defaultValue = value;
    setShowDefaultButton(true);
}

bool QIntSliderEdit::showDefaultButton() const
{
    return m_showDefaultButton;
}

void QIntSliderEdit::setShowDefaultButton(bool show)
{
    m_showDefaultButton = show;
    EditorSupport::updateReset(m_ui.reset, show, m_value, m_defaultValue);
}

QVariant QIntSliderEdit::value() const
{
    return m_value;
}

void QIntSliderEdit::setValue(QVariant value)
{
    setValue(value, true);
}

void QIntSliderEdit::setValue(QVariant value, bool showText)
{
    bool ok = false;
    const int number = value.toInt(&ok);
    if (!ok)
        return;
    m_value = clamped(number);
    setShowDefaultButton(m_showDefaultButton);
    const SignalMute muteEditor(this);
    const SignalMute muteSlider(m_ui.slider);
    updateSlider();
    m_ui.lineEdit->setText(showText ? valueToText(m_value) : QString());
}

bool QIntSliderEdit::powerOfTwo() const
{
    return m_powerOfTwo;
}

void QIntSliderEdit::setPowerOfTwo(bool powerOfTwo)
{
    m_powerOfTwo = powerOfTwo;
    setMinimum(m_minimum);
    setMaximum(m_maximum);
    updateSlider();
}

Qt::Orientation QIntSliderEdit::orientation() const
{
    return m_ui.slider->orientation();
}

bool QIntSliderEdit::readOnlyText() const
{
    return m_readOnlyText;
}

void QIntSliderEdit::setReadOnlyText(bool readOnly)
{
    m_readOnlyText = readOnly;
    m_ui.lineEdit->setReadOnly(readOnly);
}

QStringList QIntSliderEdit::enums() const
{
    return m_enums;
}

void QIntSliderEdit::setEnums(QStringList names)
{
    m_enums = names;
    setValue(QVariant(m_value));
}

QString QIntSliderEdit::valueToText(int value)
{
    if (value >= 0 && value < m_enums.size())
        return m_enums.at(value);
    return QStringLiteral("%1").arg(value);
}

int QIntSliderEdit::textToValue(QString text)
{
    return text.toInt(nullptr, 10);
}

bool QIntSliderEdit::eventFilter(QObject* watched, QEvent* event)
{
    return EditorSupport::consumeWheel(m_ui.slider, watched, event);
}

void QIntSliderEdit::setOrientation(Qt::Orientation orientation)
{
    const bool horizontal = orientation == Qt::Horizontal;
    m_ui.slider->setOrientation(orientation);
    m_ui.slider->setMinimumSize(horizontal ? QSize(32, 8) : QSize(8, 32));
    EditorSupport::setWidth(this, m_ui.lineEdit, horizontal ? 64 : m_labelWidth);
    auto* row = qobject_cast<QBoxLayout*>(layout());
    if (!row)
        return;
    row->setDirection(horizontal ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    const Qt::Alignment alignment = horizontal ? Qt::AlignLeft : Qt::AlignHCenter;
    row->setAlignment(m_ui.label, alignment);
    row->setAlignment(m_ui.lineEdit, alignment);
}

void QIntSliderEdit::on_reset_clicked()
{
    setValue(QVariant(m_defaultValue));
    Q_EMIT valueChanged();
}

void QIntSliderEdit::on_slider_sliderPressed()
{
    Q_EMIT startedEdit();
}

void QIntSliderEdit::on_slider_sliderMoved(int position)
{
    const SignalMute muteText(m_ui.lineEdit);
    m_ui.lineEdit->setText(valueToText(valueOf(position)));
}

void QIntSliderEdit::on_slider_valueChanged(int position)
{
    m_value = clamped(valueOf(position));
    setShowDefaultButton(m_showDefaultButton);
    {
        const SignalMute muteText(m_ui.lineEdit);
        m_ui.lineEdit->setText(valueToText(m_value));
    }
    Q_EMIT valueChanged();
}

void QIntSliderEdit::on_lineEdit_editingFinished()
{
    m_value = textToValue(m_ui.lineEdit->text());
    if (m_powerOfTwo)
        m_value = powerOf(roundedExponent(m_value));
    {
        const SignalMute muteSlider(m_ui.slider);
        updateSlider();
    }
    setShowDefaultButton(m_showDefaultButton);
    Q_EMIT valueChanged();
}

// Clamps the value and moves the handle to it, with valueChanged(); the text is left as it is.
void QIntSliderEdit::updateSlider()
{
    m_value = clamped(m_value);
    const qint64 offset = qint64(positionOf(m_value)) - positionOf(m_minimum);
    {
        const SignalMute muteSlider(m_ui.slider);
        const qint64 position = m_ui.slider->minimum() + offset;
        m_ui.slider->setValue(
            static_cast<int>(qBound(qint64(m_ui.slider->minimum()), position, qint64(m_ui.slider->maximum()))));
    }
    Q_EMIT valueChanged();
}

// If the minimum exceeds the maximum, the result is the maximum.
int QIntSliderEdit::clamped(int value) const
{
    return qMin(qMax(value, m_minimum), m_maximum);
}

int QIntSliderEdit::positionOf(int value) const
{
    return m_powerOfTwo ? roundedExponent(value) : value;
}

// An end that the other one dragged along goes back once the range is valid again.
void QIntSliderEdit::setSliderRange(int first, int last)
{
    if (m_minimum < m_maximum)
    {
        first = positionOf(m_minimum);
        last = positionOf(m_maximum);
    }
    m_ui.slider->setRange(first, qint64(last) - first == TooManySteps ? last - 1 : last);
}

int QIntSliderEdit::valueOf(int position) const
{
    if (m_powerOfTwo)
        return powerOf(position);
    // If the slider has one step less, its last position stands for the maximum.
    const bool isLast = qint64(position) + 1 == m_maximum && qint64(m_maximum) - m_minimum == TooManySteps;
    return isLast ? m_maximum : position;
}
