#pragma once

#include <QtCore/QString>

#include <optional>

namespace orvek::host
{
//! The number of an arithmetic expression: "3*2", "1/3", "sqrt(2)", "2pi", with a decimal point. Empty if it is not an
//! expression or its result is not finite. Private.
std::optional<double> evaluate(const QString& text);

//! An edit relative to the current value: "+=2", "-=1/3", "*=2", "/=4". Private.
struct Relative
{
    char operation = '+'; // + - * /
    double operand = 0.0;

    double of(double value) const;
};
//! The operation and what follows its sign; empty if the text does not begin with one.
struct RelativeText
{
    char operation = '+';
    QString operand;
};
std::optional<RelativeText> relativeText(const QString& text);
} // namespace orvek::host
