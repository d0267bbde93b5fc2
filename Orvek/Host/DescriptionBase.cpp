#include <Orvek/Host/DescriptionBase.h>

#include <Orvek/Host/PropertyValue.h>

#include <QtCore/QDebug>
#include <QtGui/QColor>
#include <QtGui/QVector3D>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <utility>

namespace orvek::host
{
namespace
{
using Storage = DescriptionBase::Storage;

// How a property's value is stored in the struct.
struct Member
{
    size_t offset = 0;
    Storage storage = Storage::Float;
    DescriptionBase::ListOperations list = {};
    QVariant sampled; // the default if none is set
};

const void* at(const void* object, size_t offset)
{
    return static_cast<const char*>(object) + offset;
}

void* at(void* object, size_t offset)
{
    return static_cast<char*>(object) + offset;
}

template <typename T>
const T& as(const void* member)
{
    return *static_cast<const T*>(member);
}

// Reads only the bytes, as an enumerator has a type of its own.
template <typename T>
T bytesAs(const void* member)
{
    T value;
    std::memcpy(&value, member, sizeof value);
    return value;
}

template <typename T>
bool storeWhole(void* member, int value)
{
    if (value < int(std::numeric_limits<T>::min()) || value > int(std::numeric_limits<T>::max()))
        return false;
    const T stored = static_cast<T>(value);
    std::memcpy(member, &stored, sizeof stored);
    return true;
}

QVariant load(const void* member, Storage storage)
{
    switch (storage)
    {
    case Storage::Float:
        return double(as<float>(member));
    case Storage::Double:
        return as<double>(member);
    case Storage::Int8:
        return int(bytesAs<std::int8_t>(member));
    case Storage::UInt8:
        return int(bytesAs<std::uint8_t>(member));
    case Storage::Int16:
        return int(bytesAs<std::int16_t>(member));
    case Storage::UInt16:
        return int(bytesAs<std::uint16_t>(member));
    case Storage::Int32:
        return int(bytesAs<std::int32_t>(member));
    case Storage::Bool:
        return as<bool>(member);
    case Storage::Vector:
        return as<QVector3D>(member);
    case Storage::Colour:
        return as<QColor>(member);
    case Storage::Text:
        return as<QString>(member);
    case Storage::Utf8:
        return QString::fromStdString(as<std::string>(member));
    case Storage::List:
        break;
    }
    return {};
}

bool store(void* member, Storage storage, const QVariant& value)
{
    switch (storage)
    {
    case Storage::Float:
        // A finite number beyond the largest float has no float.
        if (std::isfinite(value.toDouble()) && std::isinf(toFloat(value.toDouble())))
            return false;
        *static_cast<float*>(member) = toFloat(value.toDouble());
        return true;
    case Storage::Double:
        *static_cast<double*>(member) = value.toDouble();
        return true;
    case Storage::Int8:
        return storeWhole<std::int8_t>(member, value.toInt());
    case Storage::UInt8:
        return storeWhole<std::uint8_t>(member, value.toInt());
    case Storage::Int16:
        return storeWhole<std::int16_t>(member, value.toInt());
    case Storage::UInt16:
        return storeWhole<std::uint16_t>(member, value.toInt());
    case Storage::Int32:
        return storeWhole<std::int32_t>(member, value.toInt());
    case Storage::Bool:
        *static_cast<bool*>(member) = value.toBool();
        return true;
    case Storage::Vector:
        if (value.userType() != QMetaType::QVector3D)
            return false;
        *static_cast<QVector3D*>(member) = value.value<QVector3D>();
        return true;
    case Storage::Colour:
        if (value.userType() != QMetaType::QColor)
            return false;
        *static_cast<QColor*>(member) = value.value<QColor>();
        return true;
    case Storage::Text:
        *static_cast<QString*>(member) = value.toString();
        return true;
    case Storage::Utf8:
        *static_cast<std::string*>(member) = value.toString().toStdString();
        return true;
    case Storage::List:
        break;
    }
    return false;
}

// Which components differ from the first object's. Stops once all do.
template <typename Compare>
unsigned gather(const QVector<void*>& objects, size_t offset, unsigned all, Compare compare)
{
    unsigned different = 0;
    const void* first = at(objects.first(), offset);
    for (void* object : objects)
    {
        different |= compare(first, at(object, offset));
        if (different == all)
            break;
    }
    return different;
}

template <typename T>
unsigned gatherBits(const QVector<void*>& objects, size_t offset)
{
    return gather(objects, offset, 1,
                  [](const void* a, const void* b) { return unsigned(bytesAs<T>(a) != bytesAs<T>(b)); });
}

template <typename T>
unsigned gatherValues(const QVector<void*>& objects, size_t offset)
{
    return gather(objects, offset, 1, [](const void* a, const void* b) { return unsigned(as<T>(a) != as<T>(b)); });
}

template <typename T>
unsigned gatherComponents(const QVector<void*>& objects, size_t offset, unsigned all)
{
    return gather(objects, offset, all,
                  [](const void* a, const void* b) { return differentComponents(as<T>(a), as<T>(b)); }) &
           all;
}

class StructType final : public ObjectType
{
public:
    StructType(const QString& name, QByteArray structType, const QVector<Property>& properties, QVector<Member> members,
               const QStringList& errors)
        : ObjectType(name, properties), m_structType(structType), m_members(std::move(members))
    {
        for (const QString& error : errors)
            addError(error);
        for (int i = 0; i < properties.size(); ++i)
        {
            if (!holds(m_members[i].storage, properties[i]))
                addError(QStringLiteral("%1.%2: the range %3 to %4 does not fit the member's type")
                             .arg(name, properties[i].name)
                             .arg(properties[i].minimum)
                             .arg(properties[i].maximum));
        }
    }

    QByteArray structType() const { return m_structType; }
    const Member& member(int property) const { return m_members[property]; }

    QVariant read(const void* object, int property) const override
    {
        const Member& member = m_members[property];
        return load(at(object, member.offset), member.storage);
    }

    bool write(void* object, int property, const QVariant& value) const override
    {
        const Member& member = m_members[property];
        return hasType(properties()[property], value) && store(at(object, member.offset), member.storage, value);
    }

    unsigned differences(const QVector<void*>& objects, int property) const override
    {
        if (objects.size() < 2)
            return 0;
        const size_t offset = m_members[property].offset;
        const bool hasAlpha = properties()[property].kind == PropertyKind::ColourWithAlpha;
        switch (m_members[property].storage)
        {
        case Storage::Float:
        case Storage::Int32:
            return gatherBits<std::uint32_t>(objects, offset);
        case Storage::Double:
            return gatherBits<std::uint64_t>(objects, offset);
        case Storage::Int8:
        case Storage::UInt8:
        case Storage::Bool:
            return gatherBits<std::uint8_t>(objects, offset);
        case Storage::Int16:
        case Storage::UInt16:
            return gatherBits<std::uint16_t>(objects, offset);
        case Storage::Vector:
            return gatherComponents<QVector3D>(objects, offset, 7);
        case Storage::Colour:
            return gatherComponents<QColor>(objects, offset, hasAlpha ? 15 : 7);
        case Storage::Text:
            return gatherValues<QString>(objects, offset);
        case Storage::Utf8:
            return gatherValues<std::string>(objects, offset);
        case Storage::List:
            break;
        }
        return ObjectType::differences(objects, property);
    }

    int count(const void* object, int property) const override
    {
        const Member& member = m_members[property];
        return member.list.count ? member.list.count(at(object, member.offset)) : 0;
    }

    void* element(void* object, int property, int index) const override
    {
        const Member& member = m_members[property];
        return member.list.element ? member.list.element(at(object, member.offset), index) : nullptr;
    }

    bool resize(void* object, int property, int count) const override
    {
        const Member& member = m_members[property];
        if (!member.list.resize || count < 0)
            return false;
        member.list.resize(at(object, member.offset), count);
        return true;
    }

private:
    static bool holds(Storage storage, const Property& property)
    {
        const auto within = [&](double minimum, double maximum) {
            return property.kind == PropertyKind::Choice ||
                   (property.minimum >= minimum && property.maximum <= maximum);
        };
        switch (storage)
        {
        case Storage::Int8:
            return within(INT8_MIN, INT8_MAX);
        case Storage::UInt8:
            return within(0, UINT8_MAX);
        case Storage::Int16:
            return within(INT16_MIN, INT16_MAX);
        case Storage::UInt16:
            return within(0, UINT16_MAX);
        default:
            return true;
        }
    }

    const QByteArray m_structType;
    const QVector<Member> m_members;
};

Property propertyOf(PropertyKind kind, const QString& name, const QString& section)
{
    Property property;
    property.name = name;
    property.section = section;
    property.kind = kind;
    if (kind == PropertyKind::Integer)
        property.maximum = 100;
    else if (kind == PropertyKind::PowerOfTwo)
    {
        property.minimum = 1;
        property.maximum = 4096;
    }
    else if (kind == PropertyKind::Vector)
    {
        property.minimum = -std::numeric_limits<double>::infinity();
        property.maximum = std::numeric_limits<double>::infinity();
    }
    return property;
}

std::function<bool(const void*)> moved(const std::function<bool(const void*)>& condition, size_t offset)
{
    if (!condition)
        return {};
    return [condition, offset](const void* object) { return condition(at(object, offset)); };
}
} // namespace

struct DescriptionBase::Private
{
    std::shared_ptr<const StructType> make() const
    {
        return std::make_shared<StructType>(name, structType, properties, members, errors);
    }

    QString name;
    QByteArray structType;
    QString section;
    QVector<Property> properties;
    QVector<Member> members; // one for each property
    QStringList errors;
};

DescriptionBase::DescriptionBase(const QString& name, const char* structType)
    : d(new Private{name, structType, {}, {}, {}, {}})
{
}

DescriptionBase::~DescriptionBase() = default;

std::shared_ptr<const ObjectType> DescriptionBase::type() const
{
    std::shared_ptr<const StructType> type = d->make();
    const QStringList errors = type->errors();
    for (const QString& error : errors)
        qWarning().noquote() << error;
    if (!errors.isEmpty())
        return nullptr;
    return type;
}

QStringList DescriptionBase::errors() const
{
    return d->make()->errors();
}

Property& DescriptionBase::property(int index)
{
    return d->properties[index];
}

void DescriptionBase::setSection(const QString& title)
{
    d->section = title;
}

int DescriptionBase::add(PropertyKind kind, const char* name, const void* sample, size_t offset, Storage storage)
{
    Property property = propertyOf(kind, QString::fromUtf8(name), d->section);
    property.singlePrecision = storage == Storage::Float;
    property.defaultValue = load(at(sample, offset), storage);
    d->members.append({offset, storage, {}, property.defaultValue});
    d->properties.append(property);
    return d->properties.size() - 1;
}

int DescriptionBase::addList(const char* name, size_t offset, const ListOperations& operations,
                             const std::shared_ptr<const ObjectType>& elementType, const char* elementStruct)
{
    Property property = propertyOf(PropertyKind::List, QString::fromUtf8(name), d->section);
    property.elementType = elementType;
    // Types derived by an engine do not say which struct they are for.
    const auto* described = dynamic_cast<const StructType*>(elementType.get());
    if (described && described->structType() != elementStruct)
        d->errors << QStringLiteral("%1.%2: \"%3\" is the type of another struct")
                         .arg(d->name, property.name, described->name());
    d->members.append({offset, Storage::List, operations, {}});
    d->properties.append(property);
    return d->properties.size() - 1;
}

void DescriptionBase::addNested(const char* name, const void* sample, size_t offset,
                                const std::shared_ptr<const ObjectType>& type, const char* nestedStruct)
{
    const QString prefix = QString::fromUtf8(name);
    const auto* described = dynamic_cast<const StructType*>(type.get());
    if (!described || described->structType() != nestedStruct)
    {
        d->errors << QStringLiteral("%1.%2: %3")
                         .arg(d->name, prefix,
                              type ? QStringLiteral("\"%1\" is not the type of this struct").arg(type->name())
                                   : QStringLiteral("a struct without its type"));
        return;
    }
    for (int i = 0; i < described->properties().size(); ++i)
    {
        Property property = described->properties()[i];
        Member member = described->member(i);
        member.offset += offset;
        const bool isSampled = identical(property.defaultValue, member.sampled);
        member.sampled = load(at(sample, member.offset), member.storage);
        if (isSampled)
            property.defaultValue = member.sampled;
        property.name = prefix + QLatin1Char('.') + property.name;
        if (property.section.isEmpty())
            property.section = d->section;
        property.enabledWhen = moved(property.enabledWhen, offset);
        property.shownWhen = moved(property.shownWhen, offset);
        d->members.append(member);
        d->properties.append(property);
    }
}
} // namespace orvek::host
