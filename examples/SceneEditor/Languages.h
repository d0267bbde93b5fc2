#pragma once

#include <QtCore/QStringList>

namespace sceneeditor
{
//! The codes of the languages with translations; English first.
QStringList languages();
//! Translates the texts of the editor, the library and Qt from now on. Existing widgets keep theirs, so call it before
//! creating the window. An empty code means the system's language, or English if that has no translation.
void installLanguage(const QString& code);
} // namespace sceneeditor
