#include "QVectorEdit.h"

#include "EditorSupport.h"

namespace
{
QString componentText(float component)
{
    return QStringLiteral("%1").arg(double(component));
}
} // namespace

QVectorEdit::QVectorEdit(QWidget* parent) : QPropertyEditWidget(parent)
{
    m_ui.setupUi(this);
    applyParentTooltip();
    m_ui.reset->setEnabled(false);
    setMinimumHeight(height());
    EditorSupport::shareWhatsThis(this, {m_ui.x, m_ui.y, m_ui.z, m_ui.label});
    setTextWidth(m_textWidth);
    setUnitsWidth(m_unitsWidth);
    setValue(QVector3D());
    setColourEdit(false);
    setWindowTitle(title());
    applyParentTooltip();
}

QString QVectorEdit::title() const
{
    return m_ui.label->text();
}

void QVectorEdit::setTitle(QString title)
{
    EditorSupport::setTitle(this, m_ui.label, title);
}

bool QVectorEdit::colourEdit() const
{
    return m_colourEdit;
}

void QVectorEdit::setColourEdit(bool colour)
{
    m_colourEdit = colour;
    m_ui.xLabel->setText(colour ? QStringLiteral("R") : QStringLiteral("X"));
    m_ui.yLabel->setText(colour ? QStringLiteral("G") : QStringLiteral("Y"));
    m_ui.zLabel->setText(colour ? QStringLiteral("B") : QStringLiteral("Z"));
}

bool QVectorEdit::liveUpdate() const
{
    return m_liveUpdate;
}

void QVectorEdit::setLiveUpdate(bool liveUpdate)
{
    m_liveUpdate = liveUpdate;
}

int QVectorEdit::labelWidth() const
{
    return m_labelWidth;
}

void QVectorEdit::setLabelWidth(int width)
{
    m_labelWidth = width;
    EditorSupport::setWidth(this, m_ui.label, width);
}

int QVectorEdit::textWidth() const
{
    return m_textWidth;
}

void QVectorEdit::setTextWidth(int width)
{
    m_textWidth = width;
    EditorSupport::setWidth(this, m_ui.x, width);
    // Copies all limits, heights included, so that the three fields always look alike.
    for (QLineEdit* field : {m_ui.y, m_ui.z})
    {
        field->setMinimumSize(m_ui.x->minimumSize());
        field->setMaximumSize(m_ui.x->maximumSize());
    }
}

QString QVectorEdit::units() const
{
    return m_ui.units->text();
}

void QVectorEdit::setUnits(QString units)
{
    m_ui.units->setText(units);
}

int QVectorEdit::unitsWidth() const
{
    return m_unitsWidth;
}

void QVectorEdit::setUnitsWidth(int width)
{
    m_unitsWidth = width;
    EditorSupport::setWidth(this, m_ui.units, width);
}

QVector3D QVectorEdit::value() const
{
    return m_value;
}

void QVectorEdit::setValue(QVector3D value)
{
    setValue(value, true);
}

void QVectorEdit::setValue(QVector3D value, bool showText)
{
    m_value = value;
    setShowDefaultButton();
    {
        const EditorSupport::SignalMute mute(this);
        m_ui.x->setText(showText ? componentText(value.x()) : QString());
        m_ui.y->setText(showText ? componentText(value.y()) : QString());
        m_ui.z->setText(showText ? componentText(value.z()) : QString());
    }
    update();
}

QVector3D QVectorEdit::defaultValue() const
{
    return m_defaultValue;
}

void QVectorEdit::setDefaultValue(QVector3D value)
{
    m_defaultValue = value;
    setShowDefaultButton();
}

void QVectorEdit::on_reset_clicked()
{
    setValue(m_defaultValue);
    Q_EMIT valueChanged();
}

void QVectorEdit::on_x_editingFinished()
{
    commit(m_ui.x, 0);
}

void QVectorEdit::on_y_editingFinished()
{
    commit(m_ui.y, 1);
}

void QVectorEdit::on_z_editingFinished()
{
    commit(m_ui.z, 2);
}

void QVectorEdit::setShowDefaultButton()
{
    EditorSupport::updateReset(m_ui.reset, true, m_value, m_defaultValue);
}

void QVectorEdit::commit(const QLineEdit* field, int component)
{
    // Not toFloat(), which rejects numbers that a float can only round to 0 or infinity.
    bool ok = false;
    const double number = field->text().toDouble(&ok);
    if (!ok)
        return;
    m_value[component] = static_cast<float>(number);
    setShowDefaultButton();
    Q_EMIT valueChanged();
}
