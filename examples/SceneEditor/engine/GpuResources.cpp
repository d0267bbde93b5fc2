#include <examples/SceneEditor/engine/GpuResources.h>

#include <examples/SceneEditor/engine/EnvironmentLight.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QtMath>
#include <QtGui/QOpenGLContext>
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QOpenGLVersionFunctionsFactory>
#endif

#include <cmath>
#include <cstddef>
#include <utility>

// A static library's resources are initialised by name, outside of any namespace.
static void initialiseShaders()
{
    Q_INIT_RESOURCE(shaders);
}

namespace sceneeditor
{
namespace
{
// Drivers without a graphics card keep triangles in memory until they are drawn, some 300 bytes for each.
constexpr quint32 MaximumQueued = 50'000;
constexpr quint32 LongestStep = 25'000;         // triangles
constexpr GLuint64 LongestWait = 1'000'000'000; // nanoseconds

Gl* functionsOf(QOpenGLContext* context)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return QOpenGLVersionFunctionsFactory::get<Gl>(context);
#else
    return context->versionFunctions<Gl>();
#endif
}

struct GpuResourcesText
{
    Q_DECLARE_TR_FUNCTIONS(SceneRenderer)
};

// Joins the files in this order; each may use only what comes before it.
QByteArray source(const QStringList& files)
{
    QByteArray code("#version 330 core\n");
    for (const QString& name : files)
    {
        QFile file(QStringLiteral(":/engine/shaders/") + name);
        Q_ASSERT_X(file.exists(), "GpuResources", qPrintable(name));
        if (file.open(QIODevice::ReadOnly))
            code += file.readAll();
    }
    return code;
}

bool link(QOpenGLShaderProgram& program, const QString& vertex, const QStringList& fragment, QString* error)
{
    if (program.addShaderFromSourceCode(QOpenGLShader::Vertex, source({vertex})) &&
        program.addShaderFromSourceCode(QOpenGLShader::Fragment, source(fragment)) && program.link())
        return true;
    *error = GpuResourcesText::tr("The graphics driver refuses a shader: %1").arg(program.log().simplified());
    return false;
}

MeshPointer makeLineBox()
{
    auto box = std::make_shared<MeshData>();
    for (int i = 0; i < 8; ++i)
        box->vertices.push_back(
            {{(i & 1) != 0 ? 0.5f : -0.5f, (i & 2) != 0 ? 0.5f : -0.5f, (i & 4) != 0 ? 0.5f : -0.5f}, {0, 1, 0}});
    box->indices = {0, 1, 2, 3, 4, 5, 6, 7, 0, 2, 1, 3, 4, 6, 5, 7, 0, 4, 1, 5, 2, 6, 3, 7};
    return box;
}

// A shaft that begins a little away from the centre, and a head.
MeshPointer makeArrow()
{
    struct Ring
    {
        float place;
        float radius;
    };
    constexpr Ring rings[] = {{0.16f, 0.0f}, {0.16f, 0.018f}, {0.78f, 0.018f}, {0.78f, 0.075f}, {1.0f, 0.0f}};
    constexpr quint32 corners = 24;
    auto arrow = std::make_shared<MeshData>();
    for (const Ring& ring : rings)
        for (quint32 i = 0; i < corners; ++i)
        {
            const double angle = qDegreesToRadians(360.0 * i / corners);
            const QVector3D out(0.0f, float(std::cos(angle)), float(std::sin(angle)));
            arrow->vertices.push_back({QVector3D(ring.place, 0, 0) + out * ring.radius, out});
        }
    for (quint32 ring = 0; ring + 1 < std::size(rings); ++ring)
        for (quint32 i = 0; i < corners; ++i)
        {
            const quint32 a = ring * corners + i;
            const quint32 b = ring * corners + (i + 1) % corners;
            for (quint32 index : {a, b, a + corners, b, b + corners, a + corners})
                arrow->indices.push_back(index);
        }
    return arrow;
}

// Makes a texture with mipmaps. The image must be of Format_RGBA8888.
GLuint makeTexture(Gl* gl, const QImage& image, GLint format)
{
    GLuint texture = 0;
    gl->glGenTextures(1, &texture);
    gl->glBindTexture(GL_TEXTURE_2D, texture);
    gl->glTexImage2D(GL_TEXTURE_2D, 0, format, image.width(), image.height(), 0, GL_RGBA, GL_UNSIGNED_BYTE,
                     image.constBits());
    gl->glGenerateMipmap(GL_TEXTURE_2D);
    return texture;
}

// The known one, or a new one; then entries that no view holds any more are removed.
template <typename Key, typename Resource, typename Source>
std::shared_ptr<const Resource> resourceOf(QHash<Key, std::weak_ptr<const Resource>>& known, Key key, Gl* gl,
                                           const Source& source)
{
    if (auto resource = known.value(key).lock())
        return resource;
    for (auto it = known.begin(); it != known.end();)
        it = it->expired() ? known.erase(it) : std::next(it);
    auto made = std::make_shared<const Resource>(gl, source);
    known.insert(key, made);
    return made;
}
} // namespace

GpuMesh::GpuMesh(Gl* gl, const MeshPointer& mesh) : m_gl(gl), m_source(mesh)
{
    using Vertex = MeshData::Vertex;
    gl->glGenVertexArrays(1, &m_vertexArray);
    gl->glBindVertexArray(m_vertexArray);
    gl->glGenBuffers(1, &m_vertices);
    gl->glBindBuffer(GL_ARRAY_BUFFER, m_vertices);
    gl->glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(mesh->vertices.size() * sizeof(Vertex)),
                     mesh->vertices.data(), GL_STATIC_DRAW);
    gl->glGenBuffers(1, &m_indices);
    gl->glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_indices);
    gl->glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(mesh->indices.size() * sizeof(quint32)),
                     mesh->indices.data(), GL_STATIC_DRAW);
    gl->glEnableVertexAttribArray(0);
    gl->glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, sizeof(Vertex), nullptr);
    gl->glEnableVertexAttribArray(1);
    gl->glVertexAttribPointer(1, 3, GL_FLOAT, GL_FALSE, sizeof(Vertex),
                              reinterpret_cast<const void*>(offsetof(Vertex, normal)));
    if (!mesh->textureCoordinates.empty())
    {
        gl->glGenBuffers(1, &m_places);
        gl->glBindBuffer(GL_ARRAY_BUFFER, m_places);
        gl->glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(mesh->textureCoordinates.size() * sizeof(QVector2D)),
                         mesh->textureCoordinates.data(), GL_STATIC_DRAW);
        gl->glEnableVertexAttribArray(2);
        gl->glVertexAttribPointer(2, 2, GL_FLOAT, GL_FALSE, sizeof(QVector2D), nullptr);
    }
    gl->glBindVertexArray(0);
    // Colours are sRGB, the others are not.
    std::vector<GLint> formats(mesh->images.size(), GL_SRGB8_ALPHA8);
    for (const MeshMaterial& material : mesh->materials)
        for (const qint32 image : {material.metallicRoughnessImage, material.normalImage})
            if (image >= 0)
                formats[size_t(image)] = GL_RGBA8;
    for (size_t i = 0; i < formats.size(); ++i)
        m_textures.push_back(makeTexture(gl, mesh->images[i], formats[i]));
}

GpuMesh::~GpuMesh()
{
    m_gl->glDeleteTextures(GLsizei(m_textures.size()), m_textures.data());
    m_gl->glDeleteBuffers(1, &m_places);
    m_gl->glDeleteVertexArrays(1, &m_vertexArray);
    m_gl->glDeleteBuffers(1, &m_vertices);
    m_gl->glDeleteBuffers(1, &m_indices);
}

void GpuMesh::draw(GLenum mode) const
{
    m_gl->glBindVertexArray(m_vertexArray);
    m_gl->glDrawElements(mode, static_cast<GLsizei>(m_source->indices.size()), GL_UNSIGNED_INT, nullptr);
}

void GpuMesh::drawTriangles(quint32 first, quint32 count) const
{
    m_gl->glBindVertexArray(m_vertexArray);
    m_gl->glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(3 * count), GL_UNSIGNED_INT,
                         reinterpret_cast<const void*>(3 * sizeof(quint32) * first));
}

GpuEnvironment::GpuEnvironment(Gl* gl, const QImage& picture) : m_gl(gl)
{
    const EnvironmentLight light = environmentLight(picture);
    m_irradiance = light.irradiance;
    m_width = float(light.width);
    gl->glGenTextures(1, &m_texture);
    gl->glBindTexture(GL_TEXTURE_2D, m_texture);
    gl->glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    gl->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB16F, light.width, light.height, 0, GL_RGB, GL_FLOAT, light.texels.data());
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    gl->glGenerateMipmap(GL_TEXTURE_2D);
}

GpuEnvironment::~GpuEnvironment()
{
    m_gl->glDeleteTextures(1, &m_texture);
}

void GpuEnvironment::setUniforms(QOpenGLShaderProgram& program, int unit) const
{
    program.setUniformValue("u_environment", unit);
    program.setUniformValue("u_environmentWidth", m_width);
    program.setUniformValueArray("u_irradiance", m_irradiance.data(), int(m_irradiance.size()));
}

std::unique_ptr<GpuResources> GpuResources::create(QString* error)
{
    initialiseShaders();
    std::unique_ptr<GpuResources> result(new GpuResources);
    GpuResources& r = *result;
    QOpenGLContext* context = QOpenGLContext::currentContext();
    auto* gl = context ? functionsOf(context) : nullptr;
    if (!gl || !gl->initializeOpenGLFunctions())
    {
        *error = GpuResourcesText::tr("The graphics driver has no OpenGL 3.3");
        return nullptr;
    }
    r.m_gl = gl;
    const QStringList shared{QStringLiteral("display.glsl"), QStringLiteral("environment.glsl"),
                             QStringLiteral("light.glsl")};
    const QString wholeView = QStringLiteral("view.vert");
    const auto linkObject = [&](QOpenGLShaderProgram& program, const QString& material)
    {
        return link(program, QStringLiteral("object.vert"),
                    shared + QStringList{material, QStringLiteral("object.frag")}, error);
    };
    if (!linkObject(r.object, QStringLiteral("material.glsl")) ||
        !linkObject(r.texturedObject, QStringLiteral("textures.glsl")) ||
        !link(r.depth, QStringLiteral("depth.vert"), {QStringLiteral("depth.frag")}, error) ||
        !link(r.background, wholeView, shared + QStringList(QStringLiteral("background.frag")), error) ||
        !link(r.selection, wholeView, {QStringLiteral("selection.frag")}, error))
        return nullptr;
    r.m_lineBox = std::make_unique<GpuMesh>(gl, makeLineBox());
    r.m_arrow = std::make_unique<GpuMesh>(gl, makeArrow());
    gl->glGenVertexArrays(1, &r.m_emptyArray);
    QImage white(1, 1, QImage::Format_RGBA8888);
    white.fill(Qt::white);
    r.m_white = makeTexture(gl, white, GL_RGBA8);
    return result;
}

GpuResources::~GpuResources()
{
    if (!m_gl)
        return;
    m_gl->glDeleteVertexArrays(1, &m_emptyArray);
    m_gl->glDeleteTextures(1, &m_white);
    m_gl->glDeleteSync(m_fence);
}

std::shared_ptr<const GpuMesh> GpuResources::mesh(const MeshPointer& mesh)
{
    return resourceOf(m_meshes, mesh.get(), m_gl, mesh);
}

std::shared_ptr<const GpuEnvironment> GpuResources::environment(const QImage& picture)
{
    return resourceOf(m_environments, picture.cacheKey(), m_gl, picture);
}

void GpuResources::draw(DrawSteps& steps, const MeshPointer& mesh, quint32 first, quint32 count)
{
    const std::shared_ptr<const GpuMesh> drawn = this->mesh(mesh);
    while (count > 0)
    {
        const quint32 some = qMin(count, LongestStep);
        if (steps.next())
        {
            queue(some);
            drawn->drawTriangles(first, some);
        }
        first += some;
        count -= some;
    }
}

// Waits until there is room for so many triangles.
void GpuResources::queue(quint32 triangles)
{
    if (m_queued + triangles > MaximumQueued)
    {
        GLsync before = std::exchange(m_fence, m_gl->glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0));
        if (before)
            m_gl->glClientWaitSync(before, GL_SYNC_FLUSH_COMMANDS_BIT, LongestWait);
        m_gl->glDeleteSync(before);
        m_queued = 0;
    }
    m_queued += triangles;
}

void GpuResources::drawView() const
{
    m_gl->glBindVertexArray(m_emptyArray);
    m_gl->glDrawArrays(GL_TRIANGLES, 0, 3);
    m_gl->glBindVertexArray(0);
}
} // namespace sceneeditor
