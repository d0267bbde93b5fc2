#include "QPropertyEditWidget.h"

QPropertyEditWidget::QPropertyEditWidget(QWidget* parent) : QWidget(parent) {}

QPropertyEditWidget::~QPropertyEditWidget() = default;

void QPropertyEditWidget::applyParentTooltip()
{
    const QString tip = toolTip();
    const QList<QWidget*> descendants = findChildren<QWidget*>();
    for (QWidget* descendant : descendants)
        descendant->setToolTip(tip);
}
