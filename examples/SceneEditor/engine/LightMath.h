#pragma once

#include <examples/SceneEditor/engine/ShownScene.h>

#include <QtGui/QVector4D>

class QOpenGLShaderProgram;

namespace sceneeditor
{
//! Sets what light.glsl asks about the light itself. The program is bound.
void setLight(QOpenGLShaderProgram& program, const Light& light);

//! From the world to the clip space of the shadow map, around what casts shadows. The box is not empty.
QMatrix4x4 shadowMatrix(const Light& light, const Box& casters);
} // namespace sceneeditor
