#pragma once

#include <examples/SceneEditor/document/Scene.h>
#include <Orvek/Host/ObjectType.h>

#include <memory>

namespace sceneeditor
{
using Type = std::shared_ptr<const orvek::host::ObjectType>;

// The scene, described once. Panel, file, comparison and undo are made from it: a new member is a line in Scene.h, one
// in SceneDescription.cpp, and whatever it does in the engine. Titles are in the language that was set at the first
// call.

//! All that a file has.
const Type& sceneType();
//! One object with its material.
const Type& objectType();
//! What a panel shows of an object: all but its mesh, which is read in the background, and its visibility, which the
//! list of objects shows.
const Type& objectPanelType();
//! What a panel shows of the scene besides its objects.
const Type& scenePanelType();

constexpr int maximumObjectCount = 10000;
} // namespace sceneeditor
