#include <examples/SceneEditor/engine/SceneRenderer.h>

#include <examples/SceneEditor/engine/SceneShaders.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QtMath>
#include <QtGui/QOpenGLContext>
#include <QtGui/QOpenGLFunctions_3_3_Core>
#include <QtGui/QOpenGLShaderProgram>

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

namespace sceneeditor
{
namespace
{
constexpr int maximumOccluders = 16;
constexpr int maximumEnvironmentWidth = 2048;
constexpr int smoothSamples = 4;
constexpr float outlinePixels = 2.0f;
const QVector3D selectionColour(1.0f, 0.62f, 0.15f); // sRGB
constexpr double pi = 3.14159265358979323846;

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SceneRenderer)
};

float toLinear(double c)
{
    return static_cast<float>(c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4));
}

QVector3D linear(const QColor& colour)
{
    return {toLinear(colour.redF()), toLinear(colour.greenF()), toLinear(colour.blueF())};
}

QVector3D display(const QColor& colour)
{
    return {float(colour.redF()), float(colour.greenF()), float(colour.blueF())};
}

// The point at the azimuth and elevation (degrees) on the unit sphere.
QVector3D direction(double azimuth, double elevation)
{
    const double a = qDegreesToRadians(azimuth);
    const double e = qDegreesToRadians(elevation);
    return {float(std::sin(a) * std::cos(e)), float(std::sin(e)), float(std::cos(a) * std::cos(e))};
}

QVector3D eyePosition(const Camera& camera)
{
    return camera.target + direction(camera.azimuth, camera.elevation) * float(camera.distance);
}

QMatrix4x4 viewMatrix(const Camera& camera)
{
    QMatrix4x4 view;
    view.lookAt(eyePosition(camera), camera.target, QVector3D(0.0f, 1.0f, 0.0f));
    return view;
}

QMatrix4x4 projectionMatrix(const Camera& camera, const QSize& size)
{
    QMatrix4x4 projection;
    const float distance = float(camera.distance);
    projection.perspective(float(camera.fieldOfView), float(size.width()) / float(size.height()), distance * 0.02f,
                           distance * 60.0f + 100.0f);
    return projection;
}

// Pictures have no light brighter than white; what is nearly white was usually cut off there.
float restoredHighlight(const QVector3D& colour)
{
    const float brightest = qMax(colour.x(), qMax(colour.y(), colour.z()));
    return 1.0f + 3.0f * std::pow(brightest, 6.0f);
}

struct Environment
{
    int width = 0;
    int height = 0;
    std::vector<float> texels; // linear RGB
    std::array<QVector3D, 9> irradiance;
};

Environment makeEnvironment(const QImage& source)
{
    Environment result;
    QImage image = source;
    if (image.isNull())
    {
        image = QImage(4, 2, QImage::Format_RGB32);
        image.fill(QColor(150, 150, 150));
    }
    image = image.convertToFormat(QImage::Format_RGB32);
    result.width = image.width();
    result.height = image.height();
    result.texels.reserve(size_t(result.width) * size_t(result.height) * 3);

    // Light from all around a surface is smooth: nine spherical harmonics hold it. The factors are those of the basis
    // functions, squared, with the cosine lobe, over pi, so that the shader multiplies by plain polynomials.
    constexpr double factors[9] = {0.0795775, 0.159155,  0.159155, 0.159155, 0.298416,
                                   0.298416,  0.0248680, 0.298416, 0.0746039};
    std::array<std::array<double, 3>, 9> sums{};
    for (int y = 0; y < result.height; ++y)
    {
        const QRgb* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        const double polar = pi * (y + 0.5) / result.height;
        const double weight = std::sin(polar) * (2.0 * pi / result.width) * (pi / result.height);
        for (int x = 0; x < result.width; ++x)
        {
            QVector3D colour = linear(QColor(line[x]));
            colour *= restoredHighlight(colour);
            const double around = 2.0 * pi * ((x + 0.5) / result.width - 0.5);
            const double dx = std::sin(around) * std::sin(polar);
            const double dy = std::cos(polar);
            const double dz = -std::cos(around) * std::sin(polar);
            const double basis[9] = {
                1.0, dy, dz, dx, dx * dy, dy * dz, 3.0 * dz * dz - 1.0, dx * dz, dx * dx - dy * dy};
            for (int i = 0; i < 3; ++i)
            {
                result.texels.push_back(colour[i]);
                for (size_t k = 0; k < 9; ++k)
                    sums[k][size_t(i)] += basis[k] * weight * double(colour[i]);
            }
        }
    }
    for (size_t k = 0; k < 9; ++k)
        result.irradiance[k] =
            QVector3D(float(sums[k][0] * factors[k]), float(sums[k][1] * factors[k]), float(sums[k][2] * factors[k]));
    return result;
}

struct Box
{
    QVector3D minimum{std::numeric_limits<float>::max(), std::numeric_limits<float>::max(),
                      std::numeric_limits<float>::max()};
    QVector3D maximum = -minimum;

    bool isEmpty() const { return minimum.x() > maximum.x(); }

    void add(const QVector3D& point)
    {
        for (int i = 0; i < 3; ++i)
        {
            minimum[i] = qMin(minimum[i], point[i]);
            maximum[i] = qMax(maximum[i], point[i]);
        }
    }
};

Box worldBox(const MeshData& mesh, const QMatrix4x4& matrix)
{
    Box box;
    for (int corner = 0; corner < 8; ++corner)
        box.add(matrix.map(QVector3D((corner & 1) != 0 ? mesh.maximum.x() : mesh.minimum.x(),
                                     (corner & 2) != 0 ? mesh.maximum.y() : mesh.minimum.y(),
                                     (corner & 4) != 0 ? mesh.maximum.z() : mesh.minimum.z())));
    return box;
}

bool rayMeetsBox(const QVector3D& origin, const QVector3D& way, const QVector3D& minimum, const QVector3D& maximum)
{
    float near = 0.0f;
    float far = std::numeric_limits<float>::max();
    for (int i = 0; i < 3; ++i)
    {
        if (qAbs(way[i]) < 1e-20f)
        {
            if (origin[i] < minimum[i] || origin[i] > maximum[i])
                return false;
            continue;
        }
        const float a = (minimum[i] - origin[i]) / way[i];
        const float b = (maximum[i] - origin[i]) / way[i];
        near = qMax(near, qMin(a, b));
        far = qMin(far, qMax(a, b));
    }
    return near <= far;
}

// Multiple of the way from the origin to the triangle, or infinity.
float rayMeetsTriangle(const QVector3D& origin, const QVector3D& way, const QVector3D& a, const QVector3D& b,
                       const QVector3D& c)
{
    constexpr float never = std::numeric_limits<float>::infinity();
    const QVector3D normal = QVector3D::crossProduct(b - a, c - a);
    const float slope = QVector3D::dotProduct(normal, way);
    if (slope == 0.0f)
        return never;
    const float distance = QVector3D::dotProduct(normal, a - origin) / slope;
    if (!(distance > 0.0f))
        return never;
    const QVector3D p = origin + way * distance;
    const auto inside = [&](const QVector3D& from, const QVector3D& to)
    { return QVector3D::dotProduct(QVector3D::crossProduct(to - from, p - from), normal) >= 0.0f; };
    return inside(a, b) && inside(b, c) && inside(c, a) ? distance : never;
}

struct GpuMesh
{
    MeshPointer source;
    GLuint vertexArray = 0;
    GLuint vertices = 0;
    GLuint indices = 0;
    GLsizei count = 0;
};
} // namespace

// What the shadow map was drawn for.
struct Caster
{
    MeshPointer mesh;
    QVector3D position;
    QVector3D rotation;
    QVector3D scale;

    bool operator==(const Caster& other) const
    {
        return mesh == other.mesh && position == other.position && rotation == other.rotation && scale == other.scale;
    }
};

struct SceneRenderer::Graphics
{
    QOpenGLFunctions_3_3_Core* gl = nullptr; // owned by the context
    QOpenGLShaderProgram object;
    QOpenGLShaderProgram depth;
    QOpenGLShaderProgram background;
    QHash<QString, GpuMesh> meshes;
    GpuMesh boxMesh;
    GLuint emptyArray = 0;
    GLuint environment = 0;
    float environmentWidth = 1.0f;
    std::array<QVector3D, 9> irradiance;
    QSize size;
    int samples = 0;        // as asked for
    GLuint sampled[3] = {}; // frame buffer, colour, depth and stencil
    GLuint resolved[2] = {};
    GLuint shadowFrame = 0;
    GLuint shadowMap = 0;
    int shadowSize = 0;
    QMatrix4x4 shadowMatrix; // world to texture
    float shadowWorldTexel = 0.0f;
    // What the shadow map shows: moving the camera leaves it as it is.
    bool shadowValid = false;
    Light shadowLight;
    std::vector<Caster> shadowCasters;
    double shadowTurntable = 0.0;
    QVector3D shadowAxis;

    bool prepare(QString* error);
    bool resize(const QSize& wanted, int wantedSamples, QString* error);
    void release();

    GpuMesh upload(const std::vector<MeshData::Vertex>& vertices, const std::vector<quint32>& indices);
    void remove(GpuMesh& mesh);
    void draw(const GpuMesh& mesh, GLenum mode = GL_TRIANGLES);
    void updateMeshes(const QHash<QString, MeshPointer>& wanted);
    void uploadEnvironment(const QImage& image);
    void setEnvironment(QOpenGLShaderProgram& program);
    void setShadow(QOpenGLShaderProgram& program, bool on);
    bool resizeShadow(int wanted);

private:
    bool link(QOpenGLShaderProgram& program, const char* vertex, const QByteArray& fragment, QString* error);
    void removeFrames();
};

bool SceneRenderer::Graphics::link(QOpenGLShaderProgram& program, const char* vertex, const QByteArray& fragment,
                                   QString* error)
{
    const QByteArray version(shaders::version);
    if (program.addShaderFromSourceCode(QOpenGLShader::Vertex, version + vertex) &&
        program.addShaderFromSourceCode(QOpenGLShader::Fragment, version + fragment) && program.link())
        return true;
    *error = Text::tr("The graphics driver refuses a shader: %1").arg(program.log().simplified());
    return false;
}

bool SceneRenderer::Graphics::prepare(QString* error)
{
    QOpenGLContext* context = QOpenGLContext::currentContext();
    gl = context != nullptr ? context->versionFunctions<QOpenGLFunctions_3_3_Core>() : nullptr;
    if (gl == nullptr || !gl->initializeOpenGLFunctions())
    {
        gl = nullptr;
        *error = Text::tr("The graphics driver has no OpenGL 3.3");
        return false;
    }
    const QByteArray common(shaders::common);
    const QByteArray environmentCode(shaders::environment);
    const QByteArray shadowCode(shaders::shadow);
    if (!link(object, shaders::objectVertex, common + environmentCode + shadowCode + shaders::objectFragment, error) ||
        !link(depth, shaders::depthVertex, shaders::depthFragment, error) ||
        !link(background, shaders::backgroundVertex,
              common + environmentCode + shadowCode + shaders::backgroundFragment, error))
        return false;

    gl->glGenVertexArrays(1, &emptyArray);
    const QVector3D up(0.0f, 1.0f, 0.0f);
    std::vector<MeshData::Vertex> corners;
    corners.reserve(8);
    for (int i = 0; i < 8; ++i)
        corners.push_back(
            {{(i & 1) != 0 ? 0.5f : -0.5f, (i & 2) != 0 ? 0.5f : -0.5f, (i & 4) != 0 ? 0.5f : -0.5f}, up});
    boxMesh = upload(corners, {0, 1, 2, 3, 4, 5, 6, 7, 0, 2, 1, 3, 4, 6, 5, 7, 0, 4, 1, 5, 2, 6, 3, 7});
    return true;
}

void SceneRenderer::Graphics::removeFrames()
{
    gl->glDeleteFramebuffers(1, &sampled[0]);
    gl->glDeleteRenderbuffers(2, &sampled[1]);
    gl->glDeleteFramebuffers(1, &resolved[0]);
    gl->glDeleteTextures(1, &resolved[1]);
    size = QSize();
}

// Objects are drawn here first, so the window's own buffers need neither depth nor samples.
bool SceneRenderer::Graphics::resize(const QSize& wanted, int wantedSamples, QString* error)
{
    if (size == wanted && samples == wantedSamples)
        return true;
    removeFrames();
    GLint largest = 0;
    GLint granted = 0;
    gl->glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &largest);
    gl->glGetIntegerv(GL_MAX_SAMPLES, &granted);
    granted = qMin(granted, wantedSamples);
    if (wanted.width() > largest || wanted.height() > largest)
    {
        *error = Text::tr("The view is larger than %1 pixels, the limit of the graphics driver").arg(largest);
        return false;
    }
    gl->glGenFramebuffers(1, &resolved[0]);
    gl->glGenTextures(1, &resolved[1]);
    gl->glBindTexture(GL_TEXTURE_2D, resolved[1]);
    gl->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, wanted.width(), wanted.height(), 0, GL_RGBA, GL_UNSIGNED_BYTE,
                     nullptr);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    gl->glBindFramebuffer(GL_FRAMEBUFFER, resolved[0]);
    gl->glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, resolved[1], 0);

    gl->glGenFramebuffers(1, &sampled[0]);
    gl->glGenRenderbuffers(2, &sampled[1]);
    gl->glBindFramebuffer(GL_FRAMEBUFFER, sampled[0]);
    for (;;)
    {
        gl->glBindRenderbuffer(GL_RENDERBUFFER, sampled[1]);
        gl->glRenderbufferStorageMultisample(GL_RENDERBUFFER, granted, GL_RGBA8, wanted.width(), wanted.height());
        gl->glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, sampled[1]);
        gl->glBindRenderbuffer(GL_RENDERBUFFER, sampled[2]);
        gl->glRenderbufferStorageMultisample(GL_RENDERBUFFER, granted, GL_DEPTH24_STENCIL8, wanted.width(),
                                             wanted.height());
        gl->glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER, sampled[2]);
        if (gl->glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE)
            break;
        if (granted == 0)
        {
            *error = Text::tr("The graphics driver has no frame buffer of %1 x %2 pixels")
                         .arg(wanted.width())
                         .arg(wanted.height());
            return false;
        }
        granted = 0;
    }
    size = wanted;
    samples = wantedSamples;
    return true;
}

void SceneRenderer::Graphics::release()
{
    if (gl == nullptr)
        return;
    removeFrames();
    for (GpuMesh& mesh : meshes)
        remove(mesh);
    meshes.clear();
    remove(boxMesh);
    gl->glDeleteVertexArrays(1, &emptyArray);
    gl->glDeleteTextures(1, &environment);
    gl->glDeleteTextures(1, &shadowMap);
    gl->glDeleteFramebuffers(1, &shadowFrame);
    object.removeAllShaders();
    depth.removeAllShaders();
    background.removeAllShaders();
}

GpuMesh SceneRenderer::Graphics::upload(const std::vector<MeshData::Vertex>& vertices,
                                        const std::vector<quint32>& indices)
{
    using Vertex = MeshData::Vertex;
    GpuMesh mesh;
    mesh.count = static_cast<GLsizei>(indices.size());
    gl->glGenVertexArrays(1, &mesh.vertexArray);
    gl->glBindVertexArray(mesh.vertexArray);
    gl->glGenBuffers(1, &mesh.vertices);
    gl->glBindBuffer(GL_ARRAY_BUFFER, mesh.vertices);
    gl->glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices.size() * sizeof(Vertex)), vertices.data(),
                     GL_STATIC_DRAW);
    gl->glGenBuffers(1, &mesh.indices);
    gl->glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, mesh.indices);
    gl->glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(indices.size() * sizeof(quint32)), indices.data(),
                     GL_STATIC_DRAW);
    gl->glEnableVertexAttribArray(0);
    gl->glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, sizeof(Vertex), nullptr);
    gl->glEnableVertexAttribArray(1);
    gl->glVertexAttribPointer(1, 3, GL_FLOAT, GL_FALSE, sizeof(Vertex),
                              reinterpret_cast<const void*>(offsetof(Vertex, normal)));
    gl->glBindVertexArray(0);
    return mesh;
}

void SceneRenderer::Graphics::remove(GpuMesh& mesh)
{
    gl->glDeleteVertexArrays(1, &mesh.vertexArray);
    gl->glDeleteBuffers(1, &mesh.vertices);
    gl->glDeleteBuffers(1, &mesh.indices);
    mesh = GpuMesh();
}

void SceneRenderer::Graphics::draw(const GpuMesh& mesh, GLenum mode)
{
    gl->glBindVertexArray(mesh.vertexArray);
    gl->glDrawElements(mode, mesh.count, GL_UNSIGNED_INT, nullptr);
}

void SceneRenderer::Graphics::updateMeshes(const QHash<QString, MeshPointer>& wanted)
{
    for (auto it = meshes.begin(); it != meshes.end();)
    {
        if (wanted.value(it.key()) == it->source)
        {
            ++it;
            continue;
        }
        remove(*it);
        it = meshes.erase(it);
        shadowValid = false;
    }
    for (auto it = wanted.constBegin(); it != wanted.constEnd(); ++it)
    {
        if (meshes.contains(it.key()))
            continue;
        GpuMesh mesh = upload(it.value()->vertices, it.value()->indices);
        mesh.source = it.value();
        meshes.insert(it.key(), mesh);
        shadowValid = false;
    }
}

void SceneRenderer::Graphics::uploadEnvironment(const QImage& image)
{
    const Environment data = makeEnvironment(image);
    irradiance = data.irradiance;
    environmentWidth = float(data.width);
    if (environment == 0)
        gl->glGenTextures(1, &environment);
    gl->glBindTexture(GL_TEXTURE_2D, environment);
    gl->glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    gl->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB16F, data.width, data.height, 0, GL_RGB, GL_FLOAT, data.texels.data());
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    gl->glGenerateMipmap(GL_TEXTURE_2D);
}

void SceneRenderer::Graphics::setEnvironment(QOpenGLShaderProgram& program)
{
    program.setUniformValue("u_environment", 0);
    program.setUniformValue("u_environmentWidth", environmentWidth);
    program.setUniformValueArray("u_irradiance", irradiance.data(), int(irradiance.size()));
}

void SceneRenderer::Graphics::setShadow(QOpenGLShaderProgram& program, bool on)
{
    program.setUniformValue("u_shadowMap", 1);
    program.setUniformValue("u_shadowMatrix", shadowMatrix);
    program.setUniformValue("u_shadowTexel", on && shadowSize > 0 ? 1.0f / float(shadowSize) : 0.0f);
    // The same softness in metres for all sizes from 512 up; smaller maps have blocks to hide.
    program.setUniformValue("u_shadowSoftness", qMax(1.5f, float(shadowSize) / 340.0f));
}

bool SceneRenderer::Graphics::resizeShadow(int wanted)
{
    if (shadowSize == wanted)
        return true;
    if (shadowMap == 0)
    {
        gl->glGenTextures(1, &shadowMap);
        gl->glGenFramebuffers(1, &shadowFrame);
    }
    gl->glBindTexture(GL_TEXTURE_2D, shadowMap);
    gl->glTexImage2D(GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT24, wanted, wanted, 0, GL_DEPTH_COMPONENT, GL_UNSIGNED_INT,
                     nullptr);
    const GLfloat lit[4] = {1.0f, 1.0f, 1.0f, 1.0f};
    gl->glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, lit);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_BORDER);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_BORDER);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_MODE, GL_COMPARE_REF_TO_TEXTURE);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_FUNC, GL_LEQUAL);
    gl->glBindFramebuffer(GL_FRAMEBUFFER, shadowFrame);
    gl->glFramebufferTexture2D(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_TEXTURE_2D, shadowMap, 0);
    gl->glDrawBuffer(GL_NONE);
    gl->glReadBuffer(GL_NONE);
    const bool complete = gl->glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    shadowSize = complete ? wanted : 0;
    shadowValid = false;
    return complete;
}

SceneRenderer::SceneRenderer() = default;

SceneRenderer::~SceneRenderer()
{
    Q_ASSERT_X(!m_graphics, "SceneRenderer", "still shown by a surface manager");
}

void SceneRenderer::setScene(const Scene& scene)
{
    m_scene = scene;
}

const Scene& SceneRenderer::scene() const
{
    return m_scene;
}

void SceneRenderer::setCamera(const Camera& camera)
{
    m_scene.camera = camera;
}

void SceneRenderer::setMesh(const QString& meshFile, const MeshPointer& mesh)
{
    if (mesh)
        m_meshes.insert(meshFile, mesh);
    else
        m_meshes.remove(meshFile);
}

bool SceneRenderer::hasMesh(const QString& meshFile) const
{
    return m_meshes.contains(meshFile);
}

void SceneRenderer::setEnvironmentImage(const QImage& image)
{
    m_environment = image;
    if (image.width() > maximumEnvironmentWidth || image.height() > maximumEnvironmentWidth / 2)
        m_environment = image.scaled(qMin(image.width(), maximumEnvironmentWidth),
                                     qMin(image.height(), maximumEnvironmentWidth / 2), Qt::IgnoreAspectRatio,
                                     Qt::SmoothTransformation);
    m_environmentChanged = true;
}

void SceneRenderer::setSelectedObject(int index)
{
    m_selected = index;
}

void SceneRenderer::setTurntableAngle(double degrees)
{
    m_turntable = degrees;
}

QMatrix4x4 SceneRenderer::objectMatrix(const Object& object) const
{
    QMatrix4x4 matrix;
    const QVector3D axis(m_scene.camera.target.x(), 0.0f, m_scene.camera.target.z());
    matrix.translate(axis);
    matrix.rotate(float(m_turntable), 0.0f, 1.0f, 0.0f);
    matrix.translate(object.position - axis);
    matrix.rotate(object.rotation.z(), 0.0f, 0.0f, 1.0f);
    matrix.rotate(object.rotation.y(), 0.0f, 1.0f, 0.0f);
    matrix.rotate(object.rotation.x(), 1.0f, 0.0f, 0.0f);
    matrix.scale(object.scale);
    return matrix;
}

int SceneRenderer::objectAt(const QPoint& position, const QSize& viewport) const
{
    if (viewport.isEmpty())
        return -1;
    const float x = 2.0f * (float(position.x()) + 0.5f) / float(viewport.width()) - 1.0f;
    const float y = 1.0f - 2.0f * (float(position.y()) + 0.5f) / float(viewport.height());
    const QVector3D eye = eyePosition(m_scene.camera);
    const QMatrix4x4 toWorld = (projectionMatrix(m_scene.camera, viewport) * viewMatrix(m_scene.camera)).inverted();
    const QVector3D way = toWorld.map(QVector3D(x, y, 0.0f)) - eye;

    int found = -1;
    float nearest = std::numeric_limits<float>::infinity();
    for (int i = 0; i < int(m_scene.objects.size()); ++i)
    {
        const Object& object = m_scene.objects[size_t(i)];
        const MeshPointer mesh = m_meshes.value(object.meshFile);
        if (!object.visible || !mesh)
            continue;
        // A ray that is transformed without being normalised keeps its parameter: distances compare across objects.
        const QMatrix4x4 toModel = objectMatrix(object).inverted();
        const QVector3D origin = toModel.map(eye);
        const QVector3D modelWay = toModel.mapVector(way);
        if (!rayMeetsBox(origin, modelWay, mesh->minimum, mesh->maximum))
            continue;
        for (size_t t = 0; t + 2 < mesh->indices.size(); t += 3)
        {
            const float distance = rayMeetsTriangle(origin, modelWay, mesh->vertices[mesh->indices[t]].position,
                                                    mesh->vertices[mesh->indices[t + 1]].position,
                                                    mesh->vertices[mesh->indices[t + 2]].position);
            if (distance < nearest)
            {
                nearest = distance;
                found = i;
            }
        }
    }
    return found;
}

bool SceneRenderer::boundingBox(QVector3D* minimum, QVector3D* maximum) const
{
    Box all;
    for (const Object& object : std::as_const(m_scene.objects))
    {
        const MeshPointer mesh = m_meshes.value(object.meshFile);
        if (!object.visible || !mesh)
            continue;
        const Box box = worldBox(*mesh, objectMatrix(object));
        all.add(box.minimum);
        all.add(box.maximum);
    }
    if (all.isEmpty())
        return false;
    *minimum = all.minimum;
    *maximum = all.maximum;
    return true;
}

bool SceneRenderer::draw(const QSize& size, unsigned int frameBuffer, bool draft)
{
    if (!m_error.isEmpty())
        return false;
    if (!m_graphics)
    {
        m_graphics = std::make_unique<Graphics>();
        m_environmentChanged = true;
        if (!m_graphics->prepare(&m_error))
            return false;
    }
    Graphics& g = *m_graphics;
    QOpenGLFunctions_3_3_Core* const gl = g.gl;
    if (!g.resize(size, draft ? 0 : smoothSamples, &m_error))
        return false;
    g.updateMeshes(m_meshes);
    if (m_environmentChanged)
        g.uploadEnvironment(m_environment);
    m_environmentChanged = false;

    drawShadowMap();

    gl->glBindFramebuffer(GL_FRAMEBUFFER, g.sampled[0]);
    gl->glViewport(0, 0, size.width(), size.height());
    gl->glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    gl->glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    gl->glActiveTexture(GL_TEXTURE1);
    gl->glBindTexture(GL_TEXTURE_2D, g.shadowMap);
    gl->glActiveTexture(GL_TEXTURE0);
    gl->glBindTexture(GL_TEXTURE_2D, g.environment);
    const TextureFilter filter = m_scene.view.textureFilter;
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER,
                        filter == TextureFilter::Nearest ? GL_NEAREST : GL_LINEAR);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER,
                        filter == TextureFilter::Nearest    ? GL_NEAREST_MIPMAP_NEAREST
                        : filter == TextureFilter::Bilinear ? GL_LINEAR_MIPMAP_NEAREST
                                                            : GL_LINEAR_MIPMAP_LINEAR);

    const QMatrix4x4 viewProjection = projectionMatrix(m_scene.camera, size) * viewMatrix(m_scene.camera);
    drawObjects(viewProjection, size);

    gl->glBindFramebuffer(GL_READ_FRAMEBUFFER, g.sampled[0]);
    gl->glBindFramebuffer(GL_DRAW_FRAMEBUFFER, g.resolved[0]);
    gl->glBlitFramebuffer(0, 0, size.width(), size.height(), 0, 0, size.width(), size.height(), GL_COLOR_BUFFER_BIT,
                          GL_NEAREST);
    gl->glBindFramebuffer(GL_FRAMEBUFFER, frameBuffer);
    gl->glActiveTexture(GL_TEXTURE2);
    gl->glBindTexture(GL_TEXTURE_2D, g.resolved[1]);
    gl->glActiveTexture(GL_TEXTURE0);
    drawFloorAndBackground(viewProjection);
    return true;
}

void SceneRenderer::drawShadowMap()
{
    Graphics& g = *m_graphics;
    QOpenGLFunctions_3_3_Core* const gl = g.gl;
    Box casters;
    const bool wanted = m_scene.light.shadows && m_scene.view.shading == ShadingMode::Lit &&
                        boundingBox(&casters.minimum, &casters.maximum);
    m_shadowsOn = wanted && g.resizeShadow(m_scene.light.shadowMapSize);
    if (!m_shadowsOn)
        return;

    const Light& light = m_scene.light;
    const QVector3D axis(m_scene.camera.target.x(), 0.0f, m_scene.camera.target.z());
    std::vector<Caster> casting;
    for (const Object& object : std::as_const(m_scene.objects))
        if (const MeshPointer mesh = m_meshes.value(object.meshFile); mesh && object.visible)
            casting.push_back({mesh, object.position, object.rotation, object.scale});
    if (g.shadowValid && g.shadowLight == light && g.shadowCasters == casting && g.shadowTurntable == m_turntable &&
        (g.shadowAxis == axis || m_turntable == 0.0))
        return;
    g.shadowValid = true;
    g.shadowLight = light;
    g.shadowCasters = std::move(casting);
    g.shadowTurntable = m_turntable;
    g.shadowAxis = axis;

    const QVector3D centre = (casters.minimum + casters.maximum) / 2.0f;
    const float radius = qMax((casters.maximum - casters.minimum).length() / 2.0f, 1e-3f);
    const QVector3D towards = direction(light.azimuth, light.elevation);
    const QVector3D up = qAbs(towards.y()) > 0.99f ? QVector3D(1, 0, 0) : QVector3D(0, 1, 0);
    QMatrix4x4 matrix;
    if (light.kind == LightKind::Point)
    {
        // One map covers a cone, so a light among the objects throws shadows only around the middle of the scene.
        const QVector3D position = towards * float(light.distance);
        const float distance = qMax((centre - position).length(), 1e-3f);
        const double half = distance > radius * 1.05f ? std::asin(double(radius / distance)) : qDegreesToRadians(70.0);
        const double opening = qMin(2.0 * qRadiansToDegrees(half) + 2.0, 140.0);
        matrix.perspective(float(opening), 1.0f, qMax(distance - radius, radius * 0.02f), distance + radius);
        matrix.lookAt(position, centre, up);
    }
    else
    {
        const float reach = radius * 1.02f;
        matrix.ortho(-reach, reach, -reach, reach, 0.0f, 2.0f * reach);
        matrix.lookAt(centre + towards * reach, centre, up);
    }
    QMatrix4x4 toTexture;
    toTexture.translate(0.5f, 0.5f, 0.5f);
    toTexture.scale(0.5f);
    g.shadowMatrix = toTexture * matrix;
    g.shadowWorldTexel = 2.0f * radius / float(light.shadowMapSize);

    gl->glBindFramebuffer(GL_FRAMEBUFFER, g.shadowFrame);
    gl->glViewport(0, 0, g.shadowSize, g.shadowSize);
    gl->glEnable(GL_DEPTH_TEST);
    gl->glDepthFunc(GL_LEQUAL);
    gl->glClear(GL_DEPTH_BUFFER_BIT);
    gl->glEnable(GL_POLYGON_OFFSET_FILL);
    gl->glPolygonOffset(2.0f, 4.0f);
    g.depth.bind();
    for (const Object& object : std::as_const(m_scene.objects))
    {
        const auto mesh = g.meshes.constFind(object.meshFile);
        if (!object.visible || mesh == g.meshes.constEnd())
            continue;
        g.depth.setUniformValue("u_matrix", matrix * objectMatrix(object));
        g.draw(*mesh);
    }
    gl->glDisable(GL_POLYGON_OFFSET_FILL);
}

void SceneRenderer::drawObjects(const QMatrix4x4& viewProjection, const QSize& size)
{
    Graphics& g = *m_graphics;
    QOpenGLFunctions_3_3_Core* const gl = g.gl;
    const Light& light = m_scene.light;
    const ShadingMode shading = m_scene.view.shading;
    constexpr int asItComes = 3;
    const int mode = shading == ShadingMode::Lit       ? 0
                     : shading == ShadingMode::Flat    ? 1
                     : shading == ShadingMode::Normals ? 2
                                                       : asItComes;
    gl->glEnable(GL_DEPTH_TEST);
    gl->glDepthFunc(GL_LEQUAL);
    QOpenGLShaderProgram& program = g.object;
    program.bind();
    g.setEnvironment(program);
    g.setShadow(program, m_shadowsOn);
    program.setUniformValue("u_shadowOffset", g.shadowWorldTexel * 1.5f);
    program.setUniformValue("u_viewProjection", viewProjection);
    program.setUniformValue("u_eye", eyePosition(m_scene.camera));
    program.setUniformValue("u_exposure", float(m_scene.view.exposure));
    program.setUniformValue("u_ambient", float(light.ambient));
    const QVector3D towards = direction(light.azimuth, light.elevation);
    program.setUniformValue("u_light", light.kind == LightKind::Point ? QVector4D(towards * float(light.distance), 1.0f)
                                                                      : QVector4D(towards, 0.0f));
    program.setUniformValue("u_lightDistance", float(light.distance));
    program.setUniformValue("u_lightColour", linear(light.colour) * float(light.intensity));
    const QVector2D noOutline(0.0f, 0.0f);

    for (int i = 0; i < int(m_scene.objects.size()); ++i)
    {
        const Object& object = m_scene.objects[size_t(i)];
        if (!object.visible)
            continue;
        const QMatrix4x4 model = objectMatrix(object);
        const bool selected = i == m_selected && m_scene.view.highlightSelection;
        program.setUniformValue("u_model", model);
        program.setUniformValue("u_normalMatrix", model.normalMatrix());
        program.setUniformValue("u_outline", noOutline);
        const auto mesh = g.meshes.constFind(object.meshFile);
        if (mesh == g.meshes.constEnd())
        {
            program.setUniformValue("u_mode", asItComes);
            program.setUniformValue("u_baseColour", selected ? selectionColour : display(object.material.baseColour));
            g.draw(g.boxMesh, GL_LINES);
            continue;
        }
        program.setUniformValue("u_mode", mode);
        program.setUniformValue("u_roughness", float(object.material.roughness));
        program.setUniformValue("u_metallic", float(object.material.metallic));
        program.setUniformValue("u_emission", linear(object.material.emissionColour) * float(object.material.emission));
        gl->glEnable(GL_STENCIL_TEST);
        gl->glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE);
        gl->glStencilFunc(GL_ALWAYS, selected ? 1 : 0, 0xff);
        if (shading == ShadingMode::Wireframe)
        {
            // A dark body hides the lines on the far side.
            program.setUniformValue("u_baseColour", display(m_scene.view.backgroundColour) * 0.75f);
            gl->glEnable(GL_POLYGON_OFFSET_FILL);
            gl->glPolygonOffset(1.0f, 1.0f);
            g.draw(*mesh);
            gl->glDisable(GL_POLYGON_OFFSET_FILL);
            program.setUniformValue("u_baseColour", display(object.material.baseColour));
            gl->glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
            g.draw(*mesh);
            gl->glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
        }
        else
        {
            program.setUniformValue("u_baseColour", linear(object.material.baseColour));
            g.draw(*mesh);
        }
        gl->glDisable(GL_STENCIL_TEST);
    }

    // Last, so that the outline lies over the neighbours it passes in front of.
    if (m_selected < 0 || m_selected >= int(m_scene.objects.size()) || !m_scene.view.highlightSelection)
        return;
    const Object& object = m_scene.objects[size_t(m_selected)];
    const auto mesh = g.meshes.constFind(object.meshFile);
    if (!object.visible || mesh == g.meshes.constEnd())
        return;
    const QMatrix4x4 model = objectMatrix(object);
    program.setUniformValue("u_model", model);
    program.setUniformValue("u_normalMatrix", model.normalMatrix());
    program.setUniformValue("u_mode", asItComes);
    program.setUniformValue("u_baseColour", selectionColour);
    program.setUniformValue("u_outline", QVector2D(outlinePixels * 2.0f / float(size.width()),
                                                   outlinePixels * 2.0f / float(size.height())));
    gl->glEnable(GL_STENCIL_TEST);
    gl->glStencilOp(GL_KEEP, GL_KEEP, GL_KEEP);
    gl->glStencilFunc(GL_NOTEQUAL, 1, 0xff);
    g.draw(*mesh);
    gl->glDisable(GL_STENCIL_TEST);
}

void SceneRenderer::drawFloorAndBackground(const QMatrix4x4& viewProjection)
{
    Graphics& g = *m_graphics;
    QOpenGLFunctions_3_3_Core* const gl = g.gl;
    const View& view = m_scene.view;
    const bool shaded = view.shading == ShadingMode::Lit && m_scene.light.shadows;
    QVector<QVector4D> occluders;
    for (const Object& object : std::as_const(m_scene.objects))
    {
        const MeshPointer mesh = m_meshes.value(object.meshFile);
        if (!shaded || !object.visible || !mesh || occluders.size() == maximumOccluders)
            continue;
        const Box box = worldBox(*mesh, objectMatrix(object));
        const QVector3D size = box.maximum - box.minimum;
        const QVector3D centre = (box.minimum + box.maximum) / 2.0f;
        const float radius = 0.5f * qMin(size.y(), 0.5f * (size.x() + size.z()));
        occluders << QVector4D(centre.x(), qMax(box.minimum.y() + radius, radius), centre.z(), radius);
    }

    QOpenGLShaderProgram& program = g.background;
    program.bind();
    g.setEnvironment(program);
    g.setShadow(program, m_shadowsOn);
    program.setUniformValue("u_objects", 2);
    program.setUniformValue("u_exposure", float(view.exposure));
    program.setUniformValue("u_ambient", float(m_scene.light.ambient));
    program.setUniformValue("u_colour", display(view.backgroundColour));
    program.setUniformValue("u_showEnvironment", view.environmentBackground && !m_environment.isNull());
    program.setUniformValue("u_toWorld", viewProjection.inverted());
    program.setUniformValue("u_eye", eyePosition(m_scene.camera));
    program.setUniformValue("u_cell", view.grid ? float(view.gridCellSize) : 0.0f);
    program.setUniformValue("u_extent", float(view.gridCellSize) * float(view.gridExtent));
    const bool dark = view.backgroundColour.lightnessF() < 0.5;
    program.setUniformValue("u_lineColour", dark ? QVector3D(1.0f, 1.0f, 1.0f) : QVector3D(0.0f, 0.0f, 0.0f));
    program.setUniformValue("u_darkness", shaded ? 0.62f : 0.0f);
    program.setUniformValue("u_occluderCount", occluders.size());
    if (!occluders.isEmpty())
        program.setUniformValueArray("u_occluders", occluders.constData(), occluders.size());
    gl->glDisable(GL_DEPTH_TEST);
    gl->glBindVertexArray(g.emptyArray);
    gl->glDrawArrays(GL_TRIANGLES, 0, 3);
    gl->glBindVertexArray(0);
    program.release();
}

void SceneRenderer::releaseGraphics()
{
    if (m_graphics)
        m_graphics->release();
    m_graphics.reset();
    m_error.clear();
}

QString SceneRenderer::errorText() const
{
    return m_error;
}
} // namespace sceneeditor
