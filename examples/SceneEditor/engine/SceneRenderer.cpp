#include <examples/SceneEditor/engine/SceneRenderer.h>

#include <examples/SceneEditor/engine/CameraMath.h>
#include <examples/SceneEditor/engine/EnvironmentLight.h>
#include <examples/SceneEditor/engine/FrameTarget.h>
#include <examples/SceneEditor/engine/GpuResources.h>
#include <examples/SceneEditor/engine/LightMath.h>
#include <examples/SceneEditor/engine/ShadowMap.h>

#include <algorithm>

namespace sceneeditor
{
namespace
{
constexpr int MaximumOccluders = 16;
constexpr int SmoothSamples = 4;
constexpr int DraftScale = 2;                        // pixels of the view along each edge of a draft's pixel
constexpr float OutlineEdges = 2.0f;                 // width, in edges of the selection box
const QVector3D SelectionColour(1.0f, 0.62f, 0.15f); // sRGB, like the next ones
const QVector3D AxisColours[3] = {{0.93f, 0.27f, 0.33f}, {0.50f, 0.80f, 0.22f}, {0.25f, 0.55f, 0.98f}};
const QVector3D HeldAxisColour(1.0f, 0.87f, 0.35f);

// As in object.frag.
enum Mode
{
    Lit,
    Flat,
    Normals,
    AsItComes
};

// Texture units.
enum Unit
{
    EnvironmentUnit,
    ShadowUnit,
    ObjectsUnit,
    MaterialUnits // the first of four
};

constexpr const char* MaterialImages[] = {"u_baseColourImage", "u_metallicRoughnessImage", "u_emissionImage",
                                          "u_normalImage"};

QVector3D display(const QColor& colour)
{
    return {float(colour.redF()), float(colour.greenF()), float(colour.blueF())};
}

Mode modeOf(ShadingMode shading)
{
    switch (shading)
    {
    case ShadingMode::Lit:
        return Lit;
    case ShadingMode::Flat:
        return Flat;
    case ShadingMode::Normals:
        return Normals;
    case ShadingMode::Wireframe:
        break;
    }
    return AsItComes;
}

// Of the texture that is bound.
void setFilter(Gl* gl, TextureFilter filter)
{
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER,
                        filter == TextureFilter::Nearest ? GL_NEAREST : GL_LINEAR);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER,
                        filter == TextureFilter::Nearest    ? GL_NEAREST_MIPMAP_NEAREST
                        : filter == TextureFilter::Bilinear ? GL_LINEAR_MIPMAP_NEAREST
                                                            : GL_LINEAR_MIPMAP_LINEAR);
}

void setModel(QOpenGLShaderProgram& program, const QMatrix4x4& model)
{
    program.setUniformValue("u_model", model);
    program.setUniformValue("u_normalMatrix", model.normalMatrix());
}

// Each selected object has a number, so that it gets its own outline; objects that are not selected have 0.
int stencilOf(int selected)
{
    return 1 + selected % 255;
}
} // namespace

struct SceneRenderer::Graphics
{
    std::vector<std::shared_ptr<const GpuMesh>> meshes; // of the scene's objects, kept loaded
    std::shared_ptr<const GpuEnvironment> environment;
    FrameTarget frame;
    ShadowMap shadow;
};

SceneRenderer::SceneRenderer() = default;

SceneRenderer::~SceneRenderer()
{
    Q_ASSERT_X(!m_graphics, "SceneRenderer", "still shown by a surface manager");
}

void SceneRenderer::setScene(const Scene& scene)
{
    m_contents.shown.scene = scene;
    m_isOutdated = true;
}

void SceneRenderer::setCamera(const Camera& camera)
{
    m_contents.shown.scene.camera = camera;
    m_isOutdated = true;
}

void SceneRenderer::setMeshes(const QHash<QString, MeshPointer>& meshes)
{
    m_contents.shown.meshes = meshes;
    m_isOutdated = true;
}

void SceneRenderer::addMesh(const QString& fileName, const MeshPointer& mesh)
{
    m_contents.shown.meshes.insert(fileName, mesh);
    m_isOutdated = true;
}

void SceneRenderer::setEnvironmentImage(const QImage& image)
{
    m_contents.environment = image;
    m_isOutdated = true;
}

void SceneRenderer::setTurntableAngle(double degrees)
{
    m_contents.shown.turntable = degrees;
    m_isOutdated = true;
}

void SceneRenderer::setSelection(const QVector<int>& objects)
{
    m_contents.selection = objects;
    m_isOutdated = true;
}

void SceneRenderer::setGizmo(const std::optional<MoveGizmo>& gizmo, int axis)
{
    if (m_contents.gizmo == gizmo && m_contents.gizmoAxis == axis)
        return;
    m_contents.gizmo = gizmo;
    m_contents.gizmoAxis = axis;
    m_isOutdated = true;
}

void SceneRenderer::setSelectionBox(const QRect& box, int edge)
{
    m_box = box;
    m_boxEdge = edge;
}

bool SceneRenderer::isKept(const QSize& size) const
{
    return m_graphics && !m_isOutdated && !m_isUnderWay && !m_isDraft && m_size == size;
}

SceneRenderer::Drawn SceneRenderer::draw(GpuResources& gpu, const QSize& size, unsigned int frameBuffer, bool draft,
                                         int limit)
{
    if (!m_error.isEmpty())
        return Drawn::Failed;
    const bool goesOn = m_isUnderWay && m_size == size && (m_isDraft ? draft : !m_isOutdated);
    if (!isKept(size))
    {
        if (!goesOn && !beginFrame(gpu, size, draft))
            return Drawn::Failed;
        m_steps.begin(limit);
        m_isUnderWay = !drawFrame(gpu);
        if (m_isUnderWay)
            return Drawn::Partly;
    }
    m_graphics->frame.show(gpu.gl(), frameBuffer, size);
    gpu.gl()->glViewport(0, 0, size.width(), size.height());
    drawSelectionBox(gpu, size);
    return Drawn::Wholly;
}

bool SceneRenderer::beginFrame(GpuResources& gpu, const QSize& size, bool draft)
{
    if (!m_graphics)
        m_graphics = std::make_unique<Graphics>();
    const QSize drawn = draft ? (size / DraftScale).expandedTo(QSize(1, 1)) : size;
    if (!m_graphics->frame.resize(gpu.gl(), drawn, draft ? 0 : SmoothSamples, &m_error))
        return false;
    m_drawn = m_contents;
    m_size = size;
    m_isDraft = draft;
    m_isOutdated = false;
    m_steps.restart();
    updateResources(gpu);
    return true;
}

// Returns false if there was no time for all of it.
bool SceneRenderer::drawFrame(GpuResources& gpu)
{
    Gl* const gl = gpu.gl();
    Graphics& g = *m_graphics;
    g.shadow.update(gpu, m_steps, m_drawn.shown);

    gl->glBindFramebuffer(GL_FRAMEBUFFER, g.frame.objectsBuffer());
    gl->glViewport(0, 0, g.frame.size().width(), g.frame.size().height());
    gl->glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    if (m_steps.next())
        gl->glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    gl->glActiveTexture(GL_TEXTURE0 + ShadowUnit);
    gl->glBindTexture(GL_TEXTURE_2D, g.shadow.texture());
    gl->glActiveTexture(GL_TEXTURE0 + EnvironmentUnit);
    gl->glBindTexture(GL_TEXTURE_2D, g.environment->texture());
    setFilter(gl, m_drawn.shown.scene.view.textureFilter);
    const QMatrix4x4 camera = cameraMatrix(m_drawn.shown.scene.camera, m_size);
    drawObjects(gpu, camera);
    drawOutlines(gpu);
    drawGizmo(gpu);
    if (!m_steps.isComplete())
        return false;
    g.frame.resolveObjects(gl);

    gl->glBindFramebuffer(GL_FRAMEBUFFER, g.frame.wholeBuffer());
    gl->glActiveTexture(GL_TEXTURE0 + ObjectsUnit);
    gl->glBindTexture(GL_TEXTURE_2D, g.frame.objects());
    gl->glActiveTexture(GL_TEXTURE0);
    drawFloorAndBackground(gpu, camera);
    return true;
}

void SceneRenderer::releaseGraphics(GpuResources& gpu)
{
    if (m_graphics)
    {
        m_graphics->frame.release(gpu.gl());
        m_graphics->shadow.release(gpu.gl());
    }
    m_graphics.reset();
    m_isUnderWay = false;
    m_error.clear();
}

void SceneRenderer::updateResources(GpuResources& gpu)
{
    Graphics& g = *m_graphics;
    // The old ones are released last: most of them are needed again.
    std::vector<std::shared_ptr<const GpuMesh>> meshes;
    for (const Object& object : m_drawn.shown.scene.objects)
        if (const MeshPointer mesh = m_drawn.shown.mesh(object))
            meshes.push_back(gpu.mesh(mesh));
    g.meshes = std::move(meshes);
    g.environment = gpu.environment(m_drawn.environment);
}

void SceneRenderer::setCommonUniforms(QOpenGLShaderProgram& program)
{
    m_graphics->environment->setUniforms(program, EnvironmentUnit);
    m_graphics->shadow.setUniforms(program, ShadowUnit);
    setLight(program, m_drawn.shown.scene.light);
    program.setUniformValue("u_ambient", float(m_drawn.shown.scene.light.ambient));
    program.setUniformValue("u_exposure", float(m_drawn.shown.scene.view.exposure));
    program.setUniformValue("u_eye", eyePosition(m_drawn.shown.scene.camera));
}

void SceneRenderer::drawObjects(GpuResources& gpu, const QMatrix4x4& camera)
{
    Gl* const gl = gpu.gl();
    const View& view = m_drawn.shown.scene.view;
    gl->glEnable(GL_DEPTH_TEST);
    gl->glDepthFunc(GL_LEQUAL);
    for (QOpenGLShaderProgram* each : {&gpu.texturedObject, &gpu.object})
    {
        each->bind();
        setCommonUniforms(*each);
        each->setUniformValue("u_viewProjection", camera);
        each->setUniformValue("u_outline", QVector2D(0.0f, 0.0f));
    }
    QOpenGLShaderProgram& program = gpu.object;
    std::vector<int> stencils(m_drawn.shown.scene.objects.size());
    for (int i = 0; i < m_drawn.selection.size() && view.highlightSelection; ++i)
        if (m_drawn.selection[i] >= 0 && m_drawn.selection[i] < int(stencils.size()))
            stencils[size_t(m_drawn.selection[i])] = stencilOf(i);
    for (size_t i = 0; i < stencils.size(); ++i)
    {
        const Object& object = m_drawn.shown.scene.objects[i];
        if (!object.visible)
            continue;
        setModel(program, m_drawn.shown.matrix(object));
        const MeshPointer mesh = m_drawn.shown.mesh(object);
        if (!mesh)
        {
            program.setUniformValue("u_mode", int(AsItComes));
            program.setUniformValue("u_baseColour",
                                    stencils[i] > 0 ? SelectionColour : display(object.material.baseColour));
            if (m_steps.next())
                gpu.lineBox().draw(GL_LINES);
            continue;
        }
        gl->glEnable(GL_STENCIL_TEST);
        gl->glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE);
        gl->glStencilFunc(GL_ALWAYS, stencils[i], 0xff);
        if (view.shading == ShadingMode::Wireframe)
        {
            // A dark body hides the lines on the far side.
            program.setUniformValue("u_mode", int(AsItComes));
            program.setUniformValue("u_baseColour", display(view.backgroundColour) * 0.75f);
            gl->glEnable(GL_POLYGON_OFFSET_FILL);
            gl->glPolygonOffset(1.0f, 1.0f);
            gpu.draw(m_steps, mesh);
            gl->glDisable(GL_POLYGON_OFFSET_FILL);
            program.setUniformValue("u_baseColour", display(object.material.baseColour));
            gl->glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
            gpu.draw(m_steps, mesh);
            gl->glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
        }
        else
        {
            drawSurface(gpu, object, mesh);
            program.bind();
        }
        gl->glDisable(GL_STENCIL_TEST);
    }
}

// Triangles of the mesh's main material, or of none, use the object's material; the others use the file's.
void SceneRenderer::drawSurface(GpuResources& gpu, const Object& object, const MeshPointer& mesh)
{
    quint32 first = 0;
    const auto draw = [&](const Material& material, const MeshMaterial& images, quint32 count)
    {
        if (count == 0)
            return;
        const std::shared_ptr<const GpuMesh> drawn = gpu.mesh(mesh);
        const GLuint textures[] = {drawn->texture(images.baseColourImage),
                                   drawn->texture(images.metallicRoughnessImage), drawn->texture(images.emissionImage),
                                   drawn->texture(images.normalImage)};
        const bool isTextured = std::any_of(std::begin(textures), std::end(textures), [](GLuint t) { return t > 0; });
        QOpenGLShaderProgram& program = isTextured ? gpu.texturedObject : gpu.object;
        program.bind();
        setModel(program, m_drawn.shown.matrix(object));
        program.setUniformValue("u_mode", int(modeOf(m_drawn.shown.scene.view.shading)));
        program.setUniformValue("u_baseColour", linear(material.baseColour));
        program.setUniformValue("u_roughness", float(material.roughness));
        program.setUniformValue("u_metallic", float(material.metallic));
        program.setUniformValue("u_emission", linear(material.emissionColour) * float(material.emission));
        for (int i = 0; isTextured && i < int(std::size(textures)); ++i)
        {
            gpu.gl()->glActiveTexture(GLenum(GL_TEXTURE0 + MaterialUnits + i));
            gpu.gl()->glBindTexture(GL_TEXTURE_2D, textures[i] > 0 ? textures[i] : gpu.white());
            setFilter(gpu.gl(), m_drawn.shown.scene.view.textureFilter);
            program.setUniformValue(MaterialImages[i], MaterialUnits + i);
        }
        if (isTextured)
            program.setUniformValue("u_hasNormalImage", images.normalImage >= 0);
        gpu.draw(m_steps, mesh, first, count);
        first += count;
    };
    quint32 others = quint32(mesh->triangleCount());
    for (const MeshMaterial& material : mesh->materials)
        others -= material.triangleCount;
    draw(object.material, {}, others);
    const int main = mesh->mainMaterial();
    for (int i = 0; i < int(mesh->materials.size()); ++i)
    {
        const MeshMaterial& material = mesh->materials[size_t(i)];
        draw(i == main ? object.material : material.material, material, material.triangleCount);
    }
}

// After all objects, so that an outline lies over the neighbours it passes in front of.
void SceneRenderer::drawOutlines(GpuResources& gpu)
{
    if (!m_drawn.shown.scene.view.highlightSelection)
        return;
    Gl* const gl = gpu.gl();
    QOpenGLShaderProgram& program = gpu.object;
    program.setUniformValue("u_mode", int(AsItComes));
    program.setUniformValue("u_baseColour", SelectionColour);
    const float pixels = OutlineEdges * float(m_boxEdge);
    program.setUniformValue("u_outline",
                            QVector2D(pixels * 2.0f / float(m_size.width()), pixels * 2.0f / float(m_size.height())));
    gl->glEnable(GL_STENCIL_TEST);
    gl->glStencilOp(GL_KEEP, GL_KEEP, GL_KEEP);
    // Pushed behind others' surfaces in the same plane, such as a copy's floor, where it would shimmer through.
    gl->glEnable(GL_POLYGON_OFFSET_FILL);
    gl->glPolygonOffset(pixels + 1.0f, 4.0f);
    for (int i = 0; i < m_drawn.selection.size(); ++i)
    {
        const int index = m_drawn.selection[i];
        if (index < 0 || index >= int(m_drawn.shown.scene.objects.size()))
            continue;
        const Object& object = m_drawn.shown.scene.objects[size_t(index)];
        const MeshPointer mesh = m_drawn.shown.mesh(object);
        if (!object.visible || !mesh)
            continue;
        setModel(program, m_drawn.shown.matrix(object));
        gl->glStencilFunc(GL_NOTEQUAL, stencilOf(i), 0xff);
        gpu.draw(m_steps, mesh);
    }
    gl->glDisable(GL_POLYGON_OFFSET_FILL);
    gl->glDisable(GL_STENCIL_TEST);
}

// Drawn over the objects, but a nearer arrow hides those behind it.
void SceneRenderer::drawGizmo(GpuResources& gpu)
{
    if (!m_drawn.gizmo)
        return;
    const MoveGizmo& gizmo = *m_drawn.gizmo;
    if (m_steps.next())
        gpu.gl()->glClear(GL_DEPTH_BUFFER_BIT);
    QOpenGLShaderProgram& program = gpu.object;
    program.setUniformValue("u_mode", int(AsItComes));
    program.setUniformValue("u_outline", QVector2D(0.0f, 0.0f));
    for (int axis = 0; axis < 3; ++axis)
    {
        if (!gizmo.isShown(axis, m_drawn.shown.scene.camera, m_size))
            continue;
        QMatrix4x4 model;
        model.translate(gizmo.origin);
        for (int column = 0; column < 3; ++column)
            model.setColumn(column, QVector4D(gizmo.axes[size_t((axis + column) % 3)], 0.0f));
        model.scale(gizmo.length(m_drawn.shown.scene.camera, m_size));
        setModel(program, model);
        program.setUniformValue("u_baseColour", axis == m_drawn.gizmoAxis ? HeldAxisColour : AxisColours[axis]);
        if (m_steps.next())
            gpu.arrow().draw();
    }
}

void SceneRenderer::drawFloorAndBackground(GpuResources& gpu, const QMatrix4x4& camera)
{
    const View& view = m_drawn.shown.scene.view;
    const bool shaded = view.shading == ShadingMode::Lit && m_drawn.shown.scene.light.shadows;
    QVector<QVector4D> occluders;
    for (const Object& object : m_drawn.shown.scene.objects)
    {
        if (!shaded || !object.visible || !m_drawn.shown.mesh(object) || occluders.size() == MaximumOccluders)
            continue;
        const Box box = m_drawn.shown.box(object);
        const QVector3D size = box.maximum - box.minimum;
        const QVector3D centre = box.centre();
        const float radius = 0.5f * qMin(size.y(), 0.5f * (size.x() + size.z()));
        occluders << QVector4D(centre.x(), qMax(box.minimum.y() + radius, radius), centre.z(), radius);
    }

    QOpenGLShaderProgram& program = gpu.background;
    program.bind();
    setCommonUniforms(program);
    program.setUniformValue("u_objects", int(ObjectsUnit));
    program.setUniformValue("u_colour", display(view.backgroundColour));
    program.setUniformValue("u_showEnvironment", view.environmentBackground && !m_drawn.environment.isNull());
    program.setUniformValue("u_toWorld", camera.inverted());
    program.setUniformValue("u_cell", view.grid ? float(view.gridCellSize) : 0.0f);
    program.setUniformValue("u_pixel", m_isDraft ? float(DraftScale) : 1.0f);
    program.setUniformValue("u_extent", float(view.gridCellSize) * float(view.gridExtent));
    const bool dark = view.backgroundColour.lightnessF() < 0.5;
    program.setUniformValue("u_lineColour", dark ? QVector3D(1.0f, 1.0f, 1.0f) : QVector3D(0.0f, 0.0f, 0.0f));
    program.setUniformValue("u_darkness", view.shading == ShadingMode::Lit ? 0.62f : 0.0f);
    program.setUniformValue("u_occluderCount", int(occluders.size()));
    if (!occluders.isEmpty())
        program.setUniformValueArray("u_occluders", occluders.constData(), int(occluders.size()));
    gpu.gl()->glDisable(GL_DEPTH_TEST);
    gpu.drawView();
    program.release();
}

void SceneRenderer::drawSelectionBox(GpuResources& gpu, const QSize& size)
{
    if (m_box.isEmpty())
        return;
    Gl* const gl = gpu.gl();
    QOpenGLShaderProgram& program = gpu.selection;
    program.bind();
    const float top = float(size.height() - m_box.y());
    program.setUniformValue(
        "u_area", QVector4D(float(m_box.x()), top - float(m_box.height()), float(m_box.x() + m_box.width()), top));
    program.setUniformValue("u_colour", SelectionColour);
    program.setUniformValue("u_width", float(m_boxEdge));
    gl->glEnable(GL_BLEND);
    // The window's own alpha stays opaque.
    gl->glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ZERO, GL_ONE);
    gpu.drawView();
    gl->glDisable(GL_BLEND);
    program.release();
}
} // namespace sceneeditor
