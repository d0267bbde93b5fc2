#pragma once

#include <QtGui/QIcon>

namespace sceneeditor
{
//! The scene editor's icons: line drawings in the colour of the text, so they fit every look and scale.
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
