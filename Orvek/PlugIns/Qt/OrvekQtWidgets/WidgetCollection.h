#pragma once

#include <QtCore/QList>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

// The plugin's root object. It makes the library itself a Designer plugin, so Designer shows exactly the widgets that
// applications link.
class WidgetCollection : public QObject, public QDesignerCustomWidgetCollectionInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "orvek.OrvekWidgets")
    Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

public:
    explicit WidgetCollection(QObject* parent = nullptr);

    QList<QDesignerCustomWidgetInterface*> customWidgets() const override;

private:
    QList<QDesignerCustomWidgetInterface*> m_widgets; // children of the collection
};
