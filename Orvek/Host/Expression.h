#pragma once

#include <QtCore/QString>

#include <optional>

namespace orvek::host
{
//! The number of an arithmetic expression: "3*2", "1/3", "sqrt(2)", "2pi", with the point of the C locale. Nothing if
//! it is not an expression or its result is not finite. Private.
std::optional<double> evaluate(const QString& text);
} // namespace orvek::host
