#include <Orvek/Host/QObjectType.h>

#include <Orvek/Host/PropertyValue.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QMetaEnum>
#include <QtCore/QMetaProperty>
#include <QtCore/QSet>
#include <QtCore/QUrl>
#include <QtGui/QColor>
#include <QtGui/QVector3D>

#include <cmath>
#include <limits>
#include <optional>

namespace orvek::host
{
namespace
{
constexpr double Infinity = std::numeric_limits<double>::infinity();

// The local path, if that is equivalent to the URL.
QString textOf(const QUrl& url)
{
    const QString path = url.toLocalFile();
    return !path.isEmpty() && QUrl::fromLocalFile(path) == url ? path : url.toString(QUrl::FullyEncoded);
}

std::optional<QUrl> urlOf(const QString& text)
{
    const QUrl url = QDir::isAbsolutePath(text) ? QUrl::fromLocalFile(text) : QUrl(text, QUrl::StrictMode);
    if (!url.isValid() && !text.isEmpty())
        return std::nullopt;
    return url;
}

// A property with the values that this type can have; empty if it cannot be shown.
std::optional<Property> describedByType(const QMetaProperty& metaProperty)
{
    Property property;
    property.minimum = -Infinity;
    property.maximum = Infinity;
    const auto whole = [&property](double minimum, double maximum)
    {
        property.kind = PropertyKind::Integer;
        property.minimum = minimum;
        property.maximum = maximum;
    };
    if (metaProperty.isFlagType())
        return std::nullopt; // flags: several values at once
    if (metaProperty.isEnumType())
    {
        const QMetaEnum keys = metaProperty.enumerator();
        property.kind = PropertyKind::Choice;
        QSet<int> values;
        for (int i = 0; i < keys.keyCount(); ++i)
        {
            // If names share a value, the first one counts.
            if (values.contains(keys.value(i)))
                continue;
            values << keys.value(i);
            const QString key = QString::fromUtf8(keys.key(i));
            const QString title = QCoreApplication::translate(keys.scope(), keys.key(i));
            property.choices.append({key, title == key ? inWords(key) : title, keys.value(i)});
        }
        return property;
    }
    switch (metaProperty.userType())
    {
    case QMetaType::Float:
        property.singlePrecision = true;
        break;
    case QMetaType::Double:
        break;
    case QMetaType::Int:
        whole(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
        break;
    case QMetaType::Short:
        whole(std::numeric_limits<short>::min(), std::numeric_limits<short>::max());
        break;
    case QMetaType::UShort:
        whole(0, std::numeric_limits<ushort>::max());
        break;
    case QMetaType::SChar:
        whole(std::numeric_limits<signed char>::min(), std::numeric_limits<signed char>::max());
        break;
    case QMetaType::UChar:
        whole(0, std::numeric_limits<uchar>::max());
        break;
    case QMetaType::Bool:
        property.kind = PropertyKind::Flag;
        break;
    case QMetaType::QString:
        property.kind = PropertyKind::Text;
        break;
    case QMetaType::QUrl:
        property.kind = PropertyKind::File;
        break;
    case QMetaType::QVector3D:
        property.kind = PropertyKind::Vector;
        break;
    case QMetaType::QColor:
        property.kind = PropertyKind::ColourWithAlpha;
        break;
    default:
        return std::nullopt;
    }
    return property;
}

// The words of the class information about a property: "minimum=0; logarithmic". File dialog filters contain ";;", so
// only a single semicolon separates words.
class Words
{
public:
    Words(Property& property, const QMetaObject* speaker, const QMetaObject* metaObject, QStringList& mistakes)
        : m_property(property), m_speaker(speaker), m_metaObject(metaObject), m_mistakes(mistakes)
    {
    }

    bool isHidden() const { return m_hidden; }

    void apply(QString text)
    {
        text.replace(QLatin1String(";;"), QString(QChar(0)));
        const QStringList words = text.split(QLatin1Char(';'), Qt::SkipEmptyParts);
        for (QString word : words)
        {
            word.replace(QChar(0), QLatin1String(";;"));
            const int equals = word.indexOf(QLatin1Char('='));
            const QString key = word.left(equals).trimmed();
            const QString value = equals < 0 ? QString() : word.mid(equals + 1).trimmed();
            if (!key.isEmpty() && !applyText(key, value) && !applyNumber(key, value) &&
                !applyFlag(key, value, equals >= 0) && !applyRest(key, value))
                m_mistakes << QStringLiteral("unknown word \"%1\"").arg(key);
        }
    }

private:
    Q_DISABLE_COPY(Words)

    bool applyText(const QString& key, const QString& value)
    {
        const std::pair<const char*, QString Property::*> texts[] = {{"title", &Property::title},
                                                                     {"section", &Property::section},
                                                                     {"units", &Property::units},
                                                                     {"toolTip", &Property::toolTip},
                                                                     {"fileFilter", &Property::fileFilter}};
        for (const auto& [name, member] : texts)
        {
            if (key != QLatin1String(name))
                continue;
            m_property.*member = QCoreApplication::translate(m_speaker->className(), value.toUtf8().constData());
            return true;
        }
        return false;
    }

    bool applyNumber(const QString& key, const QString& value)
    {
        const std::pair<const char*, double Property::*> numbers[] = {
            {"minimum", &Property::minimum}, {"maximum", &Property::maximum}, {"step", &Property::step}};
        for (const auto& [name, member] : numbers)
        {
            if (key == QLatin1String(name))
            {
                m_property.*member = toNumber(key, value);
                return true;
            }
        }
        if (key == QLatin1String("maximumLength"))
            m_property.maximumLength = int(toNumber(key, value));
        return key == QLatin1String("maximumLength");
    }

    bool applyFlag(const QString& key, const QString& value, bool hasValue)
    {
        const std::pair<const char*, bool*> flags[] = {{"logarithmic", &m_property.logarithmic},
                                                       {"readOnly", &m_property.readOnly},
                                                       {"live", &m_property.live},
                                                       {"stored", &m_property.stored},
                                                       {"hidden", &m_hidden}};
        for (const auto& [name, flag] : flags)
        {
            if (key != QLatin1String(name))
                continue;
            *flag = !hasValue || value == QLatin1String("true");
            if (hasValue && value != QLatin1String("true") && value != QLatin1String("false"))
                m_mistakes << QStringLiteral("%1 is \"%2\", expected true or false").arg(key, value);
            return true;
        }
        return false;
    }

    bool applyRest(const QString& key, const QString& value)
    {
        if (key == QLatin1String("kind"))
            applyKind(value);
        else if (key == QLatin1String("default"))
            applyDefault(value);
        else if (key == QLatin1String("enabledWhen"))
            m_property.enabledWhen = condition(key, value);
        else if (key == QLatin1String("shownWhen"))
            m_property.shownWhen = condition(key, value);
        else
            return false;
        return true;
    }

    double toNumber(const QString& key, const QString& value)
    {
        bool isNumber = false;
        const double number = value.toDouble(&isNumber);
        if (!isNumber)
            m_mistakes << QStringLiteral("%1 is \"%2\", expected a number").arg(key, value);
        return number;
    }

    void applyKind(const QString& name)
    {
        PropertyKind& kind = m_property.kind;
        if (name == QLatin1String("powerOfTwo") && kind == PropertyKind::Integer)
        {
            kind = PropertyKind::PowerOfTwo;
            m_property.minimum = 1;
            m_property.maximum = 4096;
        }
        else if (name == QLatin1String("colour") && kind == PropertyKind::ColourWithAlpha)
            kind = PropertyKind::Colour;
        else if (name == QLatin1String("colour") && kind == PropertyKind::Vector)
        {
            kind = PropertyKind::Colour;
            m_property.minimum = 0;
            m_property.maximum = 1;
        }
        else if (name == QLatin1String("file") && kind == PropertyKind::Text)
            kind = PropertyKind::File;
        else
            m_mistakes << QStringLiteral("the kind \"%1\" is unknown, or not for the type of the property").arg(name);
    }

    void applyDefault(const QString& text)
    {
        const QStringList numbers = text.split(QLatin1Char(','));
        switch (m_property.kind)
        {
        case PropertyKind::Number:
            m_property.defaultValue = toNumber(QStringLiteral("default"), text);
            return;
        case PropertyKind::Integer:
        case PropertyKind::PowerOfTwo:
            m_property.defaultValue = int(toNumber(QStringLiteral("default"), text));
            return;
        case PropertyKind::Flag:
            m_property.defaultValue = text == QLatin1String("true");
            if (text != QLatin1String("true") && text != QLatin1String("false"))
                m_mistakes << QStringLiteral("default is \"%1\", expected true or false").arg(text);
            return;
        case PropertyKind::Choice:
            for (const PropertyChoice& choice : std::as_const(m_property.choices))
            {
                if (choice.key == text)
                {
                    m_property.defaultValue = choice.value;
                    return;
                }
            }
            break;
        case PropertyKind::Vector:
        case PropertyKind::Colour:
        case PropertyKind::ColourWithAlpha:
            if (QColor(text).isValid() && m_property.kind != PropertyKind::Vector)
            {
                m_property.defaultValue = QColor(text);
                return;
            }
            if (numbers.size() == 3)
            {
                QVector3D vector;
                for (int i = 0; i < 3; ++i)
                    vector[i] = float(toNumber(QStringLiteral("default"), numbers[i]));
                m_property.defaultValue = vector;
                return;
            }
            break;
        case PropertyKind::Text:
        case PropertyKind::File:
            m_property.defaultValue = text;
            return;
        case PropertyKind::List:
            break;
        }
        m_mistakes << QStringLiteral("default is \"%1\", which is not a value of the property").arg(text);
    }

    // "shadows" or "!shadows": the name of a bool property.
    std::function<bool(const void*)> condition(const QString& key, const QString& text)
    {
        const bool wanted = !text.startsWith(QLatin1Char('!'));
        const QByteArray name = text.mid(wanted ? 0 : 1).toUtf8();
        const QMetaProperty flag = m_metaObject->property(m_metaObject->indexOfProperty(name.constData()));
        if (!flag.isValid() || flag.userType() != QMetaType::Bool)
        {
            m_mistakes << QStringLiteral("%1 is \"%2\", expected the name of a flag").arg(key, text);
            return {};
        }
        return [flag, wanted](const void* object)
        { return flag.read(static_cast<const QObject*>(object)).toBool() == wanted; };
    }

    Property& m_property;
    const QMetaObject* const m_speaker;    // the class with the information
    const QMetaObject* const m_metaObject; // the class whose properties are listed
    QStringList& m_mistakes;
    bool m_hidden = false;
};

// The class that declares the class information with that index; its name is the context for translations.
const QMetaObject* speakerOf(const QMetaObject* metaObject, int classInfo)
{
    while (metaObject->superClass() && classInfo < metaObject->classInfoOffset())
        metaObject = metaObject->superClass();
    return metaObject;
}

QVariant normalised(const Property& property, const QMetaProperty& metaProperty, const QVariant& value)
{
    if (metaProperty.userType() == QMetaType::QUrl)
        return textOf(value.toUrl());
    switch (property.kind)
    {
    case PropertyKind::Number:
        return value.toDouble();
    case PropertyKind::Integer:
    case PropertyKind::PowerOfTwo:
    case PropertyKind::Choice:
        return value.toInt();
    default:
        return value;
    }
}
} // namespace

struct QObjectType::Private
{
    QVector<QMetaProperty> metaProperties; // one for each property
};

QObjectType::QObjectType(const QMetaObject* metaObject, const QMetaObject* first, const QObject* sample)
    : ObjectType(QString::fromUtf8(metaObject->className())), d(new Private)
{
    const QString prefix = QStringLiteral("property:");
    if (first && !metaObject->inherits(first))
        first = metaObject;
    QVector<Property> properties;
    for (int i = first ? first->propertyOffset() : 0; i < metaObject->propertyCount(); ++i)
    {
        const QMetaProperty metaProperty = metaObject->property(i);
        std::optional<Property> property = describedByType(metaProperty);
        if (!property || !metaProperty.isReadable())
            continue;
        property->name = QString::fromUtf8(metaProperty.name());
        property->readOnly = !metaProperty.isWritable();
        property->stored = metaProperty.isWritable() && metaProperty.isStored();
        // Base classes come first, so the derived class has the last word.
        QStringList mistakes;
        bool hidden = false;
        for (int j = 0; j < metaObject->classInfoCount(); ++j)
        {
            const QMetaClassInfo info = metaObject->classInfo(j);
            if (QString::fromUtf8(info.name()) != prefix + property->name)
                continue;
            Words words(*property, speakerOf(metaObject, j), metaObject, mistakes);
            words.apply(QString::fromUtf8(info.value()));
            hidden = hidden || words.isHidden();
        }
        for (const QString& mistake : std::as_const(mistakes))
            addError(QStringLiteral("%1.%2: %3").arg(name(), property->name, mistake));
        if (hidden)
            continue;
        if (sample && !property->defaultValue.isValid() && metaProperty.isWritable())
            property->defaultValue = normalised(*property, metaProperty, metaProperty.read(sample));
        properties.append(*property);
        d->metaProperties.append(metaProperty);
    }
    for (int j = 0; j < metaObject->classInfoCount(); ++j)
    {
        const QString key = QString::fromUtf8(metaObject->classInfo(j).name());
        if (!key.startsWith(prefix))
            continue;
        const int index = metaObject->indexOfProperty(key.mid(prefix.size()).toUtf8().constData());
        if (index < 0)
            addError(QStringLiteral("%1: class information about \"%2\", which is not a property")
                         .arg(name(), key.mid(prefix.size())));
        else if (!describedByType(metaObject->property(index)))
            addError(QStringLiteral("%1.%2: class information, but properties of the type %3 are left out")
                         .arg(name(), key.mid(prefix.size()), QLatin1String(metaObject->property(index).typeName())));
    }
    setProperties(properties);
}

QObjectType::~QObjectType() = default;

QVariant QObjectType::read(const void* object, int property) const
{
    const QMetaProperty& metaProperty = d->metaProperties.at(property);
    return normalised(properties().at(property), metaProperty, metaProperty.read(static_cast<const QObject*>(object)));
}

bool QObjectType::write(void* object, int property, const QVariant& value) const
{
    const QMetaProperty& metaProperty = d->metaProperties.at(property);
    if (!metaProperty.isWritable() || !hasType(properties().at(property), value))
        return false;
    auto* target = static_cast<QObject*>(object);
    switch (metaProperty.userType())
    {
    case QMetaType::Float:
        if (std::isfinite(value.toDouble()) && std::isinf(toFloat(value.toDouble())))
            return false;
        return metaProperty.write(target, toFloat(value.toDouble()));
    case QMetaType::QVector3D:
    case QMetaType::QColor:
        return value.userType() == metaProperty.userType() && metaProperty.write(target, value);
    case QMetaType::QUrl:
    {
        const std::optional<QUrl> url = urlOf(value.toString());
        return url && metaProperty.write(target, *url);
    }
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::SChar:
    case QMetaType::UChar:
    {
        const std::optional<Property> range = describedByType(metaProperty);
        return value.toInt() >= range->minimum && value.toInt() <= range->maximum && metaProperty.write(target, value);
    }
    default:
        return metaProperty.write(target, value);
    }
}

QObject* QObjectType::notifier(void* object, int property) const
{
    return d->metaProperties.at(property).hasNotifySignal() ? static_cast<QObject*>(object) : nullptr;
}

QMetaMethod QObjectType::notifySignal(int property) const
{
    return d->metaProperties.at(property).notifySignal();
}
} // namespace orvek::host
