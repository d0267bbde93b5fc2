#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace sceneeditor
{
//! The names of the looks: "system", which is the platform's, and the ones of examples/styles.
QStringList lookNames();
//! What the menu calls a look.
QString lookTitle(const QString& name);
//! Style, palette and style sheet of the program. An unknown name counts as "system".
void applyLook(const QString& name);
} // namespace sceneeditor
