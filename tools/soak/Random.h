#pragma once

#include <QtCore/QLocale>
#include <QtCore/QMetaProperty>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtGui/QCursor>
#include <QtGui/QFont>
#include <QtGui/QPalette>
#include <QtGui/QVector3D>
#include <QtWidgets/QWidget>

#include <limits>

// Random values, many of them extreme. A seed gives the same ones on every machine.
class Random
{
public:
    explicit Random(quint64 seed) : m_state(seed) {}
    quint64 next()
    {
        m_state += 0x9e3779b97f4a7c15ULL;
        quint64 z = m_state;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
        return z ^ (z >> 31);
    }
    int below(int count) { return static_cast<int>(next() % static_cast<quint64>(qMax(count, 1))); }
    bool once(int in) { return below(in) == 0; }
    template <typename List>
    auto pick(const List& list)
    {
        return *(std::begin(list) + below(static_cast<int>(std::end(list) - std::begin(list))));
    }

private:
    quint64 m_state;
};

inline double anyDouble(Random& random)
{
    using Limits = std::numeric_limits<double>;
    static const double extremes[] = {0.0,
                                      -0.0,
                                      1.0,
                                      -1.0,
                                      0.5,
                                      100.0,
                                      Limits::quiet_NaN(),
                                      Limits::infinity(),
                                      -Limits::infinity(),
                                      Limits::max(),
                                      Limits::lowest(),
                                      Limits::min(),
                                      Limits::denorm_min(),
                                      1e308,
                                      1e-300,
                                      1e39,
                                      3e9,
                                      -3e9,
                                      1e-5};
    return random.once(3) ? random.below(2000) / 100.0 - 5.0 : random.pick(extremes);
}

inline int anyInt(Random& random)
{
    using Limits = std::numeric_limits<int>;
    static const int extremes[] = {0,
                                   1,
                                   -1,
                                   2,
                                   80,
                                   Limits::min(),
                                   Limits::min() + 1,
                                   Limits::max(),
                                   Limits::max() - 1,
                                   QWIDGETSIZE_MAX,
                                   QWIDGETSIZE_MAX + 1,
                                   -100,
                                   1 << 30,
                                   65536};
    return random.once(2) ? random.below(300) - 50 : random.pick(extremes);
}

inline QString anyString(Random& random)
{
    static const QString texts[] = {QString(),
                                    QStringLiteral("a"),
                                    QStringLiteral("Gr\u00f6\u00dfe"),
                                    QStringLiteral("%1 %2 %n %"),
                                    QString(5000, QLatin1Char('W')),
                                    QStringLiteral("<b>bold</b>&amp;"),
                                    QStringLiteral("&File && Edit &"),
                                    QString(QChar(0xd800)),
                                    QString(QChar(0)) + QLatin1Char('x'),
                                    QStringLiteral("\u202e\u05d0\u05d1 1"),
                                    QStringLiteral("e\u0301\u0301\u0301\u0301"),
                                    QStringLiteral("two\nlines\ttab"),
                                    QStringLiteral("1e400"),
                                    QStringLiteral("nan"),
                                    QStringLiteral("-inf"),
                                    QStringLiteral("0x10"),
                                    QStringLiteral("1,5"),
                                    QStringLiteral("99999999999999999999"),
                                    QStringLiteral("-2147483648"),
                                    QStringLiteral(" 0.25 "),
                                    QStringLiteral("1e-320"),
                                    QStringLiteral("QAccordion {"),
                                    QStringLiteral("label"),
                                    QStringLiteral("title")};
    return random.once(4) ? QString::number(random.below(3000) / 100.0 - 10.0) : random.pick(texts);
}

inline QVector3D anyVector(Random& random)
{
    const auto component = [&random]
    {
        return random.pick(
            std::initializer_list<float>{0.F, 1.F, -1.F, 1e-45F, 3.4e38F, std::numeric_limits<float>::infinity(),
                                         std::numeric_limits<float>::quiet_NaN(), float(random.below(100))});
    };
    const float x = component();
    const float y = component();
    return {x, y, component()};
}

inline QVariant anyVariant(Random& random)
{
    switch (random.below(7))
    {
    case 0:
        return QVariant();
    case 1:
        return anyString(random);
    case 2:
        return anyInt(random);
    case 3:
        return QStringList(anyString(random));
    case 4:
        return QVariant::fromValue(anyVector(random));
    default:
        return anyDouble(random);
    }
}

inline QFont anyFont(Random& random)
{
    QFont font(random.pick(std::initializer_list<const char*>{"DejaVu Sans", "no such family", ""}));
    font.setPixelSize(1 + random.below(random.once(5) ? 200 : 30));
    font.setBold(random.once(3));
    return font;
}

inline QPalette anyPalette(Random& random)
{
    return {QColor::fromRgba(static_cast<QRgb>(random.next())), QColor::fromRgba(static_cast<QRgb>(random.next()))};
}

// Now and then a value without a name, within the bits that C++ guarantees for the type: code generated by moc accepts
// no more.
inline int anyOf(const QMetaEnum& type, Random& random)
{
    int bits = 0;
    for (int i = 0; i < type.keyCount(); ++i)
        bits |= qMax(type.value(i), 0);
    for (int shift = 1; shift < 32; shift *= 2)
        bits |= bits >> shift;
    return random.once(6) ? static_cast<int>(random.next()) & bits : type.value(random.below(type.keyCount()));
}

// A value of the property's type; invalid for a type that is not changed.
inline QVariant anyOf(const QMetaProperty& property, Random& random)
{
    if (property.isEnumType())
        return anyOf(property.enumerator(), random);
    switch (static_cast<int>(property.userType()))
    {
    case QMetaType::Bool:
        return random.once(2);
    case QMetaType::Int:
        return anyInt(random);
    case QMetaType::Double:
        return anyDouble(random);
    case QMetaType::QString:
        return anyString(random);
    case QMetaType::QVariant:
        return anyVariant(random);
    case QMetaType::QVector3D:
        return QVariant::fromValue(anyVector(random));
    case QMetaType::QStringList:
    {
        QStringList list;
        for (int i = random.below(5); i > 0; --i)
            list << anyString(random);
        return list;
    }
    case QMetaType::QFont:
        return anyFont(random);
    case QMetaType::QPalette:
        return anyPalette(random);
    case QMetaType::QLocale:
        return QLocale(random.once(2) ? QLocale::German : QLocale::Arabic);
    case QMetaType::QCursor:
        return QCursor(random.once(2) ? Qt::WaitCursor : Qt::BlankCursor);
    default:
        return {};
    }
}
