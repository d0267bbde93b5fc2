#pragma once

#include <examples/SceneEditor/engine/MoveGizmo.h>
#include <examples/SceneEditor/engine/ShownScene.h>
#include <Orvek/CrossPlatform/PlatformRendererInterface.h>

#include <QtCore/QRect>
#include <QtCore/QVector>
#include <QtGui/QImage>

#include <memory>
#include <optional>

class QOpenGLShaderProgram;

namespace sceneeditor
{
class GpuMesh;
class GpuResources;

//! Draws one scene as seen by one camera. Holds what is to be drawn and, while a surface manager shows it, its part of
//! the graphics card. The setters only remember; the next frame uploads what has changed. One renderer per view; what
//! several of them show is on the graphics card once.
class SceneRenderer final : public orvek::crossplatform::PlatformRendererInterface
{
public:
    SceneRenderer();
    //! Every manager has to have let go of it: RemoveWindow() or AddWindow() with another renderer.
    ~SceneRenderer();

    const ShownScene& shown() const { return m_shown; }
    //! Takes the scene's camera too. Cheap enough for every change of every editor.
    void setScene(const Scene& scene);
    void setCamera(const Camera& camera);
    //! All meshes, by Object::meshFile. Objects without one show a box of lines.
    void setMeshes(const QHash<QString, MeshPointer>& meshes);
    void addMesh(const QString& fileName, const MeshPointer& mesh);
    //! Equirectangular picture of the surroundings, up at the top. A null image goes back to even grey light. The file
    //! name in the scene is not read by the renderer.
    void setEnvironmentImage(const QImage& image);
    //! Degrees; not part of the scene, as a running turntable does not modify the document.
    void setTurntableAngle(double degrees);

    //! Indices into the scene's objects, each of which has an outline; others are left out.
    void setSelection(const QVector<int>& objects);
    //! Arrows over the objects, one of them highlighted unless the axis is -1; nothing for none.
    void setGizmo(const std::optional<MoveGizmo>& gizmo, int axis);
    //! A box over everything, in device pixels, with an edge of this width; an empty one for none.
    void setSelectionBox(const QRect& box, int edge);

    // For the surface manager, with its OpenGL context current.

    //! Whether nothing but the selection box has changed since a sharp frame of this size: then the next one is sharp
    //! and costs next to nothing.
    bool isKept(const QSize& size) const;
    //! Draws into the frame buffer. False when the graphics card cannot: errorText() says why, and it stays so until
    //! releaseGraphics(). A draft has a lower resolution.
    bool draw(GpuResources& gpu, const QSize& size, unsigned int frameBuffer, bool draft = false);
    void releaseGraphics(GpuResources& gpu);
    QString errorText() const { return m_error; }

private:
    struct Graphics;

    bool drawWhole(GpuResources& gpu, const QSize& size, bool draft);
    void updateResources(GpuResources& gpu);
    void setCommonUniforms(QOpenGLShaderProgram& program);
    void drawObjects(GpuResources& gpu, const QMatrix4x4& camera);
    void drawSurface(GpuResources& gpu, const Object& object, const MeshPointer& mesh);
    void drawOutlines(GpuResources& gpu, const QSize& size);
    void drawGizmo(GpuResources& gpu, const QSize& size);
    void drawFloorAndBackground(GpuResources& gpu, const QMatrix4x4& camera, bool draft);
    void drawSelectionBox(GpuResources& gpu, const QSize& size);

    ShownScene m_shown;
    QImage m_environment;
    QVector<int> m_selection;
    std::optional<MoveGizmo> m_gizmo;
    int m_gizmoAxis = -1;
    QRect m_box;
    int m_boxEdge = 1;
    bool m_isKept = false; // what the frame target has of the whole
    QString m_error;
    std::unique_ptr<Graphics> m_graphics; // null while not on the graphics card

    Q_DISABLE_COPY(SceneRenderer)
};
} // namespace sceneeditor
