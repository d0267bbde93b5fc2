#pragma once

#include <examples/SceneEditor/document/MeshLoader.h>
#include <examples/SceneEditor/document/Scene.h>

#include <QtCore/QHash>
#include <QtCore/QVector>
#include <QtGui/QMatrix4x4>

#include <limits>

namespace sceneeditor
{
//! An axis-aligned box; empty until something is added.
struct Box
{
    QVector3D minimum{std::numeric_limits<float>::max(), std::numeric_limits<float>::max(),
                      std::numeric_limits<float>::max()};
    QVector3D maximum = -minimum;

    bool isEmpty() const { return minimum.x() > maximum.x(); }
    void add(const QVector3D& point);
    void add(const Box& box);
    //! Bit 0 of the index chooses the maximum of x, bit 1 of y, bit 2 of z.
    QVector3D corner(int index) const;
    QVector3D centre() const { return (minimum + maximum) / 2.0f; }
};

//! A scene with what it takes to draw it: its meshes, and how far the turntable has turned.
struct ShownScene
{
    Scene scene;
    QHash<QString, MeshPointer> meshes; //!< by Object::meshFile; objects without one show a box of lines
    double turntable = 0.0;             //!< degrees

    //! Null if the object has none.
    MeshPointer mesh(const Object& object) const { return meshes.value(object.meshFile); }
    //! From the coordinates that objects are placed in to the world.
    QMatrix4x4 turntableMatrix() const;
    //! From the object's own coordinates to the world.
    QMatrix4x4 matrix(const Object& object) const;
    //! In the world; that of an object without a mesh is its box of lines.
    Box box(const Object& object) const;
    //! Of the visible ones. Indices that do not exist are left out.
    Box box(const QVector<int>& objects) const;
    //! Of all visible objects with a mesh.
    Box meshBox() const;
};
} // namespace sceneeditor
