#pragma once

#include <examples/SceneEditor/document/MeshLoader.h>
#include <examples/SceneEditor/engine/DrawSteps.h>

#include <QOpenGLFunctions_3_3_Core>
#include <QOpenGLShaderProgram>
#include <QtCore/QHash>
#include <QtGui/QImage>

#include <array>
#include <memory>

namespace sceneeditor
{
using Gl = QOpenGLFunctions_3_3_Core;

//! A mesh on the graphics card. Created, drawn and destroyed with the context current.
class GpuMesh
{
public:
    //! The functions belong to the context.
    GpuMesh(Gl* gl, const MeshPointer& mesh);
    ~GpuMesh();

    void draw(GLenum mode = GL_TRIANGLES) const;
    void drawTriangles(quint32 first, quint32 count) const;
    //! The texture of the mesh's picture with this index; 0 for -1.
    GLuint texture(int image) const { return image < 0 ? 0 : m_textures[size_t(image)]; }

private:
    Gl* const m_gl;
    const MeshPointer m_source; // kept, so that no other mesh gets its address
    GLuint m_vertexArray = 0;
    GLuint m_vertices = 0;
    GLuint m_indices = 0;
    GLuint m_places = 0;
    std::vector<GLuint> m_textures; // by the indices in MeshData::images

    Q_DISABLE_COPY(GpuMesh)
};

//! The surroundings on the graphics card: a texture with mipmaps, and the light on surfaces. As for meshes, the context
//! must be current.
class GpuEnvironment
{
public:
    GpuEnvironment(Gl* gl, const QImage& picture);
    ~GpuEnvironment();

    GLuint texture() const { return m_texture; }
    //! Sets the uniforms of environment.glsl, with the texture in this unit. The program must be bound.
    void setUniforms(QOpenGLShaderProgram& program, int unit) const;

private:
    Gl* const m_gl;
    GLuint m_texture = 0;
    float m_width = 1.0f;
    std::array<QVector3D, 9> m_irradiance;

    Q_DISABLE_COPY(GpuEnvironment)
};

//! What all views of one OpenGL context share: programs, meshes and surroundings, each loaded once and kept as long as
//! a view holds it. All functions, with constructor and destructor, are called with the context current.
class GpuResources
{
public:
    //! Null with the reason if the driver does not support it.
    static std::unique_ptr<GpuResources> create(QString* error);
    ~GpuResources();

    Gl* gl() const { return m_gl; }
    QOpenGLShaderProgram object;
    QOpenGLShaderProgram texturedObject; //!< of materials with pictures
    QOpenGLShaderProgram depth;
    QOpenGLShaderProgram background;
    QOpenGLShaderProgram selection;

    std::shared_ptr<const GpuMesh> mesh(const MeshPointer& mesh);
    //! Equal pictures share one; a null picture gives even grey light.
    std::shared_ptr<const GpuEnvironment> environment(const QImage& picture);
    //! The box of lines for objects without a mesh, as pairs of points.
    const GpuMesh& lineBox() const { return *m_lineBox; }
    //! An arrow of length 1 along X.
    const GpuMesh& arrow() const { return *m_arrow; }
    //! Draws triangles of the mesh, all of them or some, in steps of a frame.
    void draw(DrawSteps& steps, const MeshPointer& mesh) { draw(steps, mesh, 0, quint32(mesh->triangleCount())); }
    void draw(DrawSteps& steps, const MeshPointer& mesh, quint32 first, quint32 count);
    //! A texture of one white pixel.
    GLuint white() const { return m_white; }
    //! Draws one triangle over the whole view, with view.vert.
    void drawView() const;

private:
    GpuResources() = default;
    void queue(quint32 triangles);

    Gl* m_gl = nullptr; // belongs to the context
    QHash<const MeshData*, std::weak_ptr<const GpuMesh>> m_meshes;
    QHash<qint64, std::weak_ptr<const GpuEnvironment>> m_environments; // by the key of the picture
    std::unique_ptr<GpuMesh> m_lineBox;
    std::unique_ptr<GpuMesh> m_arrow;
    GLuint m_emptyArray = 0;
    GLuint m_white = 0;
    quint32 m_queued = 0;     // triangles since the fence
    GLsync m_fence = nullptr; // of the drawing before them; null before the first one

    Q_DISABLE_COPY(GpuResources)
};
} // namespace sceneeditor
