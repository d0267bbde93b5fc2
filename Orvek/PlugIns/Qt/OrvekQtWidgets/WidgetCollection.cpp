#include "WidgetCollection.h"

#include "DesignerInterfaces.h"

WidgetCollection::WidgetCollection(QObject* parent) : QObject(parent)
{
    m_widgets.append(new QSliderEditInterface(this));
    m_widgets.append(new QIntSliderEditInterface(this));
    m_widgets.append(new QLabelEditInterface(this));
    m_widgets.append(new QVectorEditInterface(this));
    m_widgets.append(new QFileEditInterface(this));
    m_widgets.append(new QPropertyPanelInterface(this));
    m_widgets.append(new QAccordionInterface(this));
    m_widgets.append(new QRenderWidgetInterface(this));
}

QList<QDesignerCustomWidgetInterface*> WidgetCollection::customWidgets() const
{
    return m_widgets;
}
