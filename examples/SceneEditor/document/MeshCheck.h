#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace sceneeditor
{
//! Looks through the contents of a mesh file without building anything of it. A few bytes can ask the library that
//! reads meshes for more memory than there is; it fails only after it has filled it. Empty when the file may be read,
//! otherwise what is wrong with it. The kind is the file's suffix in lower case.
QString meshFileFault(const QByteArray& data, const QString& kind);
} // namespace sceneeditor
