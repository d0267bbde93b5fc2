#include "QLabelEdit.h"

#include "EditorSupport.h"

QLabelEdit::QLabelEdit(QWidget* parent) : QWidget(parent)
{
    m_ui.setupUi(this);
    setWindowTitle(title());
}

bool QLabelEdit::showDefaultButton() const
{
    return m_showDefaultButton;
}

void QLabelEdit::setShowDefaultButton(bool show)
{
    m_showDefaultButton = show;
    EditorSupport::updateReset(m_ui.reset, show, m_value, m_defaultValue);
}

bool QLabelEdit::readOnly() const
{
    return m_ui.lineEdit->isReadOnly();
}

void QLabelEdit::setReadOnly(bool readOnly)
{
    m_ui.lineEdit->setReadOnly(readOnly);
}

QString QLabelEdit::value() const
{
    return m_value;
}

void QLabelEdit::setValue(QString value)
{
    m_value = value;
    setShowDefaultButton(m_showDefaultButton);
    const EditorSupport::SignalMute mute(this);
    m_ui.lineEdit->setText(value);
}

QString QLabelEdit::defaultValue() const
{
    return m_defaultValue;
}

void QLabelEdit::setDefaultValue(QString value)
{
    m_defaultValue = value;
    setShowDefaultButton(true);
}

QString QLabelEdit::title() const
{
    return m_ui.label->text();
}

void QLabelEdit::setTitle(QString title)
{
    EditorSupport::setTitle(this, m_ui.label, title);
}

int QLabelEdit::labelWidth() const
{
    return m_labelWidth;
}

void QLabelEdit::setLabelWidth(int width)
{
    m_labelWidth = width;
    EditorSupport::setWidth(this, m_ui.label, width);
}

QString QLabelEdit::units() const
{
    return m_ui.units->text();
}

void QLabelEdit::setUnits(QString units)
{
    m_ui.units->setText(units);
}

int QLabelEdit::unitsWidth() const
{
    return m_unitsWidth;
}

void QLabelEdit::setUnitsWidth(int width)
{
    m_unitsWidth = width;
    EditorSupport::setWidth(this, m_ui.units, width);
}

void QLabelEdit::on_lineEdit_editingFinished()
{
    if (readOnly())
        return;
    // The reset button keeps its state from the last value that was set.
    m_value = m_ui.lineEdit->text();
    Q_EMIT valueChanged();
}

void QLabelEdit::on_reset_clicked()
{
    if (readOnly())
        return;
    setValue(m_defaultValue);
    Q_EMIT valueChanged();
}
