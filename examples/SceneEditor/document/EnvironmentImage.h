#pragma once

#include <QtGui/QImage>

namespace sceneeditor
{
//! Reads a picture of the surroundings from a regular file. Null, with a one-line error that names the file, if that
//! fails or if the picture is larger than any that the engine shows.
QImage readEnvironmentImage(const QString& fileName, QString* error);
} // namespace sceneeditor
