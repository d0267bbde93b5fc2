#include <Orvek/Host/ObjectType.h>

#include <Orvek/Host/PropertyValue.h>

#include <QtCore/QSet>
#include <QtGui/QColor>
#include <QtGui/QVector3D>

#include <cmath>
#include <limits>
#include <utility>

namespace orvek::host
{
namespace
{
// What is wrong with one property; texts without its name.
class Complaints
{
public:
    explicit Complaints(const Property& property) : m_property(property)
    {
        if (property.kind < PropertyKind::Number || property.kind > PropertyKind::List)
        {
            m_texts << QStringLiteral("unknown kind %1").arg(int(property.kind));
            return;
        }
        if (!(property.step >= 0) || std::isinf(property.step))
            m_texts << QStringLiteral("the step %1 is not a number of at least 0").arg(property.step);
        if (property.maximumLength < 0)
            m_texts << QStringLiteral("the maximum length %1 is below 0").arg(property.maximumLength);
        askRange();
        if (property.kind == PropertyKind::Choice)
            askChoices();
        if (property.kind == PropertyKind::List && !property.elementType)
            m_texts << QStringLiteral("a list without the type of its elements");
        // Otherwise it would only repeat the others.
        if (m_texts.isEmpty())
            askDefault();
    }

    const QStringList& texts() const { return m_texts; }

private:
    Q_DISABLE_COPY(Complaints)

    void askRange()
    {
        const PropertyKind kind = m_property.kind;
        const bool whole = kind == PropertyKind::Integer || kind == PropertyKind::PowerOfTwo;
        if (!whole && kind != PropertyKind::Number && kind != PropertyKind::Vector && kind != PropertyKind::Colour)
            return;
        const double minimum = m_property.minimum;
        const double maximum = m_property.maximum;
        if (std::isnan(minimum) || std::isnan(maximum))
            m_texts << QStringLiteral("an end of the range is not a number");
        else if (minimum > maximum)
            m_texts << QStringLiteral("the minimum %1 exceeds the maximum %2").arg(minimum).arg(maximum);
        if (m_property.logarithmic && !(minimum > 0))
            m_texts << QStringLiteral("a logarithmic range from %1, which is not above 0").arg(minimum);
        for (const double end : {minimum, maximum})
        {
            if (!whole)
                continue;
            if (!(std::abs(end) <= -double(std::numeric_limits<int>::min())) || end > std::numeric_limits<int>::max() ||
                end != std::floor(end))
                m_texts << QStringLiteral("the end %1 of the range is not a whole number").arg(end);
            else if (kind == PropertyKind::PowerOfTwo && (end < 1 || (int(end) & (int(end) - 1)) != 0))
                m_texts << QStringLiteral("the end %1 of the range is not a power of two").arg(end);
        }
    }

    void askChoices()
    {
        if (m_property.choices.isEmpty())
            m_texts << QStringLiteral("a choice without entries");
        QSet<QString> keys;
        QSet<int> values;
        for (const PropertyChoice& choice : m_property.choices)
        {
            if (choice.key.isEmpty())
                m_texts << QStringLiteral("the entry of the value %1 has no key").arg(choice.value);
            else if (keys.contains(choice.key))
                m_texts << QStringLiteral("two entries with the key \"%1\"").arg(choice.key);
            if (values.contains(choice.value))
                m_texts << QStringLiteral("two entries with the value %1").arg(choice.value);
            keys << choice.key;
            values << choice.value;
        }
    }

    void askDefault()
    {
        const QVariant& value = m_property.defaultValue;
        if (!value.isValid() || isValid(m_property, value))
            return;
        if (!hasType(m_property, value))
            m_texts << QStringLiteral("the default is of the type %1").arg(QLatin1String(value.typeName()));
        else if (m_property.kind == PropertyKind::Choice)
            m_texts << QStringLiteral("the default %1 is not one of the choices").arg(value.toInt());
        else if (m_property.kind == PropertyKind::Text || m_property.kind == PropertyKind::File)
            m_texts << QStringLiteral("the default has more than %1 characters").arg(m_property.maximumLength);
        else if (value.userType() == QMetaType::QColor)
            m_texts << QStringLiteral("the default is not opaque");
        else if (value.userType() == QMetaType::QVector3D)
            m_texts << QStringLiteral("the default is outside the range %1 to %2")
                           .arg(m_property.minimum)
                           .arg(m_property.maximum);
        else
            m_texts << QStringLiteral("the default %1 is outside the range %2 to %3%4")
                           .arg(value.toDouble())
                           .arg(m_property.minimum)
                           .arg(m_property.maximum)
                           .arg(m_property.kind == PropertyKind::PowerOfTwo ? QStringLiteral(" or not a power of two")
                                                                            : QString());
    }

    const Property& m_property;
    QStringList m_texts;
};

// A finite number in the range other than the value; NaN if there is none.
double otherNumber(const Property& property, double value)
{
    Property range = property;
    range.singlePrecision = true; // a double that is another float is another double, too
    const double nearest = std::isfinite(value) ? value : 0.0;
    const double candidates[] = {
        (nearest + (nearest - property.minimum < property.maximum - nearest ? property.maximum : property.minimum)) / 2,
        nearest + 1,
        nearest - 1,
        nearest * 0.5,
        property.minimum,
        property.maximum};
    for (const double candidate : candidates)
    {
        if (toFloat(candidate) != toFloat(value) && isInRange(range, candidate))
            return candidate;
    }
    return std::numeric_limits<double>::quiet_NaN();
}

// A valid value that differs in this component only; invalid if there is none.
QVariant otherValue(const Property& property, const QVariant& value, int component)
{
    switch (property.kind)
    {
    case PropertyKind::Number:
    {
        const double other = otherNumber(property, value.toDouble());
        return std::isnan(other) ? QVariant() : QVariant(other);
    }
    case PropertyKind::Integer:
        for (const double other : {value.toInt() + 1.0, value.toInt() - 1.0, property.minimum, property.maximum})
        {
            if (other != value.toInt() && isInRange(property, other))
                return int(other);
        }
        return {};
    case PropertyKind::PowerOfTwo:
        for (const double other : {value.toInt() * 2.0, value.toInt() / 2.0, property.minimum, property.maximum})
        {
            if (other != value.toInt() && isInRange(property, other) && isValid(property, int(other)))
                return int(other);
        }
        return {};
    case PropertyKind::Choice:
        for (const PropertyChoice& choice : property.choices)
        {
            if (choice.value != value.toInt())
                return choice.value;
        }
        return {};
    case PropertyKind::Vector:
    case PropertyKind::Colour:
    case PropertyKind::ColourWithAlpha:
        if (value.userType() == QMetaType::QColor)
        {
            QRgba64 colour = value.value<QColor>().rgba64();
            const auto changed = [](quint16 part) { return quint16(part ^ 0x8080U); };
            colour = qRgba64(component == 0 ? changed(colour.red()) : colour.red(),
                             component == 1 ? changed(colour.green()) : colour.green(),
                             component == 2 ? changed(colour.blue()) : colour.blue(),
                             component == 3 ? changed(colour.alpha()) : colour.alpha());
            return QColor(colour);
        }
        else
        {
            auto vector = value.value<QVector3D>();
            const double other = otherNumber(property, double(vector[component]));
            vector[component] = toFloat(other);
            return std::isnan(other) ? QVariant() : QVariant(vector);
        }
    case PropertyKind::Text:
    case PropertyKind::File:
    {
        const QString text = value.toString();
        const QString other = text + QLatin1Char('x');
        return isValid(property, other) ? other : text.isEmpty() ? QVariant() : QVariant(text.chopped(1));
    }
    case PropertyKind::Flag:
        return !value.toBool();
    case PropertyKind::List:
        break;
    }
    return {};
}

int componentCount(const Property& property)
{
    if (property.kind == PropertyKind::ColourWithAlpha)
        return 4;
    return property.kind == PropertyKind::Vector || property.kind == PropertyKind::Colour ? 3 : 1;
}
} // namespace

ObjectType::ObjectType(QString name, QVector<Property> properties) : m_name(std::move(name))
{
    setProperties(std::move(properties));
}

ObjectType::~ObjectType() = default;

void ObjectType::setProperties(QVector<Property> properties)
{
    m_properties = std::move(properties);
    m_indices.clear();
    // If names are equal, the first property is found.
    for (int i = m_properties.size() - 1; i >= 0; --i)
        m_indices.insert(m_properties.at(i).name, i);
}

int ObjectType::indexOf(const QString& name) const
{
    return m_indices.value(name, -1);
}

QString ObjectType::sectionTitle(int property) const
{
    const Property& described = m_properties.at(property);
    if (!described.section.isEmpty())
        return described.section;
    const QString nested = described.name.section(QLatin1Char('.'), -2, -2);
    return inWords(nested.isEmpty() ? m_name : nested);
}

unsigned ObjectType::differences(const QVector<void*>& objects, int property) const
{
    if (objects.size() < 2)
        return 0;
    unsigned different = 0;
    const Property& described = m_properties.at(property);
    if (described.kind == PropertyKind::List)
    {
        const int length = count(objects.first(), property);
        for (void* object : objects)
        {
            if (count(object, property) != length)
                return 1;
            for (int i = 0; i < length; ++i)
            {
                if (!described.elementType->equal(element(objects.first(), property, i), element(object, property, i)))
                    return 1;
            }
        }
        return 0;
    }
    const unsigned all = (1U << componentCount(described)) - 1;
    const QVariant first = read(objects.first(), property);
    for (int i = 1; i < objects.size() && different != all; ++i)
        different |= differentComponents(first, read(objects[i], property)) & all;
    return different;
}

int ObjectType::count(const void* object, int property) const
{
    Q_UNUSED(object)
    Q_UNUSED(property)
    return 0;
}

void* ObjectType::element(void* object, int property, int index) const
{
    Q_UNUSED(object)
    Q_UNUSED(property)
    Q_UNUSED(index)
    return nullptr;
}

bool ObjectType::resize(void* object, int property, int count) const
{
    Q_UNUSED(object)
    Q_UNUSED(property)
    Q_UNUSED(count)
    return false;
}

QObject* ObjectType::notifier(void* object, int property) const
{
    Q_UNUSED(object)
    Q_UNUSED(property)
    return nullptr;
}

QMetaMethod ObjectType::notifySignal(int property) const
{
    Q_UNUSED(property)
    return {};
}

QStringList ObjectType::errors() const
{
    QStringList errors;
    QSet<QString> names;
    QSet<QString> structs;
    for (int i = 0; i < m_properties.size(); ++i)
    {
        const Property& property = m_properties[i];
        const QStringList parts = property.name.split(QLatin1Char('.'));
        if (property.name.isEmpty())
            errors << QStringLiteral("%1: property %2 has no name").arg(m_name).arg(i);
        else if (parts.contains(QString()))
            errors << QStringLiteral("%1.%2: a part of the name is empty").arg(m_name, property.name);
        else if (names.contains(property.name))
            errors << QStringLiteral("%1.%2: two properties of this name").arg(m_name, property.name);
        names << property.name;
        for (int length = 1; length < parts.size(); ++length)
            structs << parts.mid(0, length).join(QLatin1Char('.'));
        const Complaints complaints(property);
        for (const QString& text : complaints.texts())
            errors << QStringLiteral("%1.%2: %3").arg(m_name, property.name, text);
    }
    for (const Property& property : m_properties)
    {
        if (structs.contains(property.name))
            errors << QStringLiteral("%1.%2: a property and a nested struct of this name").arg(m_name, property.name);
    }
    return errors + m_errors;
}

bool ObjectType::equal(const void* a, const void* b) const
{
    if (a == b)
        return true;
    // Only read, but element() is the same for reading and changing.
    const QVector<void*> both{const_cast<void*>(a), const_cast<void*>(b)};
    for (int i = 0; i < m_properties.size(); ++i)
    {
        if (m_properties[i].stored && differences(both, i) != 0)
            return false;
    }
    return true;
}

bool ObjectType::copy(const void* from, void* to) const
{
    if (from == to)
        return true;
    bool all = true;
    for (int i = 0; i < m_properties.size(); ++i)
    {
        const Property& property = m_properties[i];
        if (!property.stored)
            continue;
        if (property.kind != PropertyKind::List)
        {
            const QVariant value = read(from, i);
            // A value that cannot be written may already be there.
            all = (identical(read(to, i), value) || write(to, i, value)) && all;
            continue;
        }
        // Remaining elements keep what is not described.
        const int length = count(from, i);
        if (count(to, i) != length && !resize(to, i, length))
        {
            all = false;
            continue;
        }
        for (int j = 0; j < length; ++j)
            all = property.elementType->copy(element(const_cast<void*>(from), i, j), element(to, i, j)) && all;
    }
    return all;
}

QStringList ObjectType::changeEach(void* object, const std::function<void(const QString& path)>& visit) const
{
    QStringList unchanged;
    for (int i = 0; i < m_properties.size(); ++i)
    {
        const Property& property = m_properties[i];
        if (!property.stored)
            continue;
        if (property.kind != PropertyKind::List)
        {
            const QVariant old = read(object, i);
            const int components = componentCount(property);
            for (int component = 0; component < components; ++component)
            {
                const QString path =
                    components == 1 ? property.name : QStringLiteral("%1[%2]").arg(property.name).arg(component);
                const QVariant other = otherValue(property, old, component);
                if (!other.isValid() || !write(object, i, other))
                {
                    unchanged << path;
                    continue;
                }
                visit(path);
                write(object, i, old);
            }
            continue;
        }
        const int length = count(object, i);
        if ((property.maximumLength > 0 && length >= property.maximumLength) || !resize(object, i, length + 1))
            unchanged << property.name;
        else
        {
            visit(property.name);
            if (length > 0)
                resize(object, i, length);
        }
        for (int j = 0; j < count(object, i); ++j)
        {
            const QString path = QStringLiteral("%1[%2].").arg(property.name).arg(j);
            const QStringList inside = property.elementType->changeEach(
                element(object, i, j), [&](const QString& member) { visit(path + member); });
            for (const QString& member : inside)
                unchanged << path + member;
        }
        if (count(object, i) != length)
            resize(object, i, length);
    }
    return unchanged;
}
} // namespace orvek::host
