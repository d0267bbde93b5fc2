#pragma once

#include <QtGui/QIcon>

namespace sceneeditor
{
//! The icons of the scene editor: one set of lines, drawn in the colour of the text, so that they fit every look and
//! every scale.
enum class Icon
{
    New,
    Open,
    Save,
    Undo,
    Redo,
    Add,
    Duplicate,
    Remove,
    Rename,
    Frame,
    Home,
    View
};

QIcon icon(Icon which);
} // namespace sceneeditor
