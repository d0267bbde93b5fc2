#pragma once

#include <Orvek/PlugIns/Qt/OrvekQtWidgets/EditorList.h>

#include <QtUiPlugin/QDesignerCustomWidgetInterface>

// What form designers know about each widget that they offer: constants, and a flag.
//
// Each class derives directly from both bases: with a class or template in between, a cast by the name of the interface
// fails.
#define ORVEK_DESIGNER_INTERFACE(Widget, parentDefault)                                                                \
    class Widget##Interface : public QObject, public QDesignerCustomWidgetInterface                                    \
    {                                                                                                                  \
        Q_OBJECT                                                                                                       \
        Q_INTERFACES(QDesignerCustomWidgetInterface)                                                                   \
    public:                                                                                                            \
        explicit Widget##Interface(QObject* parent parentDefault);                                                     \
        QString name() const override;                                                                                 \
        QString group() const override;                                                                                \
        QString toolTip() const override;                                                                              \
        QString whatsThis() const override;                                                                            \
        QString includeFile() const override;                                                                          \
        QIcon icon() const override;                                                                                   \
        bool isContainer() const override;                                                                             \
        QWidget* createWidget(QWidget* parent) override;                                                               \
        bool isInitialized() const override;                                                                           \
        void initialize(QDesignerFormEditorInterface* core) override;                                                  \
        QString domXml() const override;                                                                               \
                                                                                                                       \
    private:                                                                                                           \
        bool m_initialized = false;                                                                                    \
    };
#define ORVEK_DESIGNER_EDITOR(Editor, objectName) ORVEK_DESIGNER_INTERFACE(Editor, )

ORVEK_DESIGNER_EDITORS(ORVEK_DESIGNER_EDITOR)
ORVEK_DESIGNER_INTERFACE(QPropertyPanel, )
ORVEK_DESIGNER_INTERFACE(QAccordion, )
ORVEK_DESIGNER_INTERFACE(QRenderWidget, = nullptr)

#undef ORVEK_DESIGNER_EDITOR
#undef ORVEK_DESIGNER_INTERFACE
