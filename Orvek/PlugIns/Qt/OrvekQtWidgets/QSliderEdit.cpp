#include "QSliderEdit.h"

#include "CompanionItem.h"
#include "EditorSupport.h"

#include <cmath>
#include <limits>
#include <utility>

using EditorSupport::SignalMute;

namespace
{
constexpr int MaximumSteps = 10000;

// The finite value that a bound clamps to: the largest double for infinity, 0 for NaN.
double finiteBound(double bound)
{
    constexpr double largest = std::numeric_limits<double>::max();
    return std::isnan(bound) ? 0.0 : qBound(-largest, bound, largest);
}
} // namespace

QSliderEdit::QSliderEdit(QWidget* parent) : QPropertyEditWidget(parent)
{
    m_ui.setupUi(this);
    applyParentTooltip();
    m_ui.slider->setRange(0, 1000);
    m_ui.reset->setEnabled(false);
    setMinimumHeight(height());
    setValue(QVariant(0.0));
    m_ui.slider->installEventFilter(this);
    EditorSupport::shareWhatsThis(this, {m_ui.label, m_ui.lineEdit, m_ui.slider});
    setTextWidth(m_textWidth);
    setUnitsWidth(m_unitsWidth);
    setShowButtons(m_showButtons);
    setWindowTitle(title());
}

QString QSliderEdit::title() const
{
    return m_ui.label->text();
}

void QSliderEdit::setTitle(QString title)
{
    EditorSupport::setTitle(this, m_ui.label, title);
}

bool QSliderEdit::liveUpdate() const
{
    return m_liveUpdate;
}

void QSliderEdit::setLiveUpdate(bool liveUpdate)
{
    m_liveUpdate = liveUpdate;
    updateSlider();
}

int QSliderEdit::labelWidth() const
{
    return m_labelWidth;
}

void QSliderEdit::setLabelWidth(int width)
{
    m_labelWidth = width;
    EditorSupport::setWidth(this, m_ui.label, width);
}

int QSliderEdit::textWidth() const
{
    return m_textWidth;
}

void QSliderEdit::setTextWidth(int width)
{
    m_textWidth = width;
    EditorSupport::setWidth(this, m_ui.lineEdit, width);
}

QString QSliderEdit::units() const
{
    return m_ui.units->text();
}

void QSliderEdit::setUnits(QString units)
{
    m_ui.units->setText(units);
}

int QSliderEdit::unitsWidth() const
{
    return m_unitsWidth;
}

void QSliderEdit::setUnitsWidth(int width)
{
    m_unitsWidth = width;
    EditorSupport::setWidth(this, m_ui.units, width);
}

bool QSliderEdit::showButtons() const
{
    return m_showButtons;
}

void QSliderEdit::setShowButtons(bool show)
{
    m_showButtons = show;
    m_ui.increment->setVisible(show);
    m_ui.decrement->setVisible(show);
    update();
}

bool QSliderEdit::showDefaultButton() const
{
    return m_showDefaultButton;
}

void QSliderEdit::setShowDefaultButton(bool show)
{
    m_showDefaultButton = show;
    EditorSupport::updateReset(m_ui.reset, show, m_value, m_defaultValue);
}

double QSliderEdit::minimum() const
{
    return m_minimum;
}

void QSliderEdit::setMinimum(double minimum)
{
    m_minimum = minimum;
}

double QSliderEdit::maximum() const
{
    return m_maximum;
}

void QSliderEdit::setMaximum(double maximum)
{
    m_maximum = maximum;
}

double QSliderEdit::defaultValue() const
{
    return m_defaultValue;
}

void QSliderEdit::setDefaultValue(double value)
{
    m_defaultValue = value;
    setShowDefaultButton(true);
}

double QSliderEdit::step() const
{
    return m_step;
}

void QSliderEdit::setStep(double step)
{
    m_step = step;
    if (!(step > 0.0))
        return;
    const double count = (m_maximum - m_minimum) / step;
    // Bounded first, as not every double fits an int. A maximum below 0 would drag the slider's minimum along.
    if (!std::isnan(count))
        m_ui.slider->setMaximum(static_cast<int>(qBound(0.0, count, double(MaximumSteps))));
}

QVariant QSliderEdit::value() const
{
    return m_value;
}

void QSliderEdit::setValue(QVariant value)
{
    setValue(std::move(value), true);
}

void QSliderEdit::setValue(QVariant value, bool showText)
{
    bool ok = false;
    const double number = value.toDouble(&ok);
    if (!ok)
        return;
    m_value = clamped(number);
    setShowDefaultButton(m_showDefaultButton);
    const SignalMute muteEditor(this);
    updateSlider();
    m_ui.lineEdit->setText(showText ? valueToText(m_value) : QString());
}

bool QSliderEdit::logarithmic() const
{
    return m_logarithmic;
}

void QSliderEdit::setLogarithmic(bool logarithmic)
{
    m_logarithmic = logarithmic;
    if (logarithmic)
    {
        if (m_minimum <= 0.0)
            m_minimum = m_maximum / 100.0;
        if (m_minimum >= m_maximum)
            m_maximum = finiteBound(m_minimum * 100.0);
    }
    updateSlider();
}

Qt::Orientation QSliderEdit::orientation() const
{
    return m_ui.slider->orientation();
}

void QSliderEdit::setOrientation(Qt::Orientation orientation)
{
    m_ui.slider->setOrientation(orientation);
    if (QLayout* row = layout())
    {
        row->removeWidget(m_ui.label);
        row->removeWidget(m_ui.slider);
        row->removeWidget(m_ui.lineEdit);
        delete row;
        m_ui.horizontalLayout = nullptr;
    }
    // Exactly three items, as hosts that walk the layout expect; the other children go with two of them. A vertical
    // slider has its larger values at the top.
    QBoxLayout* row = nullptr;
    CompanionItem* sliderItem = nullptr;
    if (orientation == Qt::Vertical)
    {
        row = new UnsqueezedBox<QVBoxLayout>;
        sliderItem =
            new CompanionItem(m_ui.slider, QBoxLayout::TopToBottom, {m_ui.increment, m_ui.slider, m_ui.decrement});
    }
    else
    {
        row = new UnsqueezedBox<QHBoxLayout>;
        sliderItem =
            new CompanionItem(m_ui.slider, QBoxLayout::LeftToRight, {m_ui.decrement, m_ui.slider, m_ui.increment});
    }
    row->addWidget(m_ui.label);
    row->addItem(sliderItem);
    row->addItem(new CompanionItem(m_ui.lineEdit, QBoxLayout::LeftToRight, {m_ui.lineEdit, m_ui.units, m_ui.reset}));
    setLayout(row);
    row->update();
}

QString QSliderEdit::valueToText(double value)
{
    return QStringLiteral("%1").arg(value, 0, 'g', -1, QLatin1Char(' '));
}

double QSliderEdit::textToValue(QString text, bool* ok)
{
    return text.toDouble(ok);
}

void QSliderEdit::incrementDecrement(int direction)
{
    const QSlider* slider = m_ui.slider;
    const qint64 position = slider->value() + qint64(direction) * slider->singleStep();
    m_ui.slider->setValue(int(qBound(qint64(slider->minimum()), position, qint64(slider->maximum()))));
}

bool QSliderEdit::eventFilter(QObject* watched, QEvent* event)
{
    return EditorSupport::consumeWheel(m_ui.slider, watched, event);
}

void QSliderEdit::on_increment_clicked()
{
    incrementDecrement(1);
}

void QSliderEdit::on_decrement_clicked()
{
    incrementDecrement(-1);
}

void QSliderEdit::on_reset_clicked()
{
    setValue(QVariant(m_defaultValue));
    Q_EMIT valueChanged();
}

void QSliderEdit::on_slider_sliderPressed()
{
    Q_EMIT startedEdit();
}

void QSliderEdit::on_slider_sliderMoved(int position)
{
    if (m_liveUpdate)
    {
        on_slider_valueChanged(position);
        return;
    }
    const SignalMute muteText(m_ui.lineEdit);
    m_ui.lineEdit->setText(valueToText(positionToValue(position)));
}

void QSliderEdit::on_slider_valueChanged(int position)
{
    m_value = clamped(positionToValue(position));
    setShowDefaultButton(m_showDefaultButton);
    {
        const SignalMute muteText(m_ui.lineEdit);
        m_ui.lineEdit->setText(valueToText(m_value));
    }
    Q_EMIT valueChanged();
}

void QSliderEdit::on_lineEdit_editingFinished()
{
    bool ok = false;
    const double number = textToValue(m_ui.lineEdit->text(), &ok);
    if (!ok || std::isnan(number))
        return;
    m_value = number;
    {
        const SignalMute muteSlider(m_ui.slider);
        updateSlider();
    }
    setShowDefaultButton(m_showDefaultButton);
    Q_EMIT valueChanged();
}

void QSliderEdit::updateSlider()
{
    m_value = clamped(m_value);
    {
        const SignalMute muteSlider(m_ui.slider);
        m_ui.slider->setValue(valueToPosition(m_value));
    }
    Q_EMIT valueChanged();
}

// If the minimum exceeds the maximum, the result is the maximum. NaN, which only a host can set, is returned as it is.
double QSliderEdit::clamped(double value) const
{
    if (m_minimum > value)
        value = finiteBound(m_minimum);
    if (value > m_maximum)
        value = finiteBound(m_maximum);
    return value;
}

// False if the slider's positions cannot be spread over the range.
bool QSliderEdit::hasPositions() const
{
    if (m_logarithmic && !(m_minimum > 0.0 && m_maximum > 0.0))
        return false;
    return m_minimum < m_maximum || m_minimum > m_maximum;
}

int QSliderEdit::valueToPosition(double value) const
{
    const int first = m_ui.slider->minimum();
    const int last = m_ui.slider->maximum();
    const double fraction =
        m_logarithmic ? (std::log10(value) - std::log10(m_minimum)) / (std::log10(m_maximum) - std::log10(m_minimum))
                      : (value - m_minimum) / (m_maximum - m_minimum);
    const double position = first + (double(last) - double(first)) * fraction;
    if (!hasPositions() || !std::isfinite(position))
        return first;
    return static_cast<int>(qBound(double(first), position, double(last)));
}

double QSliderEdit::positionToValue(int position) const
{
    const double first = m_ui.slider->minimum();
    const double fraction = (position - first) / (m_ui.slider->maximum() - first);
    double value = 0.0;
    if (m_logarithmic)
    {
        const double start = std::log10(m_minimum);
        // The logarithm of the largest doubles is rounded up, so its power is infinite.
        value = std::pow(10.0, (std::log10(m_maximum) - start) * fraction + start);
        if (std::isinf(value) && std::isfinite(m_maximum))
            value = finiteBound(value);
    }
    else
    {
        value = (m_maximum - m_minimum) * fraction + m_minimum;
    }
    return hasPositions() && std::isfinite(value) ? value : finiteBound(m_minimum);
}
