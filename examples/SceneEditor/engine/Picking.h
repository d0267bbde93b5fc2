#pragma once

#include <examples/SceneEditor/engine/ShownScene.h>

#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtCore/QSize>

namespace sceneeditor
{
//! The object drawn at the position (device pixels) of a view of this size; -1 for none. Boxes of lines are not hit.
int objectAt(const ShownScene& shown, const QPoint& position, const QSize& view);
//! The visible objects with any part in the area (device pixels), even if others hide it. Ascending.
QVector<int> objectsIn(const ShownScene& shown, const QRect& area, const QSize& view);
} // namespace sceneeditor
