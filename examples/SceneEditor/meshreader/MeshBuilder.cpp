#include <examples/SceneEditor/meshreader/MeshBuilder.h>

#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtGui/QImageReader>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>

namespace sceneeditor
{
namespace
{
// Faces that meet at a sharper angle than 40 degrees keep their edge when normals are computed.
constexpr float creaseCosine = 0.76604444f;

// Inline, as it is called for each pair of faces around a vertex; Qt's is a library call.
float dot(const QVector3D& a, const QVector3D& b)
{
    return a.x() * b.x() + a.y() * b.y() + a.z() * b.z();
}

bool isFinite(const QVector3D& v)
{
    return std::isfinite(v.x()) && std::isfinite(v.y()) && std::isfinite(v.z());
}

// For each position, the index of the first equal one.
std::vector<quint32> firstEqual(const std::vector<QVector3D>& positions)
{
    constexpr quint32 unused = ~quint32(0);
    size_t size = 1;
    while (size < 2 * positions.size())
        size *= 2;
    std::vector<quint32> table(size, unused);
    std::vector<quint32> first(positions.size());
    for (size_t i = 0; i < positions.size(); ++i)
    {
        quint64 hash = 0;
        for (int axis = 0; axis < 3; ++axis)
        {
            const float number = positions[i][axis] + 0.0f; // 0 and -0 are equal
            quint32 bits = 0;
            std::memcpy(&bits, &number, sizeof bits);
            hash = (hash ^ bits) * 0x9e3779b97f4a7c15u;
            hash ^= hash >> 32;
        }
        size_t slot = hash & (size - 1);
        while (table[slot] != unused && !(positions[table[slot]] == positions[i]))
            slot = (slot + 1) & (size - 1);
        if (table[slot] == unused)
            table[slot] = quint32(i);
        first[i] = table[slot];
    }
    return first;
}

struct FaceNormal
{
    QVector3D unit; // null for a triangle without area
    float area;     // twice the area

    bool isSmoothWith(const FaceNormal& other) const { return unit.isNull() || dot(unit, other.unit) >= creaseCosine; }
};

QVector3D unit(const QVector3D& normal)
{
    const float length = std::sqrt(dot(normal, normal));
    // If faces cancel each other out, any normal will do.
    return length > 0.0f && std::isfinite(length) ? normal / length : QVector3D(0.0f, 1.0f, 0.0f);
}

// Whether the triangle faces the same way as the normal and no point is in it or on its edges.
bool isEar(const QVector3D (&triangle)[3], const QVector3D& normal, const std::vector<QVector3D>& points)
{
    const auto side = [&](int corner, const QVector3D& point)
    {
        const QVector3D& from = triangle[corner];
        return dot(QVector3D::crossProduct(triangle[(corner + 1) % 3] - from, point - from), normal);
    };
    return side(0, triangle[2]) > 0.0f &&
           std::none_of(points.begin(), points.end(),
                        [&](const QVector3D& point)
                        {
                            return side(0, point) >= 0.0f && side(1, point) >= 0.0f && side(2, point) >= 0.0f &&
                                   std::find(triangle, triangle + 3, point) == triangle + 3;
                        });
}
} // namespace

void MeshBuilder::addFace(const Corner* corners, int count, int material)
{
    for (int i = 0; i < count; ++i)
    {
        if (corners[i].position < 0 || size_t(corners[i].position) >= positions.size())
            throw MeshFailure{QT_TRANSLATE_NOOP("MeshLoader", "a face uses vertex %1, expected one below %2"),
                              {QString::number(corners[i].position), QString::number(positions.size())}};
    }
    if (count <= 3)
    {
        if (count == 3)
            addTriangle(corners[0], corners[1], corners[2], material);
        return;
    }
    std::vector<Corner> left(corners, corners + count);
    std::vector<QVector3D> points(left.size());
    std::transform(left.begin(), left.end(), points.begin(),
                   [this](const Corner& corner) { return positions[size_t(corner.position)]; });
    QVector3D normal;
    for (size_t i = 2; i < points.size(); ++i)
        normal += QVector3D::crossProduct(points[i - 1] - points[0], points[i] - points[0]);
    // Cut off one corner at a time; the first one if none is suitable, as in a face that crosses itself.
    while (left.size() > 3)
    {
        const size_t size = left.size();
        size_t ear = 0;
        while (ear < size && !isEar({points[ear], points[(ear + 1) % size], points[(ear + 2) % size]}, normal, points))
            ++ear;
        ear %= size;
        addTriangle(left[ear], left[(ear + 1) % size], left[(ear + 2) % size], material);
        left.erase(left.begin() + (ear + 1) % size);
        points.erase(points.begin() + (ear + 1) % size);
    }
    addTriangle(left[0], left[1], left[2], material);
}

void MeshBuilder::addTriangle(const Corner& a, const Corner& b, const Corner& c, int material)
{
    if (m_triangleMaterials.size() == maximumTriangleCount)
        throw MeshFailure{QT_TRANSLATE_NOOP("MeshLoader", "has too many triangles, expected at most %1"),
                          {QString::number(maximumTriangleCount)}};
    m_corners.insert(m_corners.end(), {a, b, c});
    m_triangleMaterials.push_back(material >= 0 && size_t(material) < materials.size() ? material : -1);
}

int MeshBuilder::addImage(const QString& name, QByteArray encoded)
{
    if (m_imagePlaces.contains(name))
        return m_imagePlaces.value(name);
    QFile file(name);
    const bool isSane = QFileInfo(file).isFile() && file.size() <= maximumTextureBytes;
    if (encoded.isEmpty() && isSane && file.open(QIODevice::ReadOnly))
        encoded = file.readAll();
    QBuffer buffer(&encoded);
    QImageReader reader(&buffer);
    const QSize most(maximumTextureSize, maximumTextureSize);
    if (const QSize size = reader.size(); size.boundedTo(most) != size)
        reader.setScaledSize(size.scaled(most, Qt::KeepAspectRatio).expandedTo({1, 1}));
    const QImage image = reader.read().convertToFormat(QImage::Format_RGBA8888);
    const bool fits = !image.isNull() && m_imageBytes + image.sizeInBytes() <= maximumTextureBytes;
    m_imagePlaces.insert(name, fits ? int(m_images.size()) : -1);
    if (fits)
    {
        m_imageBytes += image.sizeInBytes();
        m_images.push_back(image);
    }
    return m_imagePlaces.value(name);
}

MeshData MeshBuilder::finish()
{
    if (m_corners.empty())
        throw MeshFailure{QT_TRANSLATE_NOOP("MeshLoader", "has no faces, expected at least one triangle"), {}};
    for (size_t i = 0; i < positions.size(); ++i)
    {
        if (!isFinite(positions[i]))
            throw MeshFailure{QT_TRANSLATE_NOOP("MeshLoader", "vertex %1 is not finite, expected three finite numbers"),
                              {QString::number(i)}};
    }
    MeshData mesh;
    mesh.images = std::move(m_images);
    join(mesh);
    sortByMaterial(mesh);
    *this = MeshBuilder();
    return mesh;
}

void MeshBuilder::join(MeshData& mesh) const
{
    std::vector<FaceNormal> faces(m_triangleMaterials.size());
    for (size_t i = 0; i < faces.size(); ++i)
    {
        const auto at = [&](size_t corner) { return positions[size_t(m_corners[3 * i + corner].position)]; };
        const QVector3D cross = QVector3D::crossProduct(at(1) - at(0), at(2) - at(0));
        const float area = std::sqrt(dot(cross, cross));
        if (area > 0.0f && std::isfinite(area))
            faces[i] = {cross / area, area};
    }

    // The corners by position: those at position p are from begins[p] to begins[p + 1] in this list.
    const std::vector<quint32> first = firstEqual(positions);
    std::vector<quint32> begins(positions.size() + 2);
    for (const Corner& corner : m_corners)
        ++begins[first[size_t(corner.position)] + 2];
    std::partial_sum(begins.begin(), begins.end(), begins.begin());
    std::vector<quint32> sorted(m_corners.size());
    for (size_t i = 0; i < m_corners.size(); ++i)
        sorted[begins[first[size_t(m_corners[i].position)] + 1]++] = quint32(i);

    const bool textured = !mesh.images.empty();
    mesh.indices.resize(m_corners.size());
    for (size_t p = 0; p < positions.size(); ++p)
    {
        const auto from = sorted.begin() + begins[p];
        const auto to = sorted.begin() + begins[p + 1];
        const size_t known = mesh.vertices.size();
        for (auto it = from; it != to; ++it)
        {
            const Corner& corner = m_corners[*it];
            QVector3D normal;
            if (corner.normal >= 0 && size_t(corner.normal) < normals.size())
            {
                normal = normals[size_t(corner.normal)];
            }
            else
            {
                for (auto other = from; other != to; ++other)
                {
                    const FaceNormal& face = faces[*other / 3];
                    if (faces[*it / 3].isSmoothWith(face))
                        normal += face.unit * face.area;
                }
            }
            normal = unit(normal);
            const bool placed = corner.coordinates >= 0 && size_t(corner.coordinates) < coordinates.size();
            QVector2D place = textured && placed ? coordinates[size_t(corner.coordinates)] : QVector2D();
            if (!std::isfinite(place.x()) || !std::isfinite(place.y()))
                place = QVector2D();
            size_t vertex = known;
            while (vertex < mesh.vertices.size() &&
                   !(mesh.vertices[vertex].normal == normal && (!textured || mesh.textureCoordinates[vertex] == place)))
                ++vertex;
            if (vertex == mesh.vertices.size())
            {
                mesh.vertices.push_back({positions[p], normal});
                if (textured)
                    mesh.textureCoordinates.push_back(place);
            }
            mesh.indices[*it] = quint32(vertex);
        }
    }
}

void MeshBuilder::sortByMaterial(MeshData& mesh)
{
    for (const qint32 material : m_triangleMaterials)
    {
        if (material >= 0)
            ++materials[size_t(material)].triangleCount;
    }
    // A single material needs no sorting.
    if (!std::is_sorted(m_triangleMaterials.begin(), m_triangleMaterials.end()))
    {
        std::vector<quint32> order(m_triangleMaterials.size());
        std::iota(order.begin(), order.end(), 0u);
        std::stable_sort(order.begin(), order.end(),
                         [this](quint32 a, quint32 b) { return m_triangleMaterials[a] < m_triangleMaterials[b]; });
        std::vector<quint32> indices;
        indices.reserve(mesh.indices.size());
        for (const quint32 triangle : order)
            indices.insert(indices.end(), &mesh.indices[size_t(3) * triangle], &mesh.indices[size_t(3) * triangle] + 3);
        mesh.indices = std::move(indices);
    }
    std::copy_if(materials.begin(), materials.end(), std::back_inserter(mesh.materials),
                 [](const MeshMaterial& material) { return material.triangleCount > 0; });
}

QColor colourFromLinear(float red, float green, float blue)
{
    const auto encode = [](float linear)
    {
        const double v = std::isfinite(linear) ? qBound(0.0, double(linear), 1.0) : 0.0;
        return v <= 0.0031308 ? 12.92 * v : 1.055 * std::pow(v, 1.0 / 2.4) - 0.055;
    };
    return QColor::fromRgbF(encode(red), encode(green), encode(blue));
}

void setEmission(Material& material, float red, float green, float blue)
{
    const float brightest = std::max({red, green, blue});
    if (!(brightest > 0.0f) || !std::isfinite(brightest))
        return;
    material.emission = ranges::emission.clamp(double(brightest));
    material.emissionColour = colourFromLinear(red / brightest, green / brightest, blue / brightest);
}
} // namespace sceneeditor
