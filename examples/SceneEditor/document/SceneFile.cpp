#include <examples/SceneEditor/document/SceneFile.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSaveFile>

#include <cmath>
#include <initializer_list>
#include <limits>

namespace sceneeditor
{
namespace
{
const QString formatName = QStringLiteral("orvek-scene");
constexpr int formatVersion = 1;
constexpr int maximumTextLength = 4096; // characters of a name or a file name
constexpr int maximumWarnings = 20;     // more would fill the window, and a hostile file has a million
constexpr int maximumQuoteLength = 40;  // characters of the file that a message repeats

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SceneFile)
};

QString number(double value)
{
    return QString::number(value, 'g', 7);
}

// The shortest decimal that is read back as the same float: 0.1 rather than 0.10000000149011612.
double shortest(float value)
{
    using Limits = std::numeric_limits<float>;
    for (int digits = Limits::digits10; digits <= Limits::max_digits10; ++digits)
    {
        const double rounded = QString::number(double(value), 'g', digits).toDouble();
        if (static_cast<float>(rounded) == value)
            return rounded;
    }
    return double(value);
}

bool isPowerOfTwo(int value)
{
    return value > 0 && (value & (value - 1)) == 0;
}

template <typename T>
struct Name
{
    const char* text;
    T value;
};

constexpr Name<LightKind> lightKinds[] = {{"directional", LightKind::Directional}, {"point", LightKind::Point}};
constexpr Name<ShadingMode> shadingModes[] = {{"lit", ShadingMode::Lit},
                                              {"flat", ShadingMode::Flat},
                                              {"normals", ShadingMode::Normals},
                                              {"wireframe", ShadingMode::Wireframe}};
constexpr Name<TextureFilter> textureFilters[] = {{"nearest", TextureFilter::Nearest},
                                                  {"bilinear", TextureFilter::Bilinear},
                                                  {"trilinear", TextureFilter::Trilinear}};

// What reading collects. The first error ends it: later ones are often only its consequences.
struct Report
{
    QString error;
    QStringList warnings;
    int moreWarnings = 0;
    QDir directory; // that file names in the scene are relative to

    void fail(const QString& path, const QString& expectation)
    {
        if (error.isEmpty())
            error = Text::tr("%1: %2").arg(path.isEmpty() ? Text::tr("the file's top level") : path, expectation);
    }

    void warnOfUnknown(const QString& path)
    {
        if (warnings.size() < maximumWarnings)
            warnings << Text::tr("%1: unknown, ignored").arg(path);
        else
            ++moreWarnings;
    }
};

QString shortened(const QString& text)
{
    return text.size() > maximumQuoteLength ? text.left(maximumQuoteLength) + QStringLiteral("...") : text;
}

QString describe(const QJsonValue& value)
{
    switch (value.type())
    {
    case QJsonValue::Null:
        return Text::tr("null");
    case QJsonValue::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QJsonValue::Double:
        return number(value.toDouble());
    case QJsonValue::String:
        return QLatin1Char('"') + shortened(value.toString().simplified()) + QLatin1Char('"');
    case QJsonValue::Array:
        return Text::tr("an array of %1").arg(value.toArray().size());
    case QJsonValue::Object:
        return Text::tr("an object");
    case QJsonValue::Undefined:
        break;
    }
    return Text::tr("nothing");
}

QString memberPath(const QString& parent, const QString& key)
{
    return parent.isEmpty() ? key : parent + QLatin1Char('.') + key;
}

// Reads the members of one JSON object in the same way that Writer writes them, so that both share one list of members
// (the functions named members() below). A member that is absent keeps the value that is there already.
class Reader
{
public:
    Reader(const QJsonValue& value, const QString& path, Report& report) : m_path(path), m_report(report)
    {
        if (value.isObject())
            m_object = value.toObject();
        else
            m_report.fail(path, Text::tr("expected an object, found %1").arg(describe(value)));
    }

    ~Reader()
    {
        for (auto it = m_object.constBegin(); it != m_object.constEnd(); ++it)
        {
            if (!m_known.contains(it.key()))
                m_report.warnOfUnknown(memberPath(m_path, shortened(it.key())));
        }
    }

    void value(const char* key, bool& target)
    {
        const QJsonValue json = take(key);
        if (json.isBool())
            target = json.toBool();
        else
            expected(key, json, Text::tr("true or false"));
    }

    void value(const char* key, double& target, const Range& range)
    {
        const QJsonValue json = take(key);
        if (json.isDouble() && range.contains(json.toDouble()))
            target = json.toDouble();
        else
            expected(key, json, Text::tr("a number from %1 to %2").arg(number(range.minimum), number(range.maximum)));
    }

    void powerOfTwo(const char* key, int& target, int minimum, int maximum)
    {
        const QJsonValue json = take(key);
        const int read = json.toInt(0); // 0 also for fractions
        if (isPowerOfTwo(read) && read >= minimum && read <= maximum)
            target = read;
        else
            expected(key, json, Text::tr("a power of two from %1 to %2").arg(minimum).arg(maximum));
    }

    void value(const char* key, QVector3D& target, const Range& range)
    {
        const QJsonValue json = take(key);
        const QString expectation =
            Text::tr("an array of three numbers from %1 to %2").arg(number(range.minimum), number(range.maximum));
        const QJsonArray array = json.toArray();
        if (!json.isArray() || array.size() != 3)
            return expected(key, json, expectation);
        QVector3D read;
        for (int i = 0; i < 3; ++i)
        {
            // Compared as a float, which is what was written: the ends of a range need not be exact as a float.
            const float component = static_cast<float>(array.at(i).toDouble());
            const bool inside = component >= float(range.minimum) && component <= float(range.maximum);
            if (!array.at(i).isDouble() || !inside)
                return m_report.fail(QStringLiteral("%1[%2]").arg(memberPath(m_path, QLatin1String(key))).arg(i),
                                     Text::tr("expected a number from %1 to %2, found %3")
                                         .arg(number(range.minimum), number(range.maximum), describe(array.at(i))));
            read[i] = component;
        }
        target = read;
    }

    void value(const char* key, QColor& target)
    {
        const QJsonValue json = take(key);
        const QString name = json.toString();
        const bool shaped = name.startsWith(QLatin1Char('#')) && (name.size() == 7 || name.size() == 13);
        const QColor colour = shaped ? QColor(name) : QColor();
        if (colour.isValid())
            target = colour;
        else
            expected(key, json, Text::tr("a colour such as \"#ff8000\""));
    }

    void value(const char* key, QString& target)
    {
        const QJsonValue json = take(key);
        if (json.isString() && json.toString().size() <= maximumTextLength)
            target = json.toString();
        else
            expected(key, json, Text::tr("a text of at most %1 characters").arg(maximumTextLength));
    }

    void file(const char* key, QString& target)
    {
        QString name;
        value(key, name);
        // Qt would take it for the name of a resource.
        if (name.startsWith(QLatin1Char(':')))
            name.prepend(QStringLiteral("./"));
        if (!name.isEmpty())
            target = QDir::cleanPath(m_report.directory.absoluteFilePath(name));
    }

    template <typename T, size_t N>
    void value(const char* key, T& target, const Name<T> (&names)[N])
    {
        const QJsonValue json = take(key);
        QStringList known;
        for (const Name<T>& name : names)
        {
            if (json.isString() && json.toString() == QLatin1String(name.text))
            {
                target = name.value;
                return;
            }
            known << QLatin1Char('"') + QLatin1String(name.text) + QLatin1Char('"');
        }
        expected(key, json, Text::tr("one of %1").arg(known.join(QStringLiteral(", "))));
    }

    template <typename T>
    void section(const char* key, T& target)
    {
        const QJsonValue json = take(key);
        if (json.isUndefined())
            return;
        Reader reader(json, memberPath(m_path, QLatin1String(key)), m_report);
        members(reader, target);
    }

    template <typename T>
    void list(const char* key, QVector<T>& target, int maximum)
    {
        const QJsonValue json = take(key);
        const QJsonArray array = json.toArray();
        if (!json.isArray() || array.size() > maximum)
            return expected(key, json, Text::tr("an array of at most %1").arg(maximum));
        target.clear();
        for (int i = 0; i < array.size() && m_report.error.isEmpty(); ++i)
        {
            T item;
            Reader reader(array.at(i), QStringLiteral("%1[%2]").arg(memberPath(m_path, QLatin1String(key))).arg(i),
                          m_report);
            members(reader, item);
            target << item;
        }
    }

    QJsonValue take(const char* key)
    {
        m_known << QLatin1String(key);
        return m_object.value(QLatin1String(key));
    }

private:
    Q_DISABLE_COPY(Reader)

    void expected(const char* key, const QJsonValue& found, const QString& expectation)
    {
        if (!found.isUndefined())
            m_report.fail(memberPath(m_path, QLatin1String(key)),
                          Text::tr("expected %1, found %2").arg(expectation, describe(found)));
    }

    QJsonObject m_object;
    QString m_path;
    Report& m_report;
    QStringList m_known;
};

class Writer
{
public:
    explicit Writer(const QDir& directory) : m_directory(directory) {}

    const QJsonObject& object() const { return m_object; }

    void value(const char* key, bool source) { put(key, source); }
    void value(const char* key, double source, const Range&) { put(key, source); }
    void powerOfTwo(const char* key, int source, int, int) { put(key, source); }
    void value(const char* key, const QString& source) { put(key, source); }

    void value(const char* key, const QVector3D& source, const Range&)
    {
        put(key, QJsonArray{shortest(source.x()), shortest(source.y()), shortest(source.z())});
    }

    void value(const char* key, const QColor& source)
    {
        const QRgba64 colour = source.rgba64();
        const bool eightBits = QColor(source.rgb()).rgba64() == colour;
        put(key, eightBits ? source.name(QColor::HexRgb)
                           : QStringLiteral("#%1%2%3")
                                 .arg(uint(colour.red()), 4, 16, QLatin1Char('0'))
                                 .arg(uint(colour.green()), 4, 16, QLatin1Char('0'))
                                 .arg(uint(colour.blue()), 4, 16, QLatin1Char('0')));
    }

    void file(const char* key, const QString& source)
    {
        put(key, source.isEmpty() ? QString() : m_directory.relativeFilePath(source));
    }

    template <typename T, size_t N>
    void value(const char* key, T source, const Name<T> (&names)[N])
    {
        for (const Name<T>& name : names)
        {
            if (name.value == source)
                put(key, QLatin1String(name.text));
        }
    }

    template <typename T>
    void section(const char* key, T& source)
    {
        Writer writer(m_directory);
        members(writer, source);
        put(key, writer.object());
    }

    template <typename T>
    void list(const char* key, QVector<T>& source, int)
    {
        QJsonArray array;
        for (T& item : source)
        {
            Writer writer(m_directory);
            members(writer, item);
            array << writer.object();
        }
        put(key, array);
    }

private:
    void put(const char* key, const QJsonValue& value) { m_object.insert(QLatin1String(key), value); }

    QDir m_directory;
    QJsonObject m_object;
};

template <typename Archive>
void members(Archive& archive, Camera& camera)
{
    archive.value("target", camera.target, ranges::coordinate);
    archive.value("distance", camera.distance, ranges::cameraDistance);
    archive.value("azimuth", camera.azimuth, ranges::azimuth);
    archive.value("elevation", camera.elevation, ranges::cameraElevation);
    archive.value("fieldOfView", camera.fieldOfView, ranges::fieldOfView);
}

template <typename Archive>
void members(Archive& archive, Light& light)
{
    archive.value("kind", light.kind, lightKinds);
    archive.value("azimuth", light.azimuth, ranges::azimuth);
    archive.value("elevation", light.elevation, ranges::lightElevation);
    archive.value("distance", light.distance, ranges::lightDistance);
    archive.value("colour", light.colour);
    archive.value("intensity", light.intensity, ranges::lightIntensity);
    archive.value("ambient", light.ambient, ranges::ambient);
    archive.value("shadows", light.shadows);
    archive.powerOfTwo("shadowMapSize", light.shadowMapSize, ranges::shadowMapSizeMinimum,
                       ranges::shadowMapSizeMaximum);
}

template <typename Archive>
void members(Archive& archive, View& view)
{
    archive.value("shading", view.shading, shadingModes);
    archive.value("textureFilter", view.textureFilter, textureFilters);
    archive.file("environmentImage", view.environmentImage);
    archive.value("environmentBackground", view.environmentBackground);
    archive.value("backgroundColour", view.backgroundColour);
    archive.value("exposure", view.exposure, ranges::exposure);
    archive.value("grid", view.grid);
    archive.value("gridCellSize", view.gridCellSize, ranges::gridCellSize);
    archive.powerOfTwo("gridExtent", view.gridExtent, ranges::gridExtentMinimum, ranges::gridExtentMaximum);
    archive.value("highlightSelection", view.highlightSelection);
}

template <typename Archive>
void members(Archive& archive, Animation& animation)
{
    archive.value("turntableSpeed", animation.turntableSpeed, ranges::turntableSpeed);
    archive.value("playing", animation.playing);
}

template <typename Archive>
void members(Archive& archive, Material& material)
{
    archive.value("baseColour", material.baseColour);
    archive.value("roughness", material.roughness, ranges::unit);
    archive.value("metallic", material.metallic, ranges::unit);
    archive.value("emissionColour", material.emissionColour);
    archive.value("emission", material.emission, ranges::emission);
}

template <typename Archive>
void members(Archive& archive, Object& object)
{
    archive.value("name", object.name);
    archive.file("mesh", object.meshFile);
    archive.value("position", object.position, ranges::coordinate);
    archive.value("rotation", object.rotation, ranges::rotation);
    archive.value("scale", object.scale, ranges::scale);
    archive.value("visible", object.visible);
    archive.section("material", object.material);
}

template <typename Archive>
void members(Archive& archive, Scene& scene)
{
    archive.value("name", scene.name);
    archive.section("camera", scene.camera);
    archive.section("light", scene.light);
    archive.section("view", scene.view);
    archive.section("animation", scene.animation);
    archive.list("objects", scene.objects, maximumObjectCount);
}

QString lineAndColumn(const QByteArray& data, int offset)
{
    const QByteArray before = data.left(offset);
    const int line = before.count('\n') + 1;
    const int column = QString::fromUtf8(before.mid(before.lastIndexOf('\n') + 1)).size() + 1;
    return QStringLiteral("%1:%2").arg(line).arg(column);
}

std::optional<Scene> parseScene(const QJsonObject& root, Report& report)
{
    Scene scene;
    Reader reader(root, QString(), report);
    const QJsonValue format = reader.take("format");
    if (format != QJsonValue(formatName))
        report.fail(QStringLiteral("format"), Text::tr("expected \"%1\", found %2").arg(formatName, describe(format)));
    const QJsonValue version = reader.take("version");
    if (version != QJsonValue(formatVersion))
        report.fail(QStringLiteral("version"),
                    Text::tr("expected %1, found %2").arg(formatVersion).arg(describe(version)));
    if (report.error.isEmpty())
        members(reader, scene);
    if (!report.error.isEmpty())
        return std::nullopt;
    return scene;
}

QJsonObject toJson(Scene scene, const QDir& directory)
{
    Writer writer(directory);
    members(writer, scene);
    QJsonObject root = writer.object();
    root.insert(QStringLiteral("format"), formatName);
    root.insert(QStringLiteral("version"), formatVersion);
    return root;
}

bool setError(QString* error, const QString& fileName, const QString& message)
{
    if (error != nullptr)
        *error = Text::tr("%1: %2").arg(QDir::toNativeSeparators(fileName), message);
    return false;
}
} // namespace

std::optional<Scene> readScene(const QString& fileName, QString* error, QStringList* warnings)
{
    const auto failed = [&](const QString& message)
    {
        setError(error, fileName, message);
        return std::nullopt;
    };

    const QFileInfo info(fileName);
    if (info.isDir())
        return failed(Text::tr("is a directory, expected a scene file"));
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return failed(Text::tr("cannot be read: %1").arg(file.errorString()));
    // Devices and pipes have no size that could be asked for. In pieces, as room for a piece is made at once.
    constexpr qint64 piece = qint64(64) * 1024;
    QByteArray data;
    for (QByteArray more = file.read(piece); !more.isEmpty() && data.size() <= maximumSceneFileSize;
         more = file.read(piece))
        data += more;
    if (file.error() != QFileDevice::NoError)
        return failed(Text::tr("cannot be read: %1").arg(file.errorString()));
    if (data.size() > maximumSceneFileSize)
        return failed(Text::tr("is too large, expected at most %1 MiB").arg(maximumSceneFileSize / 1024 / 1024));

    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(data, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return failed(
            Text::tr("%1: not valid JSON, %2").arg(lineAndColumn(data, parseError.offset), parseError.errorString()));
    Report report;
    report.directory = QDir(info.absolutePath());
    if (!document.isObject())
        return failed(Text::tr("1:1: expected an object, found an array"));
    std::optional<Scene> scene = parseScene(document.object(), report);
    if (!scene)
        return failed(report.error);
    if (report.moreWarnings > 0)
        report.warnings << Text::tr("%1 further unknown ones, ignored").arg(report.moreWarnings);
    if (warnings != nullptr)
        *warnings = report.warnings;
    return scene;
}

bool writeScene(const Scene& scene, const QString& fileName, QString* error)
{
    const QDir directory(QFileInfo(fileName).absolutePath());
    const QJsonObject root = toJson(scene, directory);
    // Reading it back is the one check of all ranges. It also finds NaN and infinity, which turn into null.
    Report report;
    report.directory = directory;
    if (!parseScene(root, report))
        return setError(error, fileName, Text::tr("not saved, %1").arg(report.error));

    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return setError(error, fileName, Text::tr("cannot be written: %1").arg(file.errorString()));
    const QByteArray data = QJsonDocument(root).toJson();
    if (data.size() > maximumSceneFileSize)
        return setError(error, fileName,
                        Text::tr("not saved, larger than %1 MiB").arg(maximumSceneFileSize / 1024 / 1024));
    // Of a disk that fills up meanwhile, commit() knows only when nothing at all could be written.
    if (file.write(data) != data.size())
        file.cancelWriting();
    if (!file.commit())
        return setError(error, fileName, Text::tr("cannot be written: %1").arg(file.errorString()));
    return true;
}
} // namespace sceneeditor
