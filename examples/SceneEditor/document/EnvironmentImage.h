#pragma once

#include <QtGui/QImage>

namespace sceneeditor
{
//! Reads a picture of the surroundings from a regular file. Null with an error of one line that names the file if it
//! cannot, or if the picture is larger than any that the engine shows.
QImage readEnvironmentImage(const QString& fileName, QString* error);
} // namespace sceneeditor
