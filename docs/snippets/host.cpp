#include "snippets.h"

#include <Orvek/Base/BaseMouseHandler.h>
#include <Orvek/CrossPlatform/DisplaySurfaceManagerInterface.h>
#include <Orvek/Host/ViewInput.h>
#include <Orvek/PlugIns/Qt/OrvekQtWidgets/QRenderWidget.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QLocale>
#include <QtCore/QTranslator>

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
    // In place of SetHandleMouseInterface() and SetDisplaySurfaceManagerInterface().
    auto* input = new orvek::host::ViewInput(view, handler, view);
    input->setManager(manager);
    input->setPassesTab(true);
    input->setContinuousUpdate(true);
    //! [ViewInput]
}
