#include <examples/SceneEditor/engine/ShadowMap.h>

#include <examples/SceneEditor/engine/LightMath.h>

#include <utility>

namespace sceneeditor
{
void ShadowMap::update(GpuResources& gpu, DrawSteps& steps, const ShownScene& shown)
{
    if (steps.isFirstTime())
        prepare(gpu, shown);
    if (!m_isOn || !m_isOther)
        return;
    Gl* const gl = gpu.gl();
    gl->glBindFramebuffer(GL_FRAMEBUFFER, m_frame);
    gl->glViewport(0, 0, m_size, m_size);
    gl->glEnable(GL_DEPTH_TEST);
    gl->glDepthFunc(GL_LEQUAL);
    if (steps.next())
        gl->glClear(GL_DEPTH_BUFFER_BIT);
    gl->glEnable(GL_POLYGON_OFFSET_FILL);
    gl->glPolygonOffset(2.0f, 4.0f);
    gpu.depth.bind();
    for (const Caster& caster : m_casters)
    {
        gpu.depth.setUniformValue("u_matrix", m_matrix * caster.matrix);
        gpu.draw(steps, caster.mesh);
    }
    gl->glDisable(GL_POLYGON_OFFSET_FILL);
    m_isValid = steps.isComplete();
}

// Finds out what the map must show, and whether it already does.
void ShadowMap::prepare(GpuResources& gpu, const ShownScene& shown)
{
    const Light& light = shown.scene.light;
    const Box box = shown.meshBox();
    m_isOn = light.shadows && shown.scene.view.shading == ShadingMode::Lit && !box.isEmpty() &&
             resize(gpu.gl(), light.shadowMapSize);
    if (!m_isOn)
        return;
    std::vector<Caster> casters;
    for (const Object& object : shown.scene.objects)
        if (const MeshPointer mesh = shown.mesh(object); mesh && object.visible)
            casters.push_back({mesh, shown.matrix(object)});
    m_isOther = !m_isValid || !(m_light == light) || m_casters != casters;
    if (!m_isOther)
        return;
    m_isValid = false;
    m_light = light;
    m_casters = std::move(casters);
    m_matrix = shadowMatrix(light, box);
    m_worldTexel = (box.maximum - box.minimum).length() / float(m_size);
}

void ShadowMap::release(Gl* gl)
{
    gl->glDeleteTextures(1, &m_texture);
    gl->glDeleteFramebuffers(1, &m_frame);
}

void ShadowMap::setUniforms(QOpenGLShaderProgram& program, int unit) const
{
    QMatrix4x4 toTexture;
    toTexture.translate(0.5f, 0.5f, 0.5f);
    toTexture.scale(0.5f);
    program.setUniformValue("u_shadowMap", unit);
    program.setUniformValue("u_shadowMatrix", toTexture * m_matrix);
    program.setUniformValue("u_shadowTexel", m_isOn ? 1.0f / float(m_size) : 0.0f);
    // The same softness in metres for all sizes from 512 up; smaller maps need more, to hide their blocks.
    program.setUniformValue("u_shadowSoftness", qMax(1.5f, float(m_size) / 340.0f));
    program.setUniformValue("u_shadowOffset", m_worldTexel * 1.5f);
}

bool ShadowMap::resize(Gl* gl, int size)
{
    if (m_size == size)
        return true;
    if (m_texture == 0)
    {
        gl->glGenTextures(1, &m_texture);
        gl->glGenFramebuffers(1, &m_frame);
    }
    gl->glBindTexture(GL_TEXTURE_2D, m_texture);
    gl->glTexImage2D(GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT24, size, size, 0, GL_DEPTH_COMPONENT, GL_UNSIGNED_INT,
                     nullptr);
    const GLfloat lit[4] = {1.0f, 1.0f, 1.0f, 1.0f};
    gl->glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, lit);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_BORDER);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_BORDER);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_MODE, GL_COMPARE_REF_TO_TEXTURE);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_FUNC, GL_LEQUAL);
    gl->glBindFramebuffer(GL_FRAMEBUFFER, m_frame);
    gl->glFramebufferTexture2D(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_TEXTURE_2D, m_texture, 0);
    gl->glDrawBuffer(GL_NONE);
    gl->glReadBuffer(GL_NONE);
    const bool isComplete = gl->glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    m_size = isComplete ? size : 0;
    m_isValid = false;
    return isComplete;
}
} // namespace sceneeditor
