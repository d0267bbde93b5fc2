#pragma once

#include <examples/SceneEditor/engine/DrawSteps.h>
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

//! Draws one scene as seen by one camera. Holds what is to be drawn and, while a surface manager shows it, its graphics
//! resources. The setters only store; the next frame uploads what has changed. Each view has its own renderer; what
//! several of them show is on the graphics card once.
class SceneRenderer final : public orvek::crossplatform::PlatformRendererInterface
{
public:
    SceneRenderer();
    //! No manager may still use it: call RemoveWindow(), or AddWindow() with another renderer, before.
    ~SceneRenderer();

    const ShownScene& shown() const { return m_contents.shown; }
    //! Sets the scene's camera too. Cheap enough for every change of every editor.
    void setScene(const Scene& scene);
    void setCamera(const Camera& camera);
    //! All meshes, by Object::meshFile. Objects without one show a box of lines.
    void setMeshes(const QHash<QString, MeshPointer>& meshes);
    void addMesh(const QString& fileName, const MeshPointer& mesh);
    //! Equirectangular picture of the surroundings, up at the top. A null image restores even grey light. The renderer
    //! ignores the file name in the scene.
    void setEnvironmentImage(const QImage& image);
    //! Degrees; not part of the scene, as a running turntable does not modify the document.
    void setTurntableAngle(double degrees);

    //! Indices of the scene's objects that get an outline; others are left out.
    void setSelection(const QVector<int>& objects);
    //! Arrows over the objects, one of them highlighted unless the axis is -1; nullopt for no arrows.
    void setGizmo(const std::optional<MoveGizmo>& gizmo, int axis);
    //! A box over everything, in device pixels, with an edge of this width; an empty one for none. Outlines are twice
    //! as wide.
    void setSelectionBox(const QRect& box, int edge);

    // For the surface manager, with its OpenGL context current.

    enum class Drawn
    {
        Failed, //!< the graphics card cannot: errorText() says why; no new attempt until releaseGraphics()
        Partly, //!< the frame buffer has not been touched; the next call continues
        Wholly
    };

    //! Whether nothing but the selection box has changed since a sharp frame of this size: then the next one is sharp
    //! and costs next to nothing.
    bool isKept(const QSize& size) const;
    //! Whether anything else has changed since the last frame was begun.
    bool isOutdated() const { return m_isOutdated; }
    //! Whether a frame has been begun that draw() has not finished.
    bool isUnderWay() const { return m_isUnderWay; }
    //! Whether the last frame that was begun has a lower resolution.
    bool isDraft() const { return m_isDraft; }
    //! Draws into the frame buffer. A draft has a lower resolution. Stops after the limit in milliseconds, unless it is
    //! negative; a draft that was begun is finished first, a sharp frame only if nothing has changed.
    Drawn draw(GpuResources& gpu, const QSize& size, unsigned int frameBuffer, bool draft = false, int limit = -1);
    void releaseGraphics(GpuResources& gpu);
    QString errorText() const { return m_error; }

private:
    struct Graphics;

    struct Contents
    {
        ShownScene shown;
        QImage environment;
        QVector<int> selection;
        std::optional<MoveGizmo> gizmo;
        int gizmoAxis = -1;
    };

    bool beginFrame(GpuResources& gpu, const QSize& size, bool draft);
    bool drawFrame(GpuResources& gpu);
    void updateResources(GpuResources& gpu);
    void setCommonUniforms(QOpenGLShaderProgram& program);
    void drawObjects(GpuResources& gpu, const QMatrix4x4& camera);
    void drawSurface(GpuResources& gpu, const Object& object, const MeshPointer& mesh);
    void drawOutlines(GpuResources& gpu);
    void drawGizmo(GpuResources& gpu);
    void drawFloorAndBackground(GpuResources& gpu, const QMatrix4x4& camera);
    void drawSelectionBox(GpuResources& gpu, const QSize& size);

    Contents m_contents;
    QRect m_box;
    int m_boxEdge = 1;
    bool m_isOutdated = true;
    // The last frame that was begun.
    Contents m_drawn;
    QSize m_size; // of the view
    bool m_isDraft = false;
    bool m_isUnderWay = false;
    DrawSteps m_steps;
    QString m_error;
    std::unique_ptr<Graphics> m_graphics; // null while not on the graphics card

    Q_DISABLE_COPY(SceneRenderer)
};
} // namespace sceneeditor
