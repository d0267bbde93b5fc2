#include <examples/SceneEditor/engine/FrameTarget.h>

#include <QtCore/QCoreApplication>

namespace sceneeditor
{
namespace
{
struct FrameTargetText
{
    Q_DECLARE_TR_FUNCTIONS(SceneRenderer)
};
} // namespace

bool FrameTarget::resize(Gl* gl, const QSize& size, int samples, QString* error)
{
    if (m_size == size && m_samples == samples)
        return true;
    release(gl);
    GLint largest = 0;
    GLint granted = 0;
    gl->glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &largest);
    gl->glGetIntegerv(GL_MAX_SAMPLES, &granted);
    granted = qMin(granted, samples);
    if (size.width() > largest || size.height() > largest)
    {
        *error =
            FrameTargetText::tr("The view is larger than %1 pixels, the limit of the graphics driver").arg(largest);
        return false;
    }
    gl->glGenFramebuffers(1, &m_pictureFrame);
    gl->glGenTextures(1, &m_picture);
    gl->glBindTexture(GL_TEXTURE_2D, m_picture);
    gl->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, size.width(), size.height(), 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    gl->glBindFramebuffer(GL_FRAMEBUFFER, m_pictureFrame);
    gl->glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, m_picture, 0);

    gl->glGenFramebuffers(1, &m_wholeFrame);
    gl->glGenRenderbuffers(1, &m_whole);
    gl->glBindFramebuffer(GL_FRAMEBUFFER, m_wholeFrame);
    gl->glBindRenderbuffer(GL_RENDERBUFFER, m_whole);
    gl->glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, size.width(), size.height());
    gl->glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, m_whole);

    gl->glGenFramebuffers(1, &m_frame);
    gl->glGenRenderbuffers(2, m_buffers);
    gl->glBindFramebuffer(GL_FRAMEBUFFER, m_frame);
    const auto attach = [&](GLuint buffer, GLenum format, GLenum place)
    {
        gl->glBindRenderbuffer(GL_RENDERBUFFER, buffer);
        gl->glRenderbufferStorageMultisample(GL_RENDERBUFFER, granted, format, size.width(), size.height());
        gl->glFramebufferRenderbuffer(GL_FRAMEBUFFER, place, GL_RENDERBUFFER, buffer);
    };
    for (;;)
    {
        attach(m_buffers[0], GL_RGBA8, GL_COLOR_ATTACHMENT0);
        attach(m_buffers[1], GL_DEPTH24_STENCIL8, GL_DEPTH_STENCIL_ATTACHMENT);
        if (gl->glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE)
            break;
        if (granted == 0)
        {
            *error = FrameTargetText::tr("The graphics driver has no frame buffer of %1 x %2 pixels")
                         .arg(size.width())
                         .arg(size.height());
            return false;
        }
        granted = 0;
    }
    m_size = size;
    m_samples = samples;
    return true;
}

void FrameTarget::release(Gl* gl)
{
    // All of them ignore 0.
    gl->glDeleteFramebuffers(1, &m_frame);
    gl->glDeleteRenderbuffers(2, m_buffers);
    gl->glDeleteFramebuffers(1, &m_pictureFrame);
    gl->glDeleteTextures(1, &m_picture);
    gl->glDeleteFramebuffers(1, &m_wholeFrame);
    gl->glDeleteRenderbuffers(1, &m_whole);
    m_frame = m_buffers[0] = m_buffers[1] = m_pictureFrame = m_picture = m_wholeFrame = m_whole = 0;
    m_size = QSize();
}

void FrameTarget::resolveObjects(Gl* gl) const
{
    const int width = m_size.width();
    const int height = m_size.height();
    gl->glBindFramebuffer(GL_READ_FRAMEBUFFER, m_frame);
    gl->glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_pictureFrame);
    gl->glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
}

void FrameTarget::show(Gl* gl, GLuint frameBuffer, const QSize& size) const
{
    gl->glBindFramebuffer(GL_READ_FRAMEBUFFER, m_wholeFrame);
    gl->glBindFramebuffer(GL_DRAW_FRAMEBUFFER, frameBuffer);
    gl->glBlitFramebuffer(0, 0, m_size.width(), m_size.height(), 0, 0, size.width(), size.height(), GL_COLOR_BUFFER_BIT,
                          size == m_size ? GL_NEAREST : GL_LINEAR);
    gl->glBindFramebuffer(GL_FRAMEBUFFER, frameBuffer);
}
} // namespace sceneeditor
