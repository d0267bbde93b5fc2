#include <Orvek/Host/PropertyValue.h>

#include <Orvek/Host/ObjectType.h>

#include <QtGui/QColor>
#include <QtGui/QVector3D>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

namespace orvek::host
{
namespace
{
template <typename T>
bool sameBits(T a, T b)
{
    using Bits = std::conditional_t<sizeof(T) == sizeof(quint32), quint32, quint64>;
    Bits first;
    Bits second;
    static_assert(sizeof(T) == sizeof(Bits));
    std::memcpy(&first, &a, sizeof a);
    std::memcpy(&second, &b, sizeof b);
    return first == second;
}

bool isPowerOfTwo(int value)
{
    return value > 0 && (value & (value - 1)) == 0;
}
} // namespace

QString inWords(const QString& identifier)
{
    QString words;
    for (int i = 0; i < identifier.size(); ++i)
    {
        const QChar character = identifier[i];
        const bool follows = !words.isEmpty() && words.back() != QLatin1Char(' ');
        if (character == QLatin1Char('_') || character.isSpace())
        {
            if (follows)
                words += QLatin1Char(' ');
            continue;
        }
        // In "HDRImage" the second word begins at the last capital.
        const bool nextIsSmall = i + 1 < identifier.size() && identifier[i + 1].isLower();
        if (follows && character.isUpper() && (!identifier[i - 1].isUpper() || nextIsSmall))
            words += QLatin1Char(' ');
        words += words.isEmpty() || words.back() == QLatin1Char(' ') ? character.toUpper() : character;
    }
    return words.trimmed();
}

bool hasType(const Property& property, const QVariant& value)
{
    const int type = value.userType();
    switch (property.kind)
    {
    case PropertyKind::Number:
        return type == QMetaType::Double;
    case PropertyKind::Integer:
    case PropertyKind::Choice:
    case PropertyKind::PowerOfTwo:
        return type == QMetaType::Int;
    case PropertyKind::Vector:
        return type == QMetaType::QVector3D;
    case PropertyKind::Colour:
        return type == QMetaType::QVector3D || type == QMetaType::QColor;
    case PropertyKind::ColourWithAlpha:
        return type == QMetaType::QColor;
    case PropertyKind::Text:
    case PropertyKind::File:
        return type == QMetaType::QString;
    case PropertyKind::Flag:
        return type == QMetaType::Bool;
    case PropertyKind::List:
        break;
    }
    return false;
}

float toFloat(double number)
{
    constexpr auto Largest = double(std::numeric_limits<float>::max());
    constexpr double RoundedDown = Largest * (1 + 1.0 / (1 << 25)); // halfway to the next float, if there were one
    if (std::abs(number) <= Largest || std::isnan(number))
        return float(number);
    const double nearest = std::abs(number) < RoundedDown ? Largest : std::numeric_limits<double>::infinity();
    return float(std::copysign(nearest, number));
}

bool isInRange(const Property& property, double number)
{
    if (property.singlePrecision)
        return std::isfinite(toFloat(number)) && toFloat(number) >= toFloat(property.minimum) &&
               toFloat(number) <= toFloat(property.maximum);
    return std::isfinite(number) && number >= property.minimum && number <= property.maximum;
}

bool isValid(const Property& property, const QVariant& value)
{
    if (!hasType(property, value))
        return false;
    switch (property.kind)
    {
    case PropertyKind::Number:
        return isInRange(property, value.toDouble());
    case PropertyKind::Integer:
        return isInRange(property, value.toInt());
    case PropertyKind::PowerOfTwo:
        return isInRange(property, value.toInt()) && isPowerOfTwo(value.toInt());
    case PropertyKind::Choice:
        return std::any_of(property.choices.begin(), property.choices.end(),
                           [&](const PropertyChoice& choice) { return choice.value == value.toInt(); });
    case PropertyKind::Colour:
        if (value.userType() == QMetaType::QColor)
            return !value.value<QColor>().isValid() || value.value<QColor>().alpha() == 255;
        Q_FALLTHROUGH();
    case PropertyKind::Vector:
    {
        Property component = property;
        component.singlePrecision = true;
        const auto vector = value.value<QVector3D>();
        return isInRange(component, vector.x()) && isInRange(component, vector.y()) && isInRange(component, vector.z());
    }
    case PropertyKind::Text:
    case PropertyKind::File:
        return property.maximumLength == 0 || value.toString().size() <= property.maximumLength;
    case PropertyKind::ColourWithAlpha:
    case PropertyKind::Flag:
    case PropertyKind::List:
        break;
    }
    return true;
}

unsigned differentComponents(const QVector3D& a, const QVector3D& b)
{
    unsigned different = 0;
    for (int i = 0; i < 3; ++i)
        different |= unsigned(!sameBits(float(a[i]), float(b[i]))) << i;
    return different;
}

unsigned differentComponents(const QColor& a, const QColor& b)
{
    if (a.isValid() != b.isValid())
        return 15;
    // Components of this colour model are floats and may exceed 1.
    if (a.spec() == QColor::ExtendedRgb || b.spec() == QColor::ExtendedRgb)
    {
        if (a.spec() != b.spec())
            return 15;
        return unsigned(!sameBits(a.redF(), b.redF())) | unsigned(!sameBits(a.greenF(), b.greenF())) << 1 |
               unsigned(!sameBits(a.blueF(), b.blueF())) << 2 | unsigned(!sameBits(a.alphaF(), b.alphaF())) << 3;
    }
    const QRgba64 first = a.rgba64();
    const QRgba64 second = b.rgba64();
    return unsigned(first.red() != second.red()) | unsigned(first.green() != second.green()) << 1 |
           unsigned(first.blue() != second.blue()) << 2 | unsigned(first.alpha() != second.alpha()) << 3;
}

unsigned differentComponents(const QVariant& a, const QVariant& b)
{
    if (a.userType() != b.userType())
        return 15;
    switch (a.userType())
    {
    case QMetaType::Double:
        return unsigned(!sameBits(a.toDouble(), b.toDouble()));
    case QMetaType::QVector3D:
        return differentComponents(a.value<QVector3D>(), b.value<QVector3D>());
    case QMetaType::QColor:
        return differentComponents(a.value<QColor>(), b.value<QColor>());
    default:
        return unsigned(a != b);
    }
}

bool identical(const QVariant& a, const QVariant& b)
{
    return differentComponents(a, b) == 0;
}
} // namespace orvek::host
