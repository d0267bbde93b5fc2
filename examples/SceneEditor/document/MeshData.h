#pragma once

#include <examples/SceneEditor/document/Scene.h>

#include <QtCore/QDataStream>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>
#include <QtGui/QImage>
#include <QtGui/QVector2D>
#include <QtGui/QVector3D>

#include <algorithm>
#include <vector>

namespace sceneeditor
{
constexpr quint32 maximumTriangleCount = 5'000'000;
constexpr int maximumTextureSize = 4096;                  //!< pixels along an edge; larger pictures are made smaller
constexpr qint64 maximumTextureBytes = qint64(256) << 20; //!< of all pictures of a mesh; those beyond are left out

//! File name patterns for a dialog: "*.obj" and so on.
inline QStringList meshFilePatterns()
{
    return {QStringLiteral("*.obj"), QStringLiteral("*.ply"), QStringLiteral("*.stl"), QStringLiteral("*.gltf"),
            QStringLiteral("*.glb")};
}

//! A material of the mesh's file. The pictures are indices into MeshData::images, -1 for none; their colours and
//! numbers are multiplied by the material's.
struct MeshMaterial
{
    QString name;
    Material material;
    qint32 baseColourImage = -1;        //!< sRGB
    qint32 metallicRoughnessImage = -1; //!< roughness in green, metallic in blue, linear
    qint32 emissionImage = -1;          //!< sRGB
    qint32 normalImage = -1;            //!< in the tangents' frame, linear
    quint32 triangleCount = 0;          //!< never 0
};

//! A triangle mesh in model space, never empty and with finite numbers only. Not changed once it is shared.
struct MeshData
{
    struct Vertex
    {
        QVector3D position;
        QVector3D normal; //!< unit length
    };

    std::vector<Vertex> vertices;
    std::vector<quint32> indices; //!< three for each triangle, counter-clockwise seen from outside
    QVector3D minimum;            //!< of the bounding box
    QVector3D maximum;

    //! The triangles come in the order of their materials, those without one first.
    std::vector<MeshMaterial> materials;
    std::vector<QImage> images;                //!< what the materials show, of Format_RGBA8888
    std::vector<QVector2D> textureCoordinates; //!< one for each vertex if there are images; 0, 0 is the lower left

    int triangleCount() const { return static_cast<int>(indices.size() / 3); }
    //! The index of the material with the most triangles; these show the object's own material. -1 for none.
    int mainMaterial() const
    {
        const auto fewer = [](const MeshMaterial& a, const MeshMaterial& b)
        { return a.triangleCount < b.triangleCount; };
        return materials.empty() ? -1
                                 : int(std::max_element(materials.begin(), materials.end(), fewer) - materials.begin());
    }
};

//! The program that reads meshes writes any number of Progress, then Failure or Mesh. Both programs come from one
//! build, so numbers are sent in their memory layout.
struct MeshMessage
{
    enum Kind : quint32
    {
        Progress, //!< the size is the progress, in percent
        Failure,  //!< the text's source (QByteArray) and its arguments (QStringList), of that size
        Mesh      //!< a MeshSummary of that size; then vertices, indices, coordinates and pixels
    };
    quint32 kind = Progress;
    quint32 size = 0;
};

struct MeshSummary
{
    quint32 vertexCount = 0;
    quint32 indexCount = 0;
    quint32 coordinateCount = 0;
    QVector<MeshMaterial> materials;
    QVector<QSize> imageSizes;
};

// One function for both ways, so that they cannot differ.
template <typename Stream, typename Object>
void transfer(Stream&& stream, Object& m)
{
    stream(m.name, m.material.baseColour, m.material.roughness, m.material.metallic, m.material.emissionColour,
           m.material.emission, m.baseColourImage, m.metallicRoughnessImage, m.emissionImage, m.normalImage,
           m.triangleCount);
}

inline QDataStream& operator<<(QDataStream& stream, const MeshMaterial& material)
{
    transfer([&](const auto&... members) { (stream << ... << members); }, material);
    return stream;
}

inline QDataStream& operator>>(QDataStream& stream, MeshMaterial& material)
{
    transfer([&](auto&... members) { (stream >> ... >> members); }, material);
    return stream;
}

inline QDataStream& operator<<(QDataStream& stream, const MeshSummary& s)
{
    return stream << s.vertexCount << s.indexCount << s.coordinateCount << s.materials << s.imageSizes;
}

inline QDataStream& operator>>(QDataStream& stream, MeshSummary& s)
{
    return stream >> s.vertexCount >> s.indexCount >> s.coordinateCount >> s.materials >> s.imageSizes;
}
} // namespace sceneeditor
