#pragma once

#include <examples/SceneEditor/engine/GpuResources.h>
#include <examples/SceneEditor/engine/ShownScene.h>

#include <vector>

namespace sceneeditor
{
//! Depths as the light sees them. All functions but the constructor are called with the context current.
class ShadowMap
{
public:
    ShadowMap() = default;

    //! Redraws the map if the light or the objects changed: moving the camera costs nothing.
    void update(GpuResources& gpu, DrawSteps& steps, const ShownScene& shown);
    void release(Gl* gl);

    GLuint texture() const { return m_texture; }
    //! Sets the shadow uniforms of light.glsl, with the texture in this unit. The program must be bound.
    void setUniforms(QOpenGLShaderProgram& program, int unit) const;

private:
    struct Caster
    {
        MeshPointer mesh;
        QMatrix4x4 matrix;

        bool operator==(const Caster& other) const { return mesh == other.mesh && matrix == other.matrix; }
    };

    void prepare(GpuResources& gpu, const ShownScene& shown);
    bool resize(Gl* gl, int size);

    GLuint m_frame = 0;
    GLuint m_texture = 0;
    int m_size = 0;            // of the texture, texels; 0 if the driver refuses it
    bool m_isOn = false;       // in the frame being drawn
    bool m_isOther = false;    // the map must be redrawn
    float m_worldTexel = 0.0f; // metres
    QMatrix4x4 m_matrix;       // world to clip space
    // What the map shows.
    bool m_isValid = false;
    Light m_light;
    std::vector<Caster> m_casters;

    Q_DISABLE_COPY(ShadowMap)
};
} // namespace sceneeditor
