#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace sceneeditor
{
//! The names of the looks: "system", which is the platform's, and those in examples/styles.
QStringList lookNames();
//! The look's title in the menu.
QString lookTitle(const QString& name);
//! Sets the program's style, palette and style sheet. An unknown name counts as "system".
void applyLook(const QString& name);
} // namespace sceneeditor
