#include "snippets.h"

#include <Orvek/Base/BaseMouseHandler.h>
#include <Orvek/CrossPlatform/DisplaySurfaceManagerInterface.h>
#include <Orvek/Host/PanelHost.h>
#include <Orvek/Host/PanelSearch.h>
#include <Orvek/Host/SectionStates.h>
#include <Orvek/Host/ViewInput.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QAccordion.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QColourEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QIntSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QPropertyPanel.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QSliderEdit.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QVectorEdit.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QLocale>
#include <QtCore/QSettings>
#include <QtCore/QTranslator>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QVBoxLayout>
#include <QUndoStack>

namespace
{
QWidget* addSection(QWidget* outer, const char* name, const char* title)
{
    auto* section = new QAccordion;
    section->setObjectName(name);
    section->setTitle(title);
    auto* contents = new QWidget(section);
    auto* rows = new QVBoxLayout(contents);
    rows->setContentsMargins(2, 2, 2, 2);
    rows->setSpacing(2);
    outer->layout()->addWidget(section);
    return contents;
}

QSliderEdit* addNumber(QWidget* section, const char* title, double value, const char* units = "")
{
    auto* edit = new QSliderEdit;
    edit->setTitle(title);
    edit->setUnits(units);
    edit->setMaximum(10.0);
    edit->setValue(value);
    section->layout()->addWidget(edit);
    return edit;
}

void addMaterial(QPropertyPanel* panel)
{
    auto* page = new QWidget;
    (new QVBoxLayout(page))->setAlignment(Qt::AlignTop);
    QWidget* surface = addSection(page, "surface", "Surface");
    addNumber(surface, "Roughness", 1.0 / 3.0);
    surface->layout()->addWidget(shading());
    surface->layout()->addWidget(baseColour());
    addNumber(surface, "Displacement height", 2.5, "mm");
    QWidget* finish = addSection(surface, "advanced", "Advanced");
    addNumber(finish, "Gloss of the coat", 0.85);
    QWidget* light = addSection(page, "light", "Light");
    addNumber(light, "Power", 7.5, "watts");
    QWidget* shadow = addSection(light, "advanced", "Advanced");
    addNumber(shadow, "Shadow softness", 0.25);

    auto* scrollArea = new QScrollArea;
    scrollArea->setWidgetResizable(true);
    scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrollArea->setWidget(page);
    scrollArea->setParent(panel);
}
} // namespace

QWidget* shading()
{
    auto* edit = new QIntSliderEdit;
    edit->setTitle("Shading");
    edit->setMaximum(3);
    edit->setEnums({"Unlit", "Matte", "Metal", "Glass"});
    edit->setValue(2);
    return edit;
}

QWidget* baseColour()
{
    auto* edit = new QVectorEdit;
    edit->setTitle("Base colour");
    edit->setColourEdit(true);
    edit->setTextWidth(64);
    edit->setMinimumHeight(38);
    edit->setValue(QVector3D(0.85f, 0.42f, 0.12f));
    return edit;
}

QWidget* materialPanel()
{
    auto* panel = new QPropertyPanel;
    addMaterial(panel);
    return panel;
}

int showMaterial()
{
    //! [PanelHost]
    QUndoStack undoStack;
    QPropertyPanel panel;
    orvek::host::PanelHost host(&panel, &undoStack);
    //! [PanelHost]
    addMaterial(&panel);
    //! [parts]
    QSettings settings;
    settings.beginGroup("sections");
    host.states()->restore(settings);
    host.search()->setHidesUnmatched(false);
    //! [parts]
    panel.show();
    return QApplication::exec();
}

bool translateHost(const QString& folder)
{
    //! [translation]
    auto* translator = new QTranslator(qApp);
    const bool found = translator->load(QLocale(), "orvekqthost", "_", folder);
    if (found)
        QCoreApplication::installTranslator(translator);
    //! [translation]
    return found;
}

void guardView(QRenderWidget* view, orvek::base::BaseMouseHandler* handler,
               orvek::crossplatform::DisplaySurfaceManagerInterface* manager)
{
    //! [ViewInput]
    // Instead of SetHandleMouseInterface() and SetDisplaySurfaceManagerInterface().
    auto* input = new orvek::host::ViewInput(view, handler, view);
    input->setManager(manager);
    input->setPassesTab(true);
    input->setContinuousUpdate(true);
    //! [ViewInput]
}
