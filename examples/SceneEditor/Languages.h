#pragma once

#include <QtCore/QStringList>

namespace sceneeditor
{
//! The languages that there are texts for, by their codes; English first.
QStringList languages();
//! Translates the texts of the editor, the library and Qt from now on. Widgets that exist keep theirs, so it comes
//! before the window. An empty code stands for the language of the system's locale; without texts it is English.
void installLanguage(const QString& code);
} // namespace sceneeditor
