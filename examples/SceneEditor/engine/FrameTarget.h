#pragma once

#include <examples/SceneEditor/engine/GpuResources.h>

#include <QtCore/QSize>

namespace sceneeditor
{
//! Where objects are drawn before they come into the view: with depth, stencil and samples, which the view's own
//! buffers need not have then. All functions but the constructor are called with the context current.
class FrameTarget
{
public:
    FrameTarget() = default;

    //! Does nothing if it is so already. False with the reason if the driver cannot. Samples per pixel: 0 for one.
    bool resize(Gl* gl, const QSize& size, int samples, QString* error);
    void release(Gl* gl);

    QSize size() const { return m_size; }
    GLuint frameBuffer() const { return m_frame; }
    //! Makes the picture: what was drawn so far.
    void resolve(Gl* gl) const;
    GLuint picture() const { return m_picture; }

private:
    QSize m_size;
    int m_samples = 0; // as asked for
    GLuint m_frame = 0;
    GLuint m_buffers[2] = {}; // colour, depth and stencil
    GLuint m_pictureFrame = 0;
    GLuint m_picture = 0;

    Q_DISABLE_COPY(FrameTarget)
};
} // namespace sceneeditor
