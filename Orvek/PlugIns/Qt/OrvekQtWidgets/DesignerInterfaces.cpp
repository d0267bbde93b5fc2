#include "DesignerInterfaces.h"

#include "QAccordion.h"
#include "QPropertyPanel.h"
#include "QRenderWidget.h"

namespace
{
// The form that a new instance starts from. Designer leaves out a widget whose snippet it cannot read.
QString snippet(const char* className, const char* objectName, const QString& contents)
{
    return QStringLiteral("<ui language=\"c++\">\n"
                          " <widget class=\"%1\" name=\"%2\">\n"
                          "%3"
                          " </widget>\n"
                          "</ui>\n")
        .arg(QLatin1String(className), QLatin1String(objectName), contents);
}

QString geometry(int width, int height)
{
    return QStringLiteral(R"(  <property name="geometry">
   <rect>
    <x>0</x>
    <y>0</y>
    <width>%1</width>
    <height>%2</height>
   </rect>
  </property>
)")
        .arg(width)
        .arg(height);
}

QString helpTexts(const char* toolTip = "", const char* whatsThis = ".")
{
    return QStringLiteral(R"(  <property name="toolTip">
   <string>%1</string>
  </property>
  <property name="whatsThis">
   <string>%2</string>
  </property>
)")
        .arg(QLatin1String(toolTip), QLatin1String(whatsThis));
}

// The layout that receives what is dropped into a container.
QString column(const char* objectName)
{
    return QStringLiteral(R"(   <layout class="QVBoxLayout" name="%1">
    <property name="spacing">
     <number>2</number>
    </property>
    <property name="leftMargin">
     <number>2</number>
    </property>
    <property name="topMargin">
     <number>2</number>
    </property>
    <property name="rightMargin">
     <number>2</number>
    </property>
    <property name="bottomMargin">
     <number>2</number>
    </property>
   </layout>
)")
        .arg(QLatin1String(objectName));
}

QString sectionContents()
{
    return QStringLiteral(R"(  <widget class="QWidget" name="contentsWidget" native="true">
%1  </widget>
)")
        .arg(column("accContentsVLayout"));
}

QString panelContents()
{
    return QStringLiteral(R"(  <property name="minimumSize">
   <size>
    <width>0</width>
    <height>48</height>
   </size>
  </property>
  <property name="windowTitle">
   <string>QPropertyPanel</string>
  </property>
  <widget class="QScrollArea" name="scrollArea">
   <property name="verticalScrollBarPolicy">
    <enum>Qt::ScrollBarAlwaysOn</enum>
   </property>
   <property name="horizontalScrollBarPolicy">
    <enum>Qt::ScrollBarAlwaysOff</enum>
   </property>
   <property name="sizeAdjustPolicy">
    <enum>QAbstractScrollArea::AdjustIgnored</enum>
   </property>
   <property name="widgetResizable">
    <bool>true</bool>
   </property>
   <widget class="QWidget" name="scrollAreaWidgetContents">
%1%2   </widget>
  </widget>
)")
        .arg(geometry(349, 446), column("verticalLayout_3"));
}
} // namespace

#define ORVEK_DESIGNER_INTERFACE(Widget, objectName, container, contents)                                              \
    Widget##Interface::Widget##Interface(QObject* parent) : QObject(parent) {}                                         \
    QString Widget##Interface::name() const                                                                            \
    {                                                                                                                  \
        return QStringLiteral(#Widget);                                                                                \
    }                                                                                                                  \
    QString Widget##Interface::group() const                                                                           \
    {                                                                                                                  \
        return QStringLiteral("Orvek");                                                                                \
    }                                                                                                                  \
    QString Widget##Interface::toolTip() const                                                                         \
    {                                                                                                                  \
        return QString();                                                                                              \
    }                                                                                                                  \
    QString Widget##Interface::whatsThis() const                                                                       \
    {                                                                                                                  \
        return QString();                                                                                              \
    }                                                                                                                  \
    QString Widget##Interface::includeFile() const                                                                     \
    {                                                                                                                  \
        return QStringLiteral("Orvek/PlugIns/Qt/OrvekQtWidgets/" #Widget ".h");                                        \
    }                                                                                                                  \
    QIcon Widget##Interface::icon() const                                                                              \
    {                                                                                                                  \
        return QIcon();                                                                                                \
    }                                                                                                                  \
    bool Widget##Interface::isContainer() const                                                                        \
    {                                                                                                                  \
        return container;                                                                                              \
    }                                                                                                                  \
    QWidget* Widget##Interface::createWidget(QWidget* parent)                                                          \
    {                                                                                                                  \
        return new Widget(parent);                                                                                     \
    }                                                                                                                  \
    bool Widget##Interface::isInitialized() const                                                                      \
    {                                                                                                                  \
        return m_initialized;                                                                                          \
    }                                                                                                                  \
    void Widget##Interface::initialize(QDesignerFormEditorInterface*)                                                  \
    {                                                                                                                  \
        m_initialized = true;                                                                                          \
    }                                                                                                                  \
    QString Widget##Interface::domXml() const                                                                          \
    {                                                                                                                  \
        return snippet(#Widget, objectName, contents);                                                                 \
    }

#define ORVEK_DESIGNER_EDITOR(Editor, objectName)                                                                      \
    ORVEK_DESIGNER_INTERFACE(Editor, objectName, false, geometry(100, 24) + helpTexts())

ORVEK_DESIGNER_EDITORS(ORVEK_DESIGNER_EDITOR)
ORVEK_DESIGNER_INTERFACE(QPropertyPanel, "PropertyPanel", true, geometry(372, 474) + panelContents())
ORVEK_DESIGNER_INTERFACE(QAccordion, "accordion", true, geometry(100, 24) + helpTexts() + sectionContents())
ORVEK_DESIGNER_INTERFACE(QRenderWidget, "RenderWidget", false,
                         geometry(120, 100) + helpTexts("A rendering view for any API", "The Rendering Widget."))
