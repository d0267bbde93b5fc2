#include <examples/SceneEditor/engine/ShownScene.h>

namespace sceneeditor
{
void Box::add(const QVector3D& point)
{
    for (int i = 0; i < 3; ++i)
    {
        minimum[i] = qMin(minimum[i], point[i]);
        maximum[i] = qMax(maximum[i], point[i]);
    }
}

void Box::add(const Box& box)
{
    if (box.isEmpty())
        return;
    add(box.minimum);
    add(box.maximum);
}

QVector3D Box::corner(int index) const
{
    return {(index & 1) != 0 ? maximum.x() : minimum.x(), (index & 2) != 0 ? maximum.y() : minimum.y(),
            (index & 4) != 0 ? maximum.z() : minimum.z()};
}

QMatrix4x4 ShownScene::turntableMatrix() const
{
    QMatrix4x4 matrix;
    const QVector3D axis(scene.camera.target.x(), 0.0f, scene.camera.target.z());
    matrix.translate(axis);
    matrix.rotate(float(turntable), 0.0f, 1.0f, 0.0f);
    matrix.translate(-axis);
    return matrix;
}

QMatrix4x4 ShownScene::matrix(const Object& object) const
{
    QMatrix4x4 matrix = turntableMatrix();
    matrix.translate(object.position);
    matrix.rotate(object.rotation.z(), 0.0f, 0.0f, 1.0f);
    matrix.rotate(object.rotation.y(), 0.0f, 1.0f, 0.0f);
    matrix.rotate(object.rotation.x(), 1.0f, 0.0f, 0.0f);
    matrix.scale(object.scale);
    return matrix;
}

Box ShownScene::box(const Object& object) const
{
    const MeshPointer shown = mesh(object);
    Box local;
    local.minimum = shown ? shown->minimum : QVector3D(-0.5f, -0.5f, -0.5f);
    local.maximum = shown ? shown->maximum : QVector3D(0.5f, 0.5f, 0.5f);
    const QMatrix4x4 toWorld = matrix(object);
    Box box;
    for (int corner = 0; corner < 8; ++corner)
        box.add(toWorld.map(local.corner(corner)));
    return box;
}

Box ShownScene::box(const QVector<int>& objects) const
{
    Box all;
    for (int index : objects)
        if (index >= 0 && index < int(scene.objects.size()) && scene.objects[size_t(index)].visible)
            all.add(box(scene.objects[size_t(index)]));
    return all;
}

Box ShownScene::meshBox() const
{
    Box all;
    for (const Object& object : scene.objects)
        if (object.visible && mesh(object))
            all.add(box(object));
    return all;
}
} // namespace sceneeditor
