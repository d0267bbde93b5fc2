#pragma once

#include <examples/SceneEditor/engine/ShownScene.h>

#include <QtGui/QVector4D>

class QOpenGLShaderProgram;

namespace sceneeditor
{
//! Sets the light's own uniforms of light.glsl. The program must be bound.
void setLight(QOpenGLShaderProgram& program, const Light& light);

//! From the world to the clip space of the shadow map, around the box of all casters, which must not be empty.
QMatrix4x4 shadowMatrix(const Light& light, const Box& casters);
} // namespace sceneeditor
