#include "QColourEdit.h"

#include "EditorSupport.h"

#include <algorithm>

QColourEdit::QColourEdit(QWidget* parent) : QPropertyEditWidget(parent)
{
    m_ui.setupUi(this);
    setWindowTitle(label());
    applyParentTooltip();
}

QString QColourEdit::label() const
{
    return m_ui.label->text();
}

void QColourEdit::setLabel(QString label)
{
    EditorSupport::setTitle(this, m_ui.label, label);
}

int QColourEdit::labelWidth() const
{
    return m_labelWidth;
}

void QColourEdit::setLabelWidth(int width)
{
    m_labelWidth = width;
    EditorSupport::setWidth(this, m_ui.label, width);
}

bool QColourEdit::showAlpha() const
{
    return m_ui.alpha->isVisible();
}

void QColourEdit::setShowAlpha(bool show)
{
    m_ui.alpha->setVisible(show);
}

void QColourEdit::setColour(const double* rgba)
{
    if (rgba)
        std::copy_n(rgba, 4, m_colour);
}

void QColourEdit::setColour(double r, double g, double b, double a)
{
    const double rgba[] = {r, g, b, a};
    setColour(rgba);
}

const double* QColourEdit::colour() const
{
    return m_colour;
}

void QColourEdit::on_red_editingFinished()
{
    commit(m_ui.red, 0);
}

void QColourEdit::on_green_editingFinished()
{
    commit(m_ui.green, 1);
}

void QColourEdit::on_blue_editingFinished()
{
    commit(m_ui.blue, 2);
}

void QColourEdit::on_alpha_editingFinished()
{
    commit(m_ui.alpha, 3);
}

void QColourEdit::commit(const QLineEdit* field, int component)
{
    bool ok = false;
    const double number = field->text().toDouble(&ok);
    if (!ok)
        return;
    m_colour[component] = number;
    Q_EMIT valueChanged();
}
