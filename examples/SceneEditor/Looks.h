#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

class QPalette;

namespace sceneeditor
{
//! The names of the looks: "system", which is the platform's, and the ones of examples/styles.
QStringList lookNames();
//! What the menu calls a look.
QString lookTitle(const QString& name);
//! Style, palette and style sheet of the program. An unknown name counts as "system".
void applyLook(const QString& name);
//! The palette of one of the files in examples/styles. The colours of an inactive window are those of the active one.
QPalette readPalette(const QString& fileName);
} // namespace sceneeditor
