#pragma once

#include <QtGui/QIcon>

namespace sceneeditor
{
//! The icons of the scene editor: one set of lines, drawn in the colour of the text, so that they fit every look and
//! every scale.
enum class Icon
{
    Open,
    Save,
    Undo,
    Redo,
    Add,
    Duplicate,
    Remove,
    Frame,
    Home
};

QIcon icon(Icon which);
} // namespace sceneeditor
