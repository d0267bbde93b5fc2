#include <examples/SceneEditor/meshreader/MeshBuilder.h>

#include <QtCore/QDir>

#include <assimp/DefaultIOSystem.h>
#include <assimp/Importer.hpp>
#include <assimp/material.h>
#include <assimp/scene.h>

#include <exception>

namespace sceneeditor
{
namespace
{
// Files name others; a pipe among them could keep the program waiting for ever.
class RegularFiles final : public Assimp::DefaultIOSystem
{
public:
    bool Exists(const char* name) const override { return QFileInfo(QString::fromUtf8(name)).isFile(); }

    Assimp::IOStream* Open(const char* name, const char* mode) override
    {
        return Exists(name) ? DefaultIOSystem::Open(name, mode) : nullptr;
    }
};

class Converter
{
public:
    Converter(const aiScene& scene, const QFileInfo& file, MeshBuilder& builder)
        : m_scene(scene), m_file(file), m_builder(builder)
    {
    }

    // The last one is the library's own, for meshes without a material.
    void addMaterials()
    {
        for (unsigned int i = 0; i + 1 < m_scene.mNumMaterials; ++i)
            m_builder.materials.push_back(material(*m_scene.mMaterials[i]));
    }

    void addNode(const aiNode& node, const aiMatrix4x4& parent)
    {
        const aiMatrix4x4 matrix = parent * node.mTransformation;
        for (unsigned int i = 0; i < node.mNumMeshes; ++i)
            addMesh(*m_scene.mMeshes[node.mMeshes[i]], matrix);
        for (unsigned int i = 0; i < node.mNumChildren; ++i)
            addNode(*node.mChildren[i], matrix);
    }

private:
    void addMesh(const aiMesh& mesh, const aiMatrix4x4& matrix)
    {
        const qint32 base = qint32(m_builder.positions.size());
        const qint32 normalBase = qint32(m_builder.normals.size());
        const qint32 coordinateBase = qint32(m_builder.coordinates.size());
        // Facet files give each triangle one normal, which would show every facet of a curved surface.
        const bool hasNormals = mesh.HasNormals() && m_file.suffix().compare(QLatin1String("stl"), Qt::CaseInsensitive);
        const bool hasCoordinates = mesh.HasTextureCoords(0);
        const aiMatrix3x3 normalMatrix = aiMatrix3x3(matrix).Inverse().Transpose();
        for (unsigned int v = 0; v < mesh.mNumVertices; ++v)
        {
            const aiVector3D position = matrix * mesh.mVertices[v];
            m_builder.positions.emplace_back(position.x, position.y, position.z);
            if (hasNormals)
            {
                const aiVector3D normal = normalMatrix * mesh.mNormals[v];
                m_builder.normals.emplace_back(normal.x, normal.y, normal.z);
            }
            if (hasCoordinates)
                m_builder.coordinates.emplace_back(mesh.mTextureCoords[0][v].x, mesh.mTextureCoords[0][v].y);
        }
        const bool mirrored = matrix.Determinant() < 0.0f;
        std::vector<MeshBuilder::Corner> corners;
        for (unsigned int f = 0; f < mesh.mNumFaces; ++f)
        {
            const aiFace& face = mesh.mFaces[f];
            corners.clear();
            for (unsigned int i = 0; i < face.mNumIndices; ++i)
            {
                const unsigned int v = face.mIndices[mirrored ? face.mNumIndices - 1 - i : i];
                const auto from = [v](bool has, qint32 first) { return has ? first + qint32(v) : -1; };
                corners.push_back({v < mesh.mNumVertices ? base + qint32(v) : -1, from(hasNormals, normalBase),
                                   from(hasCoordinates, coordinateBase)});
            }
            m_builder.addFace(corners.data(), int(corners.size()), int(mesh.mMaterialIndex));
        }
    }

    int image(const aiMaterial& from, aiTextureType type)
    {
        aiString name;
        if (from.GetTexture(type, 0, &name) != aiReturn_SUCCESS)
            return -1;
        const QString path = m_file.absoluteDir().filePath(QString::fromUtf8(name.C_Str()));
        const aiTexture* const texture = m_scene.GetEmbeddedTexture(name.C_Str());
        if (!texture)
            return m_builder.addImage(path);
        // A height means plain pixels, which none of the formats has.
        const auto* const data = reinterpret_cast<const char*>(texture->pcData);
        return texture->mHeight > 0 ? -1 : m_builder.addImage(path, QByteArray(data, int(texture->mWidth)));
    }

    MeshMaterial material(const aiMaterial& from)
    {
        MeshMaterial to;
        to.name = QString::fromUtf8(from.GetName().C_Str());
        aiColor4D colour;
        if (from.Get(AI_MATKEY_BASE_COLOR, colour) == aiReturn_SUCCESS)
            to.material.baseColour = colourFromLinear(colour.r, colour.g, colour.b);
        ai_real factor = 0.0f;
        if (from.Get(AI_MATKEY_ROUGHNESS_FACTOR, factor) == aiReturn_SUCCESS && std::isfinite(factor))
            to.material.roughness = ranges::unit.clamp(double(factor));
        if (from.Get(AI_MATKEY_METALLIC_FACTOR, factor) == aiReturn_SUCCESS && std::isfinite(factor))
            to.material.metallic = ranges::unit.clamp(double(factor));
        aiColor3D emission;
        if (from.Get(AI_MATKEY_COLOR_EMISSIVE, emission) == aiReturn_SUCCESS)
        {
            factor = 1.0f;
            from.Get(AI_MATKEY_EMISSIVE_INTENSITY, factor);
            setEmission(to.material, emission.r * factor, emission.g * factor, emission.b * factor);
        }
        to.baseColourImage = image(from, aiTextureType_BASE_COLOR);
        // The library puts a picture of both here.
        to.metallicRoughnessImage = image(from, aiTextureType_UNKNOWN);
        to.emissionImage = image(from, aiTextureType_EMISSIVE);
        to.normalImage = image(from, aiTextureType_NORMALS);
        return to;
    }

    const aiScene& m_scene;
    const QFileInfo m_file;
    MeshBuilder& m_builder;
};
} // namespace

void readOther(const QFileInfo& file, MeshBuilder& builder, const MeshProgress& progress)
{
    Assimp::Importer importer;
    importer.SetIOHandler(new RegularFiles); // owned by the importer
    const aiScene* const scene = importer.ReadFile(file.absoluteFilePath().toUtf8().constData(), 0);
    if (!scene)
    {
        try
        {
            if (importer.GetException())
                std::rethrow_exception(importer.GetException());
        }
        catch (const std::runtime_error&)
        {
        }
        throw MeshFailure{QT_TRANSLATE_NOOP("MeshLoader", "is not a mesh that can be read, expected %1 (%2)"),
                          {file.suffix().toUpper(), QString::fromUtf8(importer.GetErrorString()).simplified()}};
    }
    progress(0.8); // the library reports progress for some formats only
    Converter converter(*scene, file, builder);
    // The other formats have no materials, only the library's default.
    if (file.suffix().startsWith(QLatin1String("gl"), Qt::CaseInsensitive))
        converter.addMaterials();
    if (scene->mRootNode)
        converter.addNode(*scene->mRootNode, aiMatrix4x4());
    progress(1.0);
}
} // namespace sceneeditor
