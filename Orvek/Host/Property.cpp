#include <Orvek/Host/Property.h>

#include <Orvek/Host/PropertyValue.h>

namespace orvek::host
{
QString Property::displayTitle() const
{
    return title.isEmpty() ? inWords(name.mid(name.lastIndexOf(QLatin1Char('.')) + 1)) : title;
}

QString Property::choiceTitle(int value) const
{
    for (const PropertyChoice& choice : choices)
    {
        if (choice.value == value)
            return choice.title;
    }
    return {};
}
} // namespace orvek::host
