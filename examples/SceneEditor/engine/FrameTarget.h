#pragma once

#include <examples/SceneEditor/engine/GpuResources.h>

#include <QtCore/QSize>

namespace sceneeditor
{
//! The buffers that a view is drawn to before it is shown. Objects come first, with depth, stencil and samples, so the
//! window's own buffers need none of these. The whole picture is kept. All functions but the constructor are called
//! with the context current.
class FrameTarget
{
public:
    FrameTarget() = default;

    //! Does nothing if nothing changes. False with the reason if the driver cannot. Samples per pixel: 0 for one.
    bool resize(Gl* gl, const QSize& size, int samples, QString* error);
    void release(Gl* gl);

    QSize size() const { return m_size; }
    GLuint objectsBuffer() const { return m_frame; }
    //! Makes the texture objects() from objectsBuffer().
    void resolveObjects(Gl* gl) const;
    GLuint objects() const { return m_picture; }
    //! For the whole picture; one sample, colour only.
    GLuint wholeBuffer() const { return m_wholeFrame; }
    //! Copies the whole picture, stretched to the size.
    void show(Gl* gl, GLuint frameBuffer, const QSize& size) const;

private:
    QSize m_size;
    int m_samples = 0; // as requested
    GLuint m_frame = 0;
    GLuint m_buffers[2] = {}; // colour, depth and stencil
    GLuint m_pictureFrame = 0;
    GLuint m_picture = 0;
    GLuint m_wholeFrame = 0;
    GLuint m_whole = 0;

    Q_DISABLE_COPY(FrameTarget)
};
} // namespace sceneeditor
