#include <Orvek/Host/ObjectFile.h>

#include <Orvek/Host/PropertyValue.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QMap>
#include <QtCore/QSaveFile>
#include <QtGui/QColor>
#include <QtGui/QVector3D>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iterator>
#include <limits>
#include <optional>
#include <system_error>
#include <utility>

namespace orvek::host
{
namespace
{
constexpr int MaximumWarnings = 20;    // more would fill a window, and a hostile file has a million
constexpr int MaximumQuoteLength = 40; // characters of the file that a message quotes
const QString MinusZero = QStringLiteral("-0");

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(orvek::host::ObjectFile)
};

// The members of a JSON object by name: properties, or structs with members of their own.
struct Node
{
    QMap<QString, Node> members;
    int property = -1;
};

struct Element;

// A file's content for one property.
struct FileValue
{
    int property = -1;
    QVariant value;
    QVector<Element> elements; // of a list
};

struct Element
{
    QVector<FileValue> values;
};

QString number(double value)
{
    return QString::number(value, 'g', 7);
}

QString shortened(const QString& text)
{
    return text.size() > MaximumQuoteLength ? text.left(MaximumQuoteLength) + QStringLiteral("...") : text;
}

QString quoted(const QString& text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

// A link is followed, but whatever else has a name in the file system would be gone.
QString whyNotReplaced(const QString& fileName)
{
    std::error_code ignored;
    switch (std::filesystem::status(QFile::encodeName(fileName).toStdString(), ignored).type())
    {
    case std::filesystem::file_type::fifo:
        return Text::tr("not saved, is a named pipe, expected a file");
    case std::filesystem::file_type::socket:
        return Text::tr("not saved, is a socket, expected a file");
    case std::filesystem::file_type::block:
    case std::filesystem::file_type::character:
        return Text::tr("not saved, is a device, expected a file");
    default:
        return {};
    }
}

// For a file without a buffer. When the disk fills up, a write ends early, and only the next one fails and says why.
bool writeAll(QIODevice& file, const QByteArray& contents)
{
    for (qint64 written = 0; written < contents.size();)
    {
        const qint64 count = file.write(contents.constData() + written, contents.size() - written);
        if (count <= 0)
            return false;
        written += count;
    }
    return true;
}

QString found(const QJsonValue& value)
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
        return quoted(shortened(value.toString().simplified()));
    case QJsonValue::Array:
        return Text::tr("an array of %1").arg(value.toArray().size());
    case QJsonValue::Object:
        return Text::tr("an object");
    case QJsonValue::Undefined:
        break;
    }
    return Text::tr("nothing");
}

QString memberPath(const QString& parent, const QString& member)
{
    return parent.isEmpty() ? member : parent + QLatin1Char('.') + member;
}

QString elementPath(const QString& parent, int index)
{
    return QStringLiteral("%1[%2]").arg(parent).arg(index);
}

QString lineAndColumn(const QByteArray& contents, int offset)
{
    const QByteArray before = contents.left(offset);
    const int column = QString::fromUtf8(before.mid(before.lastIndexOf('\n') + 1)).size() + 1;
    return QStringLiteral("%1:%2").arg(before.count('\n') + 1).arg(column);
}

// Whether the text survives a file, which is in UTF-8.
bool isUnicode(const QString& text)
{
    return QString::fromUtf8(text.toUtf8()) == text;
}

// QJsonValue stores a whole number as an integer, which has no negative zero.
QJsonValue jsonNumber(double value)
{
    return value == 0.0 && std::signbit(value) ? QJsonValue(MinusZero) : QJsonValue(value);
}

// The shortest decimal that reads back as the same float: 0.1 rather than 0.10000000149011612.
QJsonValue jsonNumber(float value)
{
    using Limits = std::numeric_limits<float>;
    for (int digits = Limits::digits10; value != 0.0F && digits < Limits::max_digits10; ++digits)
    {
        const double rounded = QString::number(double(value), 'g', digits).toDouble();
        if (toFloat(rounded) == value)
            return jsonNumber(rounded);
    }
    return jsonNumber(double(value));
}

std::optional<double> numberIn(const QJsonValue& json)
{
    if (json.isDouble())
        return json.toDouble();
    if (json.isString() && json.toString() == MinusZero)
        return -0.0;
    return std::nullopt;
}

QString numberExpected(const Property& property)
{
    const bool fromBelow = std::isfinite(property.minimum);
    const bool toAbove = std::isfinite(property.maximum);
    if (fromBelow && toAbove)
        return Text::tr("a number from %1 to %2").arg(number(property.minimum), number(property.maximum));
    if (fromBelow)
        return Text::tr("a number of at least %1").arg(number(property.minimum));
    return toAbove ? Text::tr("a number of at most %1").arg(number(property.maximum)) : Text::tr("a number");
}

// "#rrggbb" if eight bits suffice, otherwise "#rrrrggggbbbb"; alpha comes first if there is any.
QJsonValue jsonColour(const QColor& colour)
{
    if (!colour.isValid())
        return {};
    const QRgba64 parts = colour.rgba64();
    const quint16 all[] = {parts.red(), parts.green(), parts.blue(), parts.alpha()};
    const bool eightBits = std::all_of(std::begin(all), std::end(all), [](quint16 part) { return part % 257 == 0; });
    const int digits = eightBits ? 2 : 4;
    QString name = QStringLiteral("#");
    const auto append = [&name, digits](quint16 part)
    { name += QStringLiteral("%1").arg(digits == 2 ? part / 257 : int(part), digits, 16, QLatin1Char('0')); };
    if (!parts.isOpaque())
        append(parts.alpha());
    for (const quint16 part : {parts.red(), parts.green(), parts.blue()})
        append(part);
    return name;
}

std::optional<QColor> colourIn(const QJsonValue& json, bool withAlpha)
{
    if (json.isNull())
        return QColor();
    const QString name = json.toString();
    const int size = name.size() - 1;
    const int digits = size == 6 || size == 8 ? 2 : 4;
    const int count = size / digits;
    if (!name.startsWith(QLatin1Char('#')) || count * digits != size || (count != 3 && !(count == 4 && withAlpha)))
        return std::nullopt;
    quint16 parts[4] = {0xffff, 0, 0, 0}; // alpha first
    for (int i = 0; i < count; ++i)
    {
        bool isHex = false;
        const QString part = name.mid(1 + i * digits, digits);
        // toUShort() also accepts signs and spaces.
        const bool isPlain = std::all_of(part.begin(), part.end(), [](QChar c) { return c.isLetterOrNumber(); });
        const ushort value = part.toUShort(&isHex, 16);
        if (!isHex || !isPlain)
            return std::nullopt;
        parts[4 - count + i] = digits == 2 ? quint16(value * 257) : value;
    }
    return QColor(qRgba64(parts[1], parts[2], parts[3], parts[0]));
}

void addMember(Node& node, const QStringList& path, int property)
{
    Node* place = &node;
    for (const QString& part : path)
        place = &place->members[part];
    place->property = property;
}

// Puts back members that the object has not written.
void merge(QJsonObject& target, const QJsonObject& kept)
{
    for (auto it = kept.begin(); it != kept.end(); ++it)
    {
        if (!target.contains(it.key()))
            target.insert(it.key(), it.value());
        else if (target.value(it.key()).isObject() && it.value().isObject())
        {
            QJsonObject inside = target.value(it.key()).toObject();
            merge(inside, it.value().toObject());
            target.insert(it.key(), inside);
        }
    }
}
} // namespace

struct ObjectFile::Private
{
    Node nodeOf(const ObjectType& objectType);
    void begin();
    bool fail(const QString& path, const QString& problem);
    bool expected(const QString& path, const QString& expectation, const QJsonValue& value);
    void warnOfUnknown(const QString& path);

    std::optional<QVariant> valueIn(const Property& property, const QJsonValue& json, const QString& path);
    bool readMembers(const ObjectType& objectType, const Node& node, const QJsonObject& json, const QString& path,
                     Element& element, QJsonObject* unknown);
    bool readList(const Property& property, const QJsonValue& json, const QString& path, FileValue& value);
    static Element capture(const ObjectType& objectType, const void* object, const Element& likeThis);
    static Element captureAll(const ObjectType& objectType, const void* object);
    bool apply(const ObjectType& objectType, const Element& element, const QString& path, void* object);
    bool fromJson(const QJsonObject& json, void* object);

    QJsonValue jsonOf(const Property& property, const QVariant& value) const;
    bool writeMembers(const ObjectType& objectType, const Node& node, const void* object, const QString& path,
                      QJsonObject& json);
    bool writeProperty(const ObjectType& objectType, int property, const void* object, const QString& path,
                       QJsonValue& json);
    bool toJson(const void* object, QJsonObject& target);

    std::optional<QByteArray> contents(const QString& fileName, QString& problem) const;
    bool named(const QString& fileName, bool succeeded);

    std::shared_ptr<const ObjectType> type;
    QHash<const ObjectType*, Node> nodes; // each created when first needed
    UnknownMembers treatment = UnknownMembers::Warn;
    QJsonObject kept;
    QJsonObject header;
    std::function<QString(const QString&)> readName;
    std::function<QString(const QString&)> writeName;
    qint64 maximumSize = qint64(64) * 1024 * 1024;

    QString error;
    bool errorHasPlace = false; // it begins with line and column
    QStringList warnings;
    int moreWarnings = 0;
};

Node ObjectFile::Private::nodeOf(const ObjectType& objectType)
{
    const auto it = nodes.constFind(&objectType);
    if (it != nodes.constEnd())
        return *it;
    Node node;
    const QVector<Property>& properties = objectType.properties();
    for (int i = 0; i < properties.size(); ++i)
    {
        if (properties[i].stored)
            addMember(node, properties[i].name.split(QLatin1Char('.')), i);
    }
    return *nodes.insert(&objectType, node);
}

void ObjectFile::Private::begin()
{
    error.clear();
    errorHasPlace = false;
    warnings.clear();
    moreWarnings = 0;
}

// Keeps the first error: later ones are often only its consequences.
bool ObjectFile::Private::fail(const QString& path, const QString& problem)
{
    if (error.isEmpty())
        error = Text::tr("%1: %2").arg(path.isEmpty() ? Text::tr("the top level") : path, problem);
    return false;
}

bool ObjectFile::Private::expected(const QString& path, const QString& expectation, const QJsonValue& value)
{
    return fail(path, Text::tr("expected %1, found %2").arg(expectation, found(value)));
}

void ObjectFile::Private::warnOfUnknown(const QString& path)
{
    if (warnings.size() < MaximumWarnings)
        warnings << Text::tr("%1: unknown, ignored").arg(path);
    else
        ++moreWarnings;
}

std::optional<QVariant> ObjectFile::Private::valueIn(const Property& property, const QJsonValue& json,
                                                     const QString& path)
{
    const auto checked = [&](bool isOfKind, const QVariant& value,
                             const QString& expectation) -> std::optional<QVariant>
    {
        if (isOfKind && isValid(property, value))
            return value;
        expected(path, expectation, json);
        return std::nullopt;
    };
    switch (property.kind)
    {
    case PropertyKind::Number:
    {
        const std::optional<double> value = numberIn(json);
        return checked(value.has_value(),
                       property.singlePrecision ? double(toFloat(value.value_or(0))) : value.value_or(0),
                       numberExpected(property));
    }
    case PropertyKind::Integer:
    case PropertyKind::PowerOfTwo:
    {
        const double value = json.toDouble();
        const bool isWhole =
            json.isDouble() && value == std::floor(value) && std::abs(value) <= std::numeric_limits<int>::max();
        const QString expectation = property.kind == PropertyKind::Integer ? Text::tr("a whole number from %1 to %2")
                                                                           : Text::tr("a power of two from %1 to %2");
        return checked(
            isWhole, isWhole ? int(value) : 0,
            expectation.arg(QString::number(property.minimum, 'f', 0), QString::number(property.maximum, 'f', 0)));
    }
    case PropertyKind::Choice:
    {
        QStringList keys;
        for (const PropertyChoice& choice : property.choices)
        {
            if (json.isString() && json.toString() == choice.key)
                return choice.value;
            keys << quoted(choice.key);
        }
        return checked(false, {}, Text::tr("one of %1").arg(keys.join(QStringLiteral(", "))));
    }
    case PropertyKind::Colour:
    case PropertyKind::ColourWithAlpha:
        // Without a default the object itself decides whether it accepts a QColor or a QVector3D.
        if (property.defaultValue.isValid() ? property.defaultValue.userType() == QMetaType::QColor : !json.isArray())
        {
            const bool withAlpha = property.kind == PropertyKind::ColourWithAlpha;
            const std::optional<QColor> colour = colourIn(json, withAlpha);
            return checked(colour.has_value(), colour.value_or(QColor()),
                           Text::tr("a colour such as %1")
                               .arg(quoted(withAlpha ? QStringLiteral("#80ff8000") : QStringLiteral("#ff8000"))));
        }
        Q_FALLTHROUGH();
    case PropertyKind::Vector:
    {
        const QJsonArray array = json.toArray();
        if (!json.isArray() || array.size() != 3)
            return checked(false, {}, Text::tr("an array of three numbers"));
        Property component = property;
        component.kind = PropertyKind::Number;
        component.singlePrecision = true;
        QVector3D vector;
        for (int i = 0; i < 3; ++i)
        {
            const std::optional<QVariant> value = valueIn(component, array.at(i), elementPath(path, i));
            if (!value)
                return std::nullopt;
            vector[i] = value->toFloat();
        }
        return QVariant(vector);
    }
    case PropertyKind::Text:
    case PropertyKind::File:
    {
        const QString text = json.toString();
        if (json.isString() && !isUnicode(text))
        {
            fail(path, Text::tr("the text is not valid Unicode"));
            return std::nullopt;
        }
        return checked(json.isString(), text,
                       property.maximumLength > 0
                           ? Text::tr("a text of at most %1 characters").arg(property.maximumLength)
                           : Text::tr("a text"));
    }
    case PropertyKind::Flag:
        return checked(json.isBool(), json.toBool(), Text::tr("true or false"));
    case PropertyKind::List:
        break;
    }
    return checked(false, {}, Text::tr("nothing"));
}

bool ObjectFile::Private::readList(const Property& property, const QJsonValue& json, const QString& path,
                                   FileValue& value)
{
    const QJsonArray array = json.toArray();
    if (!json.isArray() || (property.maximumLength > 0 && array.size() > property.maximumLength))
        return expected(path,
                        property.maximumLength > 0 ? Text::tr("an array of at most %1").arg(property.maximumLength)
                                                   : Text::tr("an array"),
                        json);
    const Node node = nodeOf(*property.elementType);
    for (int i = 0; i < array.size(); ++i)
    {
        const QString place = elementPath(path, i);
        Element element;
        if (!array.at(i).isObject())
            return expected(place, Text::tr("an object"), array.at(i));
        if (!readMembers(*property.elementType, node, array.at(i).toObject(), place, element, nullptr))
            return false;
        value.elements.append(element);
    }
    return true;
}

bool ObjectFile::Private::readMembers(const ObjectType& objectType, const Node& node, const QJsonObject& json,
                                      const QString& path, Element& element, QJsonObject* unknown)
{
    for (auto it = json.begin(); it != json.end(); ++it)
    {
        const QString place = memberPath(path, it.key());
        const auto member = node.members.constFind(it.key());
        if (member == node.members.constEnd())
        {
            if (unknown)
                unknown->insert(it.key(), it.value());
            else
                warnOfUnknown(memberPath(path, shortened(it.key())));
            continue;
        }
        if (member->property < 0)
        {
            if (!it.value().isObject())
                return expected(place, Text::tr("an object"), it.value());
            QJsonObject inside;
            if (!readMembers(objectType, *member, it.value().toObject(), place, element, unknown ? &inside : nullptr))
                return false;
            if (unknown && !inside.isEmpty())
                unknown->insert(it.key(), inside);
            continue;
        }
        const Property& property = objectType.properties()[member->property];
        FileValue value;
        value.property = member->property;
        if (property.kind == PropertyKind::List)
        {
            if (!readList(property, it.value(), place, value))
                return false;
        }
        else
        {
            const std::optional<QVariant> read = valueIn(property, it.value(), place);
            if (!read)
                return false;
            value.value = *read;
            if (property.kind == PropertyKind::File && readName && !read->toString().isEmpty())
                value.value = readName(read->toString());
        }
        element.values.append(value);
    }
    return true;
}

Element ObjectFile::Private::captureAll(const ObjectType& objectType, const void* object)
{
    Element all;
    for (int i = 0; i < objectType.properties().size(); ++i)
    {
        if (objectType.properties()[i].stored)
            all.values.append({i, {}, {}});
    }
    return capture(objectType, object, all);
}

// The object's current values of the same properties.
Element ObjectFile::Private::capture(const ObjectType& objectType, const void* object, const Element& likeThis)
{
    Element now;
    for (const FileValue& value : likeThis.values)
    {
        const Property& property = objectType.properties()[value.property];
        FileValue captured;
        captured.property = value.property;
        if (property.kind != PropertyKind::List)
            captured.value = objectType.read(object, value.property);
        else
        {
            // Only read, but element() is the same for reading and changing.
            auto* owner = const_cast<void*>(object);
            const int count = objectType.count(object, value.property);
            for (int i = 0; i < count; ++i)
                captured.elements.append(
                    captureAll(*property.elementType, objectType.element(owner, value.property, i)));
        }
        now.values.append(captured);
    }
    return now;
}

bool ObjectFile::Private::apply(const ObjectType& objectType, const Element& element, const QString& path, void* object)
{
    bool all = true;
    for (const FileValue& value : element.values)
    {
        const Property& property = objectType.properties()[value.property];
        const QString place = memberPath(path, property.name);
        if (property.kind != PropertyKind::List)
        {
            // An object that already has the value need not accept it.
            if (!identical(objectType.read(object, value.property), value.value) &&
                !objectType.write(object, value.property, value.value))
                all = fail(place, Text::tr("%1 refuses the value").arg(objectType.name()));
            continue;
        }
        // Emptied first, so that each element starts with its defaults.
        const int count = value.elements.size();
        if (!objectType.resize(object, value.property, 0) || !objectType.resize(object, value.property, count))
        {
            all = fail(place, Text::tr("%1 refuses the value").arg(objectType.name()));
            continue;
        }
        for (int i = 0; i < count; ++i)
            all = apply(*property.elementType, value.elements[i], elementPath(place, i),
                        objectType.element(object, value.property, i)) &&
                  all;
    }
    return all;
}

bool ObjectFile::Private::fromJson(const QJsonObject& json, void* object)
{
    if (!type)
        return fail({}, Text::tr("the object has no description"));
    QJsonObject members = json;
    for (auto it = header.constBegin(); it != header.constEnd(); ++it)
    {
        const QJsonValue value = members.take(it.key());
        if (value != it.value())
            return expected(it.key(), found(it.value()), value);
    }
    const bool keeps = treatment == UnknownMembers::Keep;
    QJsonObject unknown;
    Element element;
    if (!readMembers(*type, nodeOf(*type), members, {}, element, keeps ? &unknown : nullptr))
        return false;
    const Element before = capture(*type, object, element);
    if (!apply(*type, element, {}, object))
    {
        apply(*type, before, {}, object);
        return false;
    }
    kept = unknown;
    if (moreWarnings > 0)
        warnings << Text::tr("%1 more unknown members, ignored").arg(moreWarnings);
    return true;
}

// For a value that files cannot represent, returns something that cannot be read either.
QJsonValue ObjectFile::Private::jsonOf(const Property& property, const QVariant& value) const
{
    switch (value.userType())
    {
    case QMetaType::Double:
        return property.singlePrecision ? jsonNumber(toFloat(value.toDouble())) : jsonNumber(value.toDouble());
    case QMetaType::Int:
        for (const PropertyChoice& choice : property.choices)
        {
            if (choice.value == value.toInt())
                return choice.key;
        }
        return value.toInt();
    case QMetaType::QVector3D:
    {
        const auto vector = value.value<QVector3D>();
        return QJsonArray{jsonNumber(vector.x()), jsonNumber(vector.y()), jsonNumber(vector.z())};
    }
    case QMetaType::QColor:
        return jsonColour(value.value<QColor>());
    case QMetaType::QString:
        if (property.kind == PropertyKind::File && writeName && !value.toString().isEmpty())
            return writeName(value.toString());
        return value.toString();
    case QMetaType::Bool:
        return value.toBool();
    default:
        return QJsonValue::Undefined;
    }
}

bool ObjectFile::Private::writeProperty(const ObjectType& objectType, int property, const void* object,
                                        const QString& path, QJsonValue& json)
{
    const Property& described = objectType.properties()[property];
    if (described.kind != PropertyKind::List)
    {
        // Reading it back reveals everything that files cannot represent.
        const QVariant value = objectType.read(object, property);
        json = jsonOf(described, value);
        const std::optional<QVariant> back = valueIn(described, json, path);
        if (back && described.kind != PropertyKind::File && !identical(*back, value))
            return fail(path, Text::tr("the value cannot be written exactly"));
        return back.has_value();
    }
    const int count = objectType.count(object, property);
    if (described.maximumLength > 0 && count > described.maximumLength)
        return fail(path, Text::tr("expected at most %1, found %2").arg(described.maximumLength).arg(count));
    const Node node = nodeOf(*described.elementType);
    QJsonArray array;
    for (int i = 0; i < count; ++i)
    {
        QJsonObject element;
        // Only read, but element() is the same for reading and changing.
        if (!writeMembers(*described.elementType, node, objectType.element(const_cast<void*>(object), property, i),
                          elementPath(path, i), element))
            return false;
        array << element;
    }
    json = array;
    return true;
}

bool ObjectFile::Private::writeMembers(const ObjectType& objectType, const Node& node, const void* object,
                                       const QString& path, QJsonObject& json)
{
    for (auto it = node.members.begin(); it != node.members.end(); ++it)
    {
        const QString place = memberPath(path, it.key());
        QJsonObject inside;
        QJsonValue value;
        if (it->property < 0 ? !writeMembers(objectType, *it, object, place, inside)
                             : !writeProperty(objectType, it->property, object, place, value))
            return false;
        json.insert(it.key(), it->property < 0 ? QJsonValue(inside) : value);
    }
    return true;
}

bool ObjectFile::Private::toJson(const void* object, QJsonObject& target)
{
    QJsonObject json;
    if (!type)
        fail({}, Text::tr("the object has no description"));
    else if (writeMembers(*type, nodeOf(*type), object, {}, json))
    {
        for (auto it = header.constBegin(); it != header.constEnd(); ++it)
        {
            if (json.contains(it.key()))
                fail(it.key(), Text::tr("both a property and a member of the header"));
            json.insert(it.key(), it.value());
        }
        if (treatment == UnknownMembers::Keep)
            merge(json, kept);
    }
    if (!error.isEmpty())
        return false;
    target = json;
    return true;
}

std::optional<QByteArray> ObjectFile::Private::contents(const QString& fileName, QString& problem) const
{
    if (QFileInfo(fileName).isDir())
    {
        problem = Text::tr("is a directory, expected a file");
        return std::nullopt;
    }
    QFile file(fileName);
    QByteArray contents;
    if (file.open(QIODevice::ReadOnly))
    {
        // Devices and pipes do not report a size. Read in pieces, as memory for a piece is allocated at once.
        constexpr qint64 Piece = qint64(64) * 1024;
        for (QByteArray more = file.read(Piece); !more.isEmpty() && contents.size() <= maximumSize;
             more = file.read(Piece))
            contents += more;
    }
    if (file.error() != QFileDevice::NoError)
        problem = Text::tr("cannot be read: %1").arg(file.errorString());
    else if (contents.size() > maximumSize)
        problem = Text::tr("has more than %1 bytes").arg(maximumSize);
    if (!problem.isEmpty())
        return std::nullopt;
    return contents;
}

// Puts the file name before the error.
bool ObjectFile::Private::named(const QString& fileName, bool succeeded)
{
    if (!succeeded)
        error.prepend(QDir::toNativeSeparators(fileName) +
                      (errorHasPlace ? QStringLiteral(":") : QStringLiteral(": ")));
    return succeeded;
}

ObjectFile::ObjectFile(std::shared_ptr<const ObjectType> type) : d(new Private)
{
    d->type = std::move(type);
}

ObjectFile::~ObjectFile() = default;

bool ObjectFile::read(const QString& fileName, void* object)
{
    d->begin();
    const std::optional<QByteArray> contents = d->contents(fileName, d->error);
    return d->named(fileName, contents && fromBytes(*contents, object));
}

bool ObjectFile::fromBytes(const QByteArray& contents, void* object)
{
    d->begin();
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(contents, &parseError);
    if (parseError.error == QJsonParseError::NoError && document.isObject())
        return d->fromJson(document.object(), object);
    d->errorHasPlace = true;
    if (parseError.error != QJsonParseError::NoError)
        return d->fail(lineAndColumn(contents, parseError.offset),
                       Text::tr("not valid JSON, %1").arg(parseError.errorString()));
    return d->fail(QStringLiteral("1:1"), Text::tr("expected an object, found an array"));
}

bool ObjectFile::fromJson(const QJsonObject& json, void* object)
{
    d->begin();
    return d->fromJson(json, object);
}

bool ObjectFile::write(const QString& fileName, const void* object)
{
    QJsonObject json;
    if (!toJson(object, &json))
    {
        d->error = Text::tr("not saved, %1").arg(d->error);
        return d->named(fileName, false);
    }
    const QByteArray contents = QJsonDocument(json).toJson();
    QSaveFile file(fileName);
    if (contents.size() > d->maximumSize)
        d->error = Text::tr("not saved, has more than %1 bytes").arg(d->maximumSize);
    else if (const QString reason = whyNotReplaced(fileName); !reason.isEmpty())
        d->error = reason;
    else if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || !writeAll(file, contents) || !file.commit())
        d->error = Text::tr("cannot be written: %1").arg(file.errorString());
    return d->named(fileName, d->error.isEmpty());
}

bool ObjectFile::toJson(const void* object, QJsonObject* json)
{
    d->begin();
    return d->toJson(object, *json);
}

QString ObjectFile::errorString() const
{
    return d->error;
}

QStringList ObjectFile::warnings() const
{
    return d->warnings;
}

ObjectFile::UnknownMembers ObjectFile::unknownMembers() const
{
    return d->treatment;
}

void ObjectFile::setUnknownMembers(UnknownMembers treatment)
{
    d->treatment = treatment;
}

QJsonObject ObjectFile::header() const
{
    return d->header;
}

void ObjectFile::setHeader(const QJsonObject& header)
{
    d->header = header;
}

void ObjectFile::setFileNames(std::function<QString(const QString& inFile)> read,
                              std::function<QString(const QString& inObject)> write)
{
    d->readName = std::move(read);
    d->writeName = std::move(write);
}

qint64 ObjectFile::maximumSize() const
{
    return d->maximumSize;
}

void ObjectFile::setMaximumSize(qint64 bytes)
{
    d->maximumSize = std::max<qint64>(bytes, 1);
}
} // namespace orvek::host
