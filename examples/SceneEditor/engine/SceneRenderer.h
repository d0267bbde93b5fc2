#pragma once

#include <examples/SceneEditor/document/MeshLoader.h>
#include <examples/SceneEditor/document/Scene.h>
#include <Orvek/CrossPlatform/PlatformRendererInterface.h>

#include <QtCore/QHash>
#include <QtCore/QSize>
#include <QtGui/QImage>
#include <QtGui/QMatrix4x4>

#include <memory>

namespace sceneeditor
{
//! Draws one scene as seen by one camera. Holds what is to be drawn and, while a surface manager shows it, its copy on
//! the graphics card. The setters only remember; the next frame uploads what has changed. One renderer per view, or the
//! same one for views that show the same.
class SceneRenderer final : public orvek::crossplatform::PlatformRendererInterface
{
public:
    SceneRenderer();
    //! Every manager has to have let go of it: RemoveWindow() or AddWindow() with another renderer.
    ~SceneRenderer();

    //! Takes the scene's camera too. Cheap enough for every change of every editor.
    void setScene(const Scene& scene);
    const Scene& scene() const;
    void setCamera(const Camera& camera);

    //! The mesh that objects with this meshFile show; null forgets it. Objects without a mesh show a box of lines.
    void setMesh(const QString& meshFile, const MeshPointer& mesh);
    bool hasMesh(const QString& meshFile) const;

    //! Equirectangular picture of the surroundings, up at the top. A null image goes back to even grey light. The image
    //! is scaled down to at most 2048 x 1024. The file name in the scene is not read by the renderer.
    void setEnvironmentImage(const QImage& image);

    //! Index into the scene's objects; -1 selects none.
    void setSelectedObject(int index);
    //! Degrees; not part of the scene, as a running turntable does not modify the document.
    void setTurntableAngle(double degrees);

    //! The object drawn at the position (device pixels from the top left) of a view of this size; -1 for none.
    int objectAt(const QPoint& position, const QSize& viewport) const;
    //! The box of all visible objects with a mesh, in world space, to frame the camera on. False when there are none.
    bool boundingBox(QVector3D* minimum, QVector3D* maximum) const;

    // For the surface manager, with its OpenGL context current.

    //! Draws into the frame buffer. False when the graphics card cannot: errorText() says why, and it stays so until
    //! releaseGraphics(). A draft has no smooth edges.
    bool draw(const QSize& size, unsigned int frameBuffer, bool draft = false);
    void releaseGraphics();
    QString errorText() const;

private:
    struct Graphics;

    QMatrix4x4 objectMatrix(const Object& object) const;
    void drawShadowMap();
    void drawObjects(const QMatrix4x4& viewProjection, const QSize& size);
    void drawFloorAndBackground(const QMatrix4x4& viewProjection);

    Scene m_scene;
    QHash<QString, MeshPointer> m_meshes;
    QImage m_environment;
    bool m_environmentChanged = true;
    int m_selected = -1;
    double m_turntable = 0.0;
    bool m_shadowsOn = false; // in the frame being drawn
    QString m_error;
    std::unique_ptr<Graphics> m_graphics; // null while not on the graphics card

    Q_DISABLE_COPY(SceneRenderer)
};
} // namespace sceneeditor
