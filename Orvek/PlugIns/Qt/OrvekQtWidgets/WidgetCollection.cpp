#include "WidgetCollection.h"

#include "DesignerInterfaces.h"

WidgetCollection::WidgetCollection(QObject* parent) : QObject(parent)
{
#define ORVEK_APPEND(Editor, objectName) m_widgets.append(new Editor##Interface(this));
    ORVEK_DESIGNER_EDITORS(ORVEK_APPEND)
#undef ORVEK_APPEND
    m_widgets.append(new QPropertyPanelInterface(this));
    m_widgets.append(new QAccordionInterface(this));
    m_widgets.append(new QRenderWidgetInterface(this));
}

QList<QDesignerCustomWidgetInterface*> WidgetCollection::customWidgets() const
{
    return m_widgets;
}
