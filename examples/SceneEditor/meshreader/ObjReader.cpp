#include <examples/SceneEditor/meshreader/MeshBuilder.h>

#include <QtCore/QDir>
#include <QtCore/QFile>

#include <cmath>
#include <istream>
#include <streambuf>
#include <tiny_obj_loader.h>

namespace sceneeditor
{
namespace
{
// A stream for the library, which cannot open Unicode file names on every platform.
class Source final : public std::streambuf
{
public:
    Source(const QString& fileName, const MeshProgress& progress) : m_file(fileName), m_progress(progress)
    {
        // Nothing else may be opened: a pipe could keep the program waiting for ever.
        if (QFileInfo(fileName).isFile())
            m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isOpen() const { return m_file.isOpen(); }
    // Empty unless opening or reading has failed.
    QString error() const { return m_file.error() == QFileDevice::NoError ? QString() : m_file.errorString(); }

protected:
    int_type underflow() override
    {
        constexpr int pieceSize = 256 * 1024;
        m_piece = m_file.read(pieceSize);
        if (m_progress && m_file.size() > 0)
            m_progress(double(m_file.pos()) / double(m_file.size()));
        // A backslash joins a line with the next one, which the library does not know.
        if (m_piece.endsWith('\\'))
            m_piece += m_file.read(2);
        if (m_piece.contains('\\'))
            m_piece.replace("\\\r\n", "   ").replace("\\\n", "  ");
        setg(m_piece.data(), m_piece.data(), m_piece.data() + m_piece.size());
        return m_piece.isEmpty() ? traits_type::eof() : traits_type::to_int_type(*gptr());
    }

private:
    QFile m_file;
    const MeshProgress m_progress;
    QByteArray m_piece;
};

class Materials final : public tinyobj::MaterialReader
{
public:
    explicit Materials(const QDir& folder) : m_folder(folder) {}

    bool operator()(const std::string& name, std::vector<tinyobj::material_t>* materials,
                    std::map<std::string, int>* places, std::string* warning, std::string* error) override
    {
        Source source(m_folder.filePath(QString::fromStdString(name)), {});
        std::istream stream(&source);
        const size_t before = materials->size();
        if (source.isOpen())
            tinyobj::LoadMtl(places, materials, &stream, warning, error);
        return materials->size() > before;
    }

private:
    const QDir m_folder;
};

// Indices count from 1, or backwards from the last one so far; 0 means none.
qint32 placeOf(int index, size_t count)
{
    return index < 0 ? qint32(qMax(qint64(count) + index, qint64(-1))) : index - 1;
}

class ObjConverter
{
public:
    ObjConverter(MeshBuilder& builder, const QDir& folder) : m_builder(builder), m_folder(folder) {}

    void addFace(const tinyobj::index_t* corners, int count)
    {
        m_corners.clear();
        for (int i = 0; i < count; ++i)
            m_corners.push_back({placeOf(corners[i].vertex_index, m_builder.positions.size()),
                                 placeOf(corners[i].normal_index, m_builder.normals.size()),
                                 placeOf(corners[i].texcoord_index, m_builder.coordinates.size())});
        m_builder.addFace(m_corners.data(), count, m_material);
    }

    void setMaterial(int material) { m_material = material; }

    // Each call gets all materials of the file so far.
    void setMaterials(const tinyobj::material_t* materials, int count)
    {
        for (int i = int(m_builder.materials.size()); i < count; ++i)
            m_builder.materials.push_back(material(materials[i]));
    }

private:
    int image(const std::string& name)
    {
        const QString path = QString::fromStdString(name).replace(QLatin1Char('\\'), QLatin1Char('/'));
        return path.isEmpty() ? -1 : m_builder.addImage(m_folder.filePath(path));
    }

    MeshMaterial material(const tinyobj::material_t& from)
    {
        const auto unit = [](float number)
        { return std::isfinite(number) ? ranges::unit.clamp(double(number)) : ranges::unit.minimum; };
        MeshMaterial to;
        to.name = QString::fromStdString(from.name);
        to.material.baseColour = QColor::fromRgbF(unit(from.diffuse[0]), unit(from.diffuse[1]), unit(from.diffuse[2]));
        // Without a roughness, use the one with a highlight as wide as the exponent's.
        to.material.roughness =
            unit(from.roughness > 0.0f ? from.roughness : std::sqrt(2.0f / (from.shininess + 2.0f)));
        to.material.metallic = unit(from.metallic);
        setEmission(to.material, from.emission[0], from.emission[1], from.emission[2]);
        to.baseColourImage = image(from.diffuse_texname);
        to.emissionImage = image(from.emissive_texname);
        to.normalImage = image(from.normal_texname);
        return to;
    }

    MeshBuilder& m_builder;
    const QDir m_folder;
    int m_material = -1;
    std::vector<MeshBuilder::Corner> m_corners;
};
} // namespace

void readObj(const QFileInfo& file, MeshBuilder& builder, const MeshProgress& progress)
{
    using tinyobj::index_t;
    using tinyobj::material_t;
    struct Target
    {
        MeshBuilder& builder;
        ObjConverter converter;
    } target{builder, {builder, file.absoluteDir()}};
    tinyobj::callback_t callback;
    callback.vertex_cb = [](void* to, float x, float y, float z, float)
    { static_cast<Target*>(to)->builder.positions.emplace_back(x, y, z); };
    callback.normal_cb = [](void* to, float x, float y, float z)
    { static_cast<Target*>(to)->builder.normals.emplace_back(x, y, z); };
    callback.texcoord_cb = [](void* to, float x, float y, float)
    { static_cast<Target*>(to)->builder.coordinates.emplace_back(x, y); };
    callback.index_cb = [](void* to, index_t* corners, int count)
    { static_cast<Target*>(to)->converter.addFace(corners, count); };
    callback.usemtl_cb = [](void* to, const char*, int material)
    { static_cast<Target*>(to)->converter.setMaterial(material); };
    callback.mtllib_cb = [](void* to, const material_t* materials, int count)
    { static_cast<Target*>(to)->converter.setMaterials(materials, count); };

    Source source(file.filePath(), progress);
    std::istream stream(&source);
    Materials materials(file.absoluteDir());
    tinyobj::LoadObjWithCallback(stream, callback, &target, &materials);
    if (!source.error().isEmpty())
        throw MeshFailure{QT_TRANSLATE_NOOP("MeshLoader", "cannot be read: %1"), {source.error()}};
}
} // namespace sceneeditor
