#pragma once

#include <examples/SceneEditor/document/MeshData.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>

#include <functional>

namespace sceneeditor
{
//! What is wrong with a file: an untranslated text, and what its %1 and so on stand for. The program that shows it
//! translates it.
struct MeshFailure
{
    const char* text;
    QStringList arguments;
};

//! Makes a mesh of faces with any number of corners. Corners with the same position, normal and texture coordinates
//! become one vertex; corners without a normal get that of the faces around them, with sharp edges kept.
class MeshBuilder
{
public:
    //! Indices into the three lists below; -1 for none.
    struct Corner
    {
        qint32 position = -1;
        qint32 normal = -1;
        qint32 coordinates = -1;
    };

    std::vector<QVector3D> positions;
    std::vector<QVector3D> normals; //!< of any length
    std::vector<QVector2D> coordinates;
    std::vector<MeshMaterial> materials; //!< unused ones are removed at the end

    //! Faces of one or two corners are ignored. The material is an index into materials, or -1. Throws MeshFailure if a
    //! corner has no position, or if there are too many triangles.
    void addFace(const Corner* corners, int count, int material);
    //! Adds a picture for the materials: a file, or encoded data with that name. Its index; -1 if unreadable.
    int addImage(const QString& name, QByteArray encoded = {});
    //! Empties the builder. Throws MeshFailure if it has no faces, or numbers that are not finite.
    MeshData finish();

private:
    void addTriangle(const Corner& a, const Corner& b, const Corner& c, int material);
    void join(MeshData& mesh) const;
    void sortByMaterial(MeshData& mesh);

    std::vector<Corner> m_corners; // three for each triangle
    std::vector<qint32> m_triangleMaterials;
    std::vector<QImage> m_images;
    QHash<QString, int> m_imagePlaces;
    qint64 m_imageBytes = 0;
};

//! Called with 0..1 while a file is read.
using MeshProgress = std::function<void(double)>;

//! Each adds the contents of the file to the builder. They throw MeshFailure and what the libraries throw.
void readObj(const QFileInfo& file, MeshBuilder& builder, const MeshProgress& progress);
//! PLY, STL and glTF.
void readOther(const QFileInfo& file, MeshBuilder& builder, const MeshProgress& progress);

//! Converts a colour in linear light, each component 0..1; others are clamped.
QColor colourFromLinear(float red, float green, float blue);
//! The brightest component becomes the factor, up to the scene's maximum.
void setEmission(Material& material, float red, float green, float blue);
} // namespace sceneeditor
