#include <examples/SceneEditor/document/MeshCheck.h>

#include <examples/SceneEditor/document/MeshLoader.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QtEndian>
#include <QtCore/QVector>

#include <cctype>
#include <cstring>

namespace sceneeditor
{
namespace
{
// Triangles that share no vertex.
constexpr qint64 maximumVertexCount = qint64(maximumTriangleCount) * 3;
// Objects, groups, nodes and the like, each of which costs a kilobyte or so.
constexpr qint64 maximumPartCount = 50'000;
// Numbers that are read and not used, kept one by one.
constexpr qint64 maximumOtherCount = 5'000'000;
constexpr int maximumNodeDepth = 500;

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(MeshLoader)
};

struct Fault
{
    QString text;
};

void atMost(qint64 maximum, qint64 count, const QString& what)
{
    if (count > maximum)
        throw Fault{Text::tr("has %1 %2, expected at most %3").arg(count).arg(what).arg(maximum)};
}

void checkTriangles(qint64 count)
{
    atMost(maximumTriangleCount, count, Text::tr("triangles"));
}

void checkVertices(qint64 count)
{
    atMost(maximumVertexCount, count, Text::tr("vertices"));
}

void checkParts(qint64 count)
{
    atMost(maximumPartCount, count, Text::tr("parts"));
}

[[noreturn]] void broken(const QString& kind, const QString& text)
{
    throw Fault{Text::tr("is not a mesh that can be read, expected %1 (%2)").arg(kind, text)};
}

// What is left to read of the file. Lines end where the library ends them, and empty ones do not count.
class Cursor
{
public:
    explicit Cursor(const QByteArray& data) : m_at(data.constData()), m_end(m_at + data.size()) {}

    qint64 left() const { return m_end - m_at; }
    const char* position() const { return m_at; }
    void skip(qint64 bytes) { m_at += qMin(bytes, left()); }

    // The next line, which stays in the data; false at the end.
    bool line(QByteArray& line)
    {
        while (m_at < m_end && endsLine(*m_at))
            ++m_at;
        const char* const begin = m_at;
        while (m_at < m_end && !endsLine(*m_at))
            ++m_at;
        line = QByteArray::fromRawData(begin, int(m_at - begin));
        return m_at > begin;
    }

    // Behind the line that was just read, where binary data may begin.
    void skipLineEnd()
    {
        if (left() > 1 && m_at[0] == '\r' && m_at[1] == '\n')
            ++m_at;
        skip(1);
    }

private:
    static bool endsLine(char c) { return c == '\n' || c == '\r' || c == '\f' || c == '\0'; }

    const char* m_at;
    const char* m_end;
};

// Words of a line, one after the other.
class Words
{
public:
    explicit Words(const QByteArray& line) : m_at(line.constData()), m_end(m_at + line.size()) {}

    QByteArray next()
    {
        while (m_at < m_end && isSpace(*m_at))
            ++m_at;
        const char* const begin = m_at;
        while (m_at < m_end && !isSpace(*m_at))
            ++m_at;
        return QByteArray::fromRawData(begin, int(m_at - begin));
    }

    qint64 count()
    {
        qint64 words = 0;
        while (!next().isEmpty())
            ++words;
        return words;
    }

private:
    static bool isSpace(char c) { return c == ' ' || c == '\t'; }

    const char* m_at;
    const char* m_end;
};

// -1 unless it is a number of digits alone.
qint64 wholeNumber(const QByteArray& word)
{
    for (const char c : word)
    {
        if (!std::isdigit(static_cast<unsigned char>(c)))
            return -1;
    }
    bool valid = false;
    const qint64 number = word.toLongLong(&valid);
    return valid ? number : -1;
}

// PLY: a header that describes elements, each with a number of entries and a list of properties; then the entries.
struct PlyProperty
{
    int countBytes = 0; // of a list's length; 0 for a single value
    int bytes = 0;
};

struct PlyElement
{
    QByteArray name;
    qint64 count = 0;
    QVector<PlyProperty> properties;

    bool isGeometry() const { return name == "vertex" || name == "face" || name == "tristrips"; }
};

struct PlyHeader
{
    QByteArray format;
    QVector<PlyElement> elements;
};

const QString ply = QStringLiteral("PLY");

int plyTypeBytes(const QByteArray& type)
{
    static const QHash<QByteArray, int> bytes{{"char", 1},  {"uchar", 1},   {"int8", 1},   {"uint8", 1},
                                              {"short", 2}, {"ushort", 2},  {"int16", 2},  {"uint16", 2},
                                              {"int", 4},   {"uint", 4},    {"int32", 4},  {"uint32", 4},
                                              {"float", 4}, {"float32", 4}, {"double", 8}, {"float64", 8}};
    const int found = bytes.value(type);
    if (found == 0)
        broken(ply, Text::tr("unknown type \"%1\"").arg(QString::fromLatin1(type.left(40))));
    return found;
}

PlyHeader readPlyHeader(Cursor& cursor)
{
    PlyHeader header;
    QByteArray line;
    if (!cursor.line(line) || line.trimmed() != "ply")
        broken(ply, Text::tr("it does not begin with \"ply\""));
    while (cursor.line(line))
    {
        Words words(line);
        const QByteArray keyword = words.next();
        if (keyword == "end_header")
            return header;
        if (keyword == "format")
        {
            header.format = words.next();
        }
        else if (keyword == "element")
        {
            PlyElement element;
            element.name = words.next();
            element.count = wholeNumber(words.next());
            if (element.count < 0)
                broken(ply, Text::tr("element \"%1\" has no number").arg(QString::fromLatin1(element.name.left(40))));
            header.elements << element;
            checkParts(header.elements.size());
        }
        else if (keyword == "property" && !header.elements.isEmpty())
        {
            PlyProperty property;
            QByteArray type = words.next();
            if (type == "list")
            {
                const QByteArray countType = words.next();
                property.countBytes = plyTypeBytes(countType);
                if (countType.startsWith("float") || countType == "double")
                    broken(ply, Text::tr("the length of a list is not an integer"));
                type = words.next();
            }
            property.bytes = plyTypeBytes(type);
            header.elements.last().properties << property;
        }
        else if (keyword != "comment" && keyword != "obj_info")
        {
            broken(ply, Text::tr("unknown line \"%1\"").arg(QString::fromLatin1(line.left(40).simplified())));
        }
    }
    broken(ply, Text::tr("the header has no end"));
}

void checkPlyCounts(const PlyHeader& header, qint64 left)
{
    qint64 others = 0;
    for (const PlyElement& element : header.elements)
    {
        // As text a value takes a digit and what parts it from the next; the very last one may have nothing behind it.
        qint64 least = 0;
        for (const PlyProperty& property : element.properties)
            least += header.format == "ascii" ? 2 : (property.countBytes > 0 ? property.countBytes : property.bytes);
        if (element.count > (left + 1) / qMax(least, qint64(1)))
            throw Fault{Text::tr("is too short for the %1 entries of \"%2\" that it announces")
                            .arg(element.count)
                            .arg(QString::fromLatin1(element.name))};
        if (element.name == "vertex")
            checkVertices(element.count);
        else if (element.isGeometry())
            checkTriangles(element.count);
        else
            others += element.count * (element.properties.size() + 1);
    }
    atMost(maximumOtherCount, others, Text::tr("further values"));
}

// Before a list is read, room is made for as many values as it claims to have.
class PlyLists
{
public:
    void add(const PlyElement& element, qint64 length, qint64 most)
    {
        if (length < 0 || length > most)
            throw Fault{Text::tr("is too short for a list of %1 values in \"%2\"")
                            .arg(length)
                            .arg(QString::fromLatin1(element.name))};
        if (element.isGeometry())
            checkTriangles(m_triangles += qMax(length - 2, qint64(0)));
        else
            atMost(maximumOtherCount, m_others += length, Text::tr("further values"));
    }

private:
    qint64 m_triangles = 0;
    qint64 m_others = 0;
};

void checkPlyText(const PlyHeader& header, Cursor cursor)
{
    PlyLists lists;
    QByteArray line;
    for (const PlyElement& element : header.elements)
    {
        for (qint64 i = 0; i < element.count; ++i)
        {
            if (!cursor.line(line))
                broken(ply, Text::tr("it ends before its last entry"));
            // The library counts such a line in some places and not in others.
            if (line.trimmed().startsWith("comment"))
                broken(ply, Text::tr("comment between the values"));
            Words words(line);
            for (const PlyProperty& property : element.properties)
            {
                const QByteArray word = words.next();
                if (property.countBytes == 0)
                    continue;
                const qint64 length = wholeNumber(word);
                lists.add(element, length, Words(words).count());
                for (qint64 value = 0; value < length; ++value)
                    words.next();
            }
        }
    }
}

qint64 readLength(const char* at, int bytes, bool bigEndian)
{
    switch (bytes)
    {
    case 1:
        return static_cast<uchar>(*at);
    case 2:
        return bigEndian ? qFromBigEndian<quint16>(at) : qFromLittleEndian<quint16>(at);
    default:
        return bigEndian ? qFromBigEndian<quint32>(at) : qFromLittleEndian<quint32>(at);
    }
}

void checkPlyBinary(const PlyHeader& header, Cursor cursor)
{
    const bool bigEndian = header.format == "binary_big_endian";
    PlyLists lists;
    for (const PlyElement& element : header.elements)
    {
        for (qint64 i = 0; i < element.count; ++i)
        {
            for (const PlyProperty& property : element.properties)
            {
                qint64 bytes = property.bytes;
                if (property.countBytes > 0 && cursor.left() >= property.countBytes)
                {
                    const qint64 length = readLength(cursor.position(), property.countBytes, bigEndian);
                    cursor.skip(property.countBytes);
                    lists.add(element, length, cursor.left() / property.bytes);
                    bytes *= length;
                }
                if (bytes > cursor.left())
                    broken(ply, Text::tr("it ends before its last entry"));
                cursor.skip(bytes);
            }
        }
    }
}

void checkPly(const QByteArray& data)
{
    Cursor cursor(data);
    const PlyHeader header = readPlyHeader(cursor);
    if (header.format == "ascii")
    {
        checkPlyCounts(header, cursor.left());
        checkPlyText(header, cursor);
        return;
    }
    if (header.format != "binary_little_endian" && header.format != "binary_big_endian")
        broken(ply, Text::tr("unknown format \"%1\"").arg(QString::fromLatin1(header.format.left(40))));
    cursor.skipLineEnd();
    checkPlyCounts(header, cursor.left());
    checkPlyBinary(header, cursor);
    // The library takes a first byte that looks like the second half of a line end for one.
    if (cursor.left() > 0 && *cursor.position() == '\n')
    {
        cursor.skip(1);
        checkPlyBinary(header, cursor);
    }
}

// OBJ: a line for each vertex and each face. A backslash at its end joins a line with the next.
void checkObj(const QByteArray& data)
{
    qint64 triangles = 0;
    qint64 parts = 0;
    QHash<QByteArray, qint64> vertices;
    Cursor cursor(data);
    QByteArray line;
    bool joined = false;
    bool face = false;
    while (cursor.line(line))
    {
        Words words(line);
        qint64 corners = 0;
        if (!joined)
        {
            const QByteArray keyword = words.next();
            face = keyword == "f" || keyword == "l" || keyword == "p";
            corners = face ? -2 : 0;
            if (keyword == "v" || keyword == "vn" || keyword == "vt")
                checkVertices(++vertices[keyword]);
            else if (!face && !keyword.startsWith('#') && keyword != "s")
                checkParts(++parts);
        }
        // A point or a line costs as much as a triangle.
        if (face)
            checkTriangles(triangles += qMax(corners + words.count(), qint64(joined ? 0 : 1)));
        joined = line.endsWith('\\');
    }
}

// STL: binary with a number of triangles that the library compares with the size of the file, or words.
void checkStl(const QByteArray& data)
{
    constexpr int head = 84;
    constexpr int facet = 50;
    if (data.size() >= head)
    {
        const qint64 facets = qFromLittleEndian<quint32>(data.constData() + head - 4);
        if (facets * facet + head == data.size())
            return checkTriangles(facets);
    }
    // Each of them ends with "endsolid" and "endfacet".
    checkParts(data.count("solid") / 2);
    checkTriangles(data.count("facet") / 2);
}

// glTF: JSON with lists of things that name each other by their places in the lists.
class Gltf
{
public:
    Gltf(const QJsonObject& root, const QString& kind)
        : m_kind(kind), m_nodes(root.value(QLatin1String("nodes")).toArray())
    {
        const QString version =
            root.value(QLatin1String("asset")).toObject().value(QLatin1String("version")).toString();
        if (!version.startsWith(QLatin1String("2.")))
            broken(m_kind, Text::tr("glTF 2 is needed"));
        checkBuffers(root.value(QLatin1String("buffers")).toArray());
        readAccessors(root.value(QLatin1String("accessors")).toArray());
        readMeshes(root.value(QLatin1String("meshes")).toArray());
        checkAnimations(root.value(QLatin1String("animations")).toArray());
        checkImages(root);
        checkNodes(root);
    }

private:
    struct Size
    {
        qint64 vertices = 0;
        qint64 parts = 0;
    };

    static qint64 number(const QJsonObject& object, const char* key)
    {
        const double value = object.value(QLatin1String(key)).toDouble(-1.0);
        return value >= 0.0 && value < 1.0e15 ? qint64(value) : -1;
    }

    static QJsonArray list(const QJsonObject& object, const char* key)
    {
        return object.value(QLatin1String(key)).toArray();
    }

    void checkBuffers(const QJsonArray& buffers) const
    {
        qint64 bytes = 0;
        for (const QJsonValue& buffer : buffers)
        {
            const qint64 length = number(buffer.toObject(), "byteLength");
            if (length <= 0)
                broken(m_kind, Text::tr("a buffer has no length"));
            bytes += length;
            if (bytes > maximumMeshFileSize)
                throw Fault{Text::tr("is too large, expected at most %1 MiB").arg(maximumMeshFileSize / 1024 / 1024)};
        }
    }

    void readAccessors(const QJsonArray& accessors)
    {
        qint64 sparse = 0;
        for (const QJsonValue& value : accessors)
        {
            const QJsonObject accessor = value.toObject();
            const qint64 count = number(accessor, "count");
            checkVertices(count);
            // One that names only what differs from zero needs no data for the rest.
            if (accessor.contains(QLatin1String("sparse")))
                checkVertices(sparse += count);
            m_counts << qMax(count, qint64(0));
        }
    }

    qint64 count(const QJsonValue& accessor) const { return m_counts.value(accessor.toInt(-1)); }

    qint64 sum(const QJsonObject& attributes) const
    {
        qint64 values = 0;
        for (const QJsonValue& accessor : attributes)
            values += count(accessor);
        return values;
    }

    void readMeshes(const QJsonArray& meshes)
    {
        qint64 parts = 0;
        qint64 values = 0;
        qint64 corners = 0;
        for (const QJsonValue& mesh : meshes)
        {
            Size size;
            const QJsonArray primitives = list(mesh.toObject(), "primitives");
            for (const QJsonValue& value : primitives)
            {
                const QJsonObject primitive = value.toObject();
                const QJsonObject attributes = primitive.value(QLatin1String("attributes")).toObject();
                const qint64 vertices = count(attributes.value(QLatin1String("POSITION")));
                const qint64 indices = count(primitive.value(QLatin1String("indices")));
                values += sum(attributes);
                const QJsonArray targets = list(primitive, "targets");
                // Each has a copy of everything that it does not change.
                for (const QJsonValue& target : targets)
                    values += sum(target.toObject()) + sum(attributes);
                checkVertices(corners += indices > 0 ? indices : vertices);
                checkParts(parts += 1 + targets.size());
                size.vertices += vertices;
                ++size.parts;
            }
            m_meshes << size;
        }
        atMost(4 * maximumVertexCount, values, Text::tr("values of vertices"));
    }

    void checkAnimations(const QJsonArray& animations) const
    {
        qint64 keys = 0;
        qint64 parts = 0;
        for (const QJsonValue& animation : animations)
        {
            const QJsonArray samplers = list(animation.toObject(), "samplers");
            const QJsonArray channels = list(animation.toObject(), "channels");
            checkParts(parts += channels.size());
            for (const QJsonValue& channel : channels)
            {
                const QJsonObject sampler =
                    samplers.at(channel.toObject().value(QLatin1String("sampler")).toInt(-1)).toObject();
                keys += count(sampler.value(QLatin1String("input"))) + count(sampler.value(QLatin1String("output")));
            }
        }
        atMost(maximumOtherCount, keys, Text::tr("further values"));
    }

    // Pictures are read and not used.
    void checkImages(const QJsonObject& root) const
    {
        const QJsonArray views = list(root, "bufferViews");
        const QJsonArray images = list(root, "images");
        qint64 bytes = 0;
        for (const QJsonValue& image : images)
        {
            const int view = image.toObject().value(QLatin1String("bufferView")).toInt(-1);
            bytes += qMax(number(views.at(view).toObject(), "byteLength"), qint64(0));
        }
        if (bytes > maximumMeshFileSize)
            throw Fault{Text::tr("is too large, expected at most %1 MiB").arg(maximumMeshFileSize / 1024 / 1024)};
    }

    // A node is built each time that it is named, with all below it.
    Size sizeOf(int index, int depth)
    {
        if (depth > maximumNodeDepth)
            broken(m_kind, Text::tr("nodes within nodes, more than %1 levels").arg(maximumNodeDepth));
        if (m_sizes.contains(index))
            return m_sizes.value(index);
        const QJsonObject node = m_nodes.at(index).toObject();
        Size size = m_meshes.value(node.value(QLatin1String("mesh")).toInt(-1));
        ++size.parts;
        const QJsonArray children = list(node, "children");
        for (const QJsonValue& child : children)
            add(size, sizeOf(child.toInt(-1), depth + 1));
        m_sizes.insert(index, size);
        return size;
    }

    static void add(Size& size, const Size& further)
    {
        checkVertices(size.vertices += further.vertices);
        checkParts(size.parts += further.parts);
    }

    void checkNodes(const QJsonObject& root)
    {
        checkParts(m_nodes.size());
        Size all;
        const QJsonArray scenes = list(root, "scenes");
        for (const QJsonValue& scene : scenes)
        {
            const QJsonArray nodes = list(scene.toObject(), "nodes");
            for (const QJsonValue& node : nodes)
                add(all, sizeOf(node.toInt(-1), 0));
        }
        qint64 joints = 0;
        const QJsonArray skins = list(root, "skins");
        for (const QJsonValue& node : qAsConst(m_nodes))
        {
            const QJsonValue skin = node.toObject().value(QLatin1String("skin"));
            joints += list(skins.at(skin.toInt(-1)).toObject(), "joints").size();
        }
        checkParts(joints);
    }

    QString m_kind;
    QJsonArray m_nodes;
    QVector<qint64> m_counts;
    QVector<Size> m_meshes;
    QHash<int, Size> m_sizes;
};

qint64 memberCount(const QJsonValue& value)
{
    qint64 members = 0;
    if (value.isObject())
    {
        const QJsonObject object = value.toObject();
        members = object.size();
        for (const QJsonValue& member : object)
            members += memberCount(member);
    }
    else if (value.isArray())
    {
        const QJsonArray array = value.toArray();
        for (const QJsonValue& item : array)
            members += memberCount(item);
    }
    return members;
}

qint64 colonCount(const QByteArray& json)
{
    qint64 colons = 0;
    bool inString = false;
    for (const char* at = json.constBegin(); at < json.constEnd(); ++at)
    {
        if (*at == '\\' && inString)
            ++at;
        else if (*at == '"')
            inString = !inString;
        else if (*at == ':' && !inString)
            ++colons;
    }
    return colons;
}

void checkGltf(const QByteArray& json, const QString& kind)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (!document.isObject())
        broken(kind, error.error == QJsonParseError::NoError ? Text::tr("no object") : error.errorString());
    // Of two members with one name, the library reads the other one.
    if (memberCount(document.object()) != colonCount(json))
        broken(kind, Text::tr("two members with one name"));
    Gltf(document.object(), kind);
}

// GLB: glTF in one file, the JSON first.
QByteArray jsonOfGlb(const QByteArray& data)
{
    constexpr int head = 20;
    const auto number = [&data](int at) { return qFromLittleEndian<quint32>(data.constData() + at); };
    const QString kind = QStringLiteral("GLB");
    if (data.size() < head || !data.startsWith("glTF") || number(4) != 2)
        broken(kind, Text::tr("glTF 2 is needed"));
    if (number(12) > quint32(data.size() - head) || data.mid(16, 4) != "JSON")
        broken(kind, Text::tr("it ends before its last entry"));
    return QByteArray::fromRawData(data.constData() + head, int(number(12)));
}
} // namespace

QString meshFileFault(const QByteArray& data, const QString& kind)
{
    try
    {
        if (kind == QLatin1String("ply"))
            checkPly(data);
        else if (kind == QLatin1String("obj"))
            checkObj(data);
        else if (kind == QLatin1String("stl"))
            checkStl(data);
        else if (kind == QLatin1String("gltf"))
            checkGltf(data, QStringLiteral("GLTF"));
        else if (kind == QLatin1String("glb"))
            checkGltf(jsonOfGlb(data), QStringLiteral("GLB"));
    }
    catch (const Fault& fault)
    {
        return fault.text;
    }
    return QString();
}
} // namespace sceneeditor
