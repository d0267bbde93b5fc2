#pragma once

#include <examples/SceneEditor/document/Scene.h>

#include <QtCore/QStringList>

#include <optional>

namespace sceneeditor
{
//! Files beyond this size (bytes) are refused before they are parsed.
constexpr qint64 maximumSceneFileSize = qint64(16) * 1024 * 1024;

//! Reads a scene. Returns nothing on failure; then a one-line error names the file, the place in it (line and column of
//! a syntax error, otherwise a path such as objects[1].material.roughness) and what was expected there. Members that
//! are left out have their defaults. Unknown members are left out of the scene and named in the warnings. File names in
//! the scene come back absolute; the files themselves are not looked at.
std::optional<Scene> readScene(const QString& fileName, QString* error, QStringList* warnings = nullptr);

//! Replaces the file as a whole or leaves it untouched. File names are written relative to the file's directory where
//! the file system allows it. A scene that readScene() would refuse is not written either.
bool writeScene(const Scene& scene, const QString& fileName, QString* error);
} // namespace sceneeditor
