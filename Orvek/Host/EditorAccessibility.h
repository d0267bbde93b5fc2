#pragma once

#include <Orvek/Host/OrvekQtHostExport.h>

#include <QtCore/QCoreApplication>

namespace orvek::host
{
//! Describes the widgets to screen readers and other assistive tools: names with the current title ("Roughness,
//! value"), sliders with the editor's own values, expandable sections, and colours in the order red, green, blue,
//! alpha.
//!
//! It serves all editors, sections, panels and render widgets of the application, and costs nothing until an assistive
//! tool asks. A name set by the host with setAccessibleName() is kept.
class ORVEKQTHOST_EXPORT EditorAccessibility
{
    Q_DECLARE_TR_FUNCTIONS(orvek::host::EditorAccessibility)

public:
    EditorAccessibility() = delete;

    //! Call it on the GUI thread once the QApplication exists, preferably before the first window. A second call does
    //! nothing.
    static void install();
    //! From now on the widgets answer as Qt would by itself. Does nothing without an earlier install().
    static void uninstall();
    //! Whether install() has been called without uninstall() since.
    static bool isInstalled();
};
} // namespace orvek::host
