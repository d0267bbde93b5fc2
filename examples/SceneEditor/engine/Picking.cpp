#include <examples/SceneEditor/engine/Picking.h>

#include <examples/SceneEditor/engine/CameraMath.h>

#include <QtGui/QVector4D>

#include <array>
#include <limits>

namespace sceneeditor
{
namespace
{
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

// Distance to a side of the clip space, positive inside: left, right, bottom, top, near, far.
float inside(const QVector4D& point, int side)
{
    return point.w() + (side % 2 == 0 ? point[side / 2] : -point[side / 2]);
}

constexpr int Sides = 6;

// Whether all points are outside one side: then nothing between them is inside.
template <size_t Count>
bool isOutside(const std::array<QVector4D, Count>& points)
{
    for (int side = 0; side < Sides; ++side)
    {
        size_t outside = 0;
        for (const QVector4D& point : points)
            outside += inside(point, side) < 0.0f ? 1 : 0;
        if (outside == Count)
            return true;
    }
    return false;
}

// Clips it at each side; returns whether anything is left.
bool meetsClipSpace(const std::array<QVector4D, 3>& triangle)
{
    if (isOutside(triangle))
        return false;
    std::vector<QVector4D> polygon(triangle.begin(), triangle.end());
    for (int side = 0; side < Sides && !polygon.empty(); ++side)
    {
        std::vector<QVector4D> left;
        QVector4D from = polygon.back();
        for (const QVector4D& to : polygon)
        {
            const float before = inside(from, side);
            const float after = inside(to, side);
            if ((before < 0.0f) != (after < 0.0f))
                left.push_back(from + (to - from) * (before / (before - after)));
            if (after >= 0.0f)
                left.push_back(to);
            from = to;
        }
        polygon = std::move(left);
    }
    return !polygon.empty();
}

// The matrix maps the mesh to a clip space that is exactly the area.
bool meetsClipSpace(const MeshData& mesh, const QMatrix4x4& matrix)
{
    Box box;
    box.minimum = mesh.minimum;
    box.maximum = mesh.maximum;
    std::array<QVector4D, 8> corners;
    for (int i = 0; i < 8; ++i)
        corners[size_t(i)] = matrix * QVector4D(box.corner(i), 1.0f);
    if (isOutside(corners))
        return false;
    std::vector<QVector4D> points;
    points.reserve(mesh.vertices.size());
    for (const MeshData::Vertex& vertex : mesh.vertices)
        points.push_back(matrix * QVector4D(vertex.position, 1.0f));
    for (size_t t = 0; t + 2 < mesh.indices.size(); t += 3)
        if (meetsClipSpace({points[mesh.indices[t]], points[mesh.indices[t + 1]], points[mesh.indices[t + 2]]}))
            return true;
    return false;
}
} // namespace

int objectAt(const ShownScene& shown, const QPoint& position, const QSize& view)
{
    if (view.isEmpty())
        return -1;
    const QVector3D eye = eyePosition(shown.scene.camera);
    const QVector3D way = wayThrough(position, shown.scene.camera, view);
    int found = -1;
    float nearest = std::numeric_limits<float>::infinity();
    for (size_t i = 0; i < shown.scene.objects.size(); ++i)
    {
        const Object& object = shown.scene.objects[i];
        const MeshPointer mesh = shown.mesh(object);
        if (!object.visible || !mesh)
            continue;
        // Without being normalised, a transformed ray keeps its parameter, so distances compare across objects.
        const QMatrix4x4 toModel = shown.matrix(object).inverted();
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
                found = int(i);
            }
        }
    }
    return found;
}

QVector<int> objectsIn(const ShownScene& shown, const QRect& area, const QSize& view)
{
    QVector<int> found;
    if (view.isEmpty() || area.isEmpty())
        return found;
    // Stretches the area over the whole clip space.
    const auto place = [](double pixels, int size) { return 2.0 * pixels / size - 1.0; };
    const QRectF cropped(QPointF(place(area.x(), view.width()), -place(area.y() + area.height(), view.height())),
                         QPointF(place(area.x() + area.width(), view.width()), -place(area.y(), view.height())));
    QMatrix4x4 crop;
    crop.scale(float(2.0 / cropped.width()), float(2.0 / cropped.height()));
    crop.translate(float(-cropped.center().x()), float(-cropped.center().y()));
    const QMatrix4x4 toArea = crop * cameraMatrix(shown.scene.camera, view);

    for (size_t i = 0; i < shown.scene.objects.size(); ++i)
    {
        const Object& object = shown.scene.objects[i];
        const MeshPointer mesh = shown.mesh(object);
        if (object.visible && mesh && meetsClipSpace(*mesh, toArea * shown.matrix(object)))
            found << int(i);
    }
    return found;
}
} // namespace sceneeditor
