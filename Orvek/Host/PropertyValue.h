#pragma once

#include <Orvek/Host/Property.h>

#include <QtCore/QVariant>

class QColor;
class QVector3D;

// Values of properties: their types, ranges and components.
namespace orvek::host
{
// Turns "baseColour" into "Base Colour".
QString inWords(const QString& identifier);

// Whether the value has the type that ObjectType::read() returns for such a property.
bool hasType(const Property& property, const QVariant& value);
// Whether the property may have the value: of the right type, finite, within the range, one of the choices, a power of
// two, not too long.
bool isValid(const Property& property, const QVariant& value);
// Whether a number is finite and within the range. Floats are compared as floats, as they may not hold the ends
// exactly.
bool isInRange(const Property& property, double number);

// The nearest float; infinity beyond the largest.
float toFloat(double number);

// The components that differ in any bit, as bits like those of ObjectType::differences(); all if the types differ.
unsigned differentComponents(const QVariant& a, const QVariant& b);
unsigned differentComponents(const QVector3D& a, const QVector3D& b);
unsigned differentComponents(const QColor& a, const QColor& b);
} // namespace orvek::host
