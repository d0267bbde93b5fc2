#pragma once

#include <Orvek/Host/OrvekQtHostExport.h>

#include <QtCore/QCoreApplication>

namespace orvek::host
{
//! Describes the widgets to screen readers and other assistive tools: names with the live title ("Roughness, value"),
//! sliders with the editor's own values, sections that unfold, and colours in the order red, green, blue, alpha.
//!
//! It serves all editors, sections, panels and render widgets of the application, and costs nothing until an assistive
//! tool asks. A name that the host has set with setAccessibleName() is kept.
class ORVEKQTHOST_EXPORT EditorAccessibility
{
    Q_DECLARE_TR_FUNCTIONS(orvek::host::EditorAccessibility)

public:
    EditorAccessibility() = delete;

    //! Call it once the QApplication is there, best before the first window; only from the GUI thread. A second call
    //! does nothing.
    static void install();
    //! From here on the widgets answer as Qt makes them. Without install() before it does nothing.
    static void uninstall();
    //! Whether install() was called, and uninstall() not since.
    static bool isInstalled();
};
} // namespace orvek::host
