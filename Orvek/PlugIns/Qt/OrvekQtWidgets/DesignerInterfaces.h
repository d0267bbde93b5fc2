#pragma once

#include <QtUiPlugin/QDesignerCustomWidgetInterface>

// What form designers know about each of the eight widgets that they offer. Everything but the flag is constant.
//
// Each class derives directly from both bases: with a class or template in between, a cast by the name of the interface
// fails.
#define ORVEK_DESIGNER_OVERRIDES                                                                                       \
public:                                                                                                                \
    QString name() const override;                                                                                     \
    QString group() const override;                                                                                    \
    QString toolTip() const override;                                                                                  \
    QString whatsThis() const override;                                                                                \
    QString includeFile() const override;                                                                              \
    QIcon icon() const override;                                                                                       \
    bool isContainer() const override;                                                                                 \
    QWidget* createWidget(QWidget* parent) override;                                                                   \
    bool isInitialized() const override;                                                                               \
    void initialize(QDesignerFormEditorInterface* core) override;                                                      \
    QString domXml() const override;                                                                                   \
                                                                                                                       \
private:                                                                                                               \
    bool m_initialized = false;

class QSliderEditInterface : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)
    ORVEK_DESIGNER_OVERRIDES
public:
    explicit QSliderEditInterface(QObject* parent);
};

class QIntSliderEditInterface : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)
    ORVEK_DESIGNER_OVERRIDES
public:
    explicit QIntSliderEditInterface(QObject* parent);
};

class QLabelEditInterface : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)
    ORVEK_DESIGNER_OVERRIDES
public:
    explicit QLabelEditInterface(QObject* parent);
};

class QVectorEditInterface : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)
    ORVEK_DESIGNER_OVERRIDES
public:
    explicit QVectorEditInterface(QObject* parent);
};

class QFileEditInterface : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)
    ORVEK_DESIGNER_OVERRIDES
public:
    explicit QFileEditInterface(QObject* parent);
};

class QPropertyPanelInterface : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)
    ORVEK_DESIGNER_OVERRIDES
public:
    explicit QPropertyPanelInterface(QObject* parent);
};

class QAccordionInterface : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)
    ORVEK_DESIGNER_OVERRIDES
public:
    explicit QAccordionInterface(QObject* parent);
};

class QRenderWidgetInterface : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)
    ORVEK_DESIGNER_OVERRIDES
public:
    explicit QRenderWidgetInterface(QObject* parent = nullptr);
};

#undef ORVEK_DESIGNER_OVERRIDES
