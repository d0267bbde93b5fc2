#include <Orvek/Host/Expression.h>

#include <QtCore/QRegularExpression>

#include <muParser.h>

#include <algorithm>
#include <cmath>

namespace orvek::host
{
namespace
{
// muParser does not know products without a sign. A name before a parenthesis is a function.
QString withProductSigns(const QString& text)
{
    static const QRegularExpression token(
        QStringLiteral(R"((?<number>(\d+\.?\d*|\.\d+)(e[-+]?\d+)?)|(?<name>[a-z_]\w*)|\S)"),
        QRegularExpression::CaseInsensitiveOption);
    QString result;
    int end = 0;
    bool afterNumber = false;
    bool afterParenthesis = false;
    auto matches = token.globalMatch(text);
    while (matches.hasNext())
    {
        const QRegularExpressionMatch match = matches.next();
        const QString part = match.captured();
        const bool isNumber = !match.captured(QStringLiteral("number")).isEmpty();
        const bool opens = part == QLatin1String("(") || !match.captured(QStringLiteral("name")).isEmpty();
        result.append(text.constData() + end, int(match.capturedStart()) - end);
        if ((opens && (afterNumber || afterParenthesis)) || (isNumber && afterParenthesis))
            result += QLatin1Char('*');
        result += part;
        end = int(match.capturedEnd());
        afterNumber = isNumber;
        afterParenthesis = part == QLatin1String(")");
    }
    return result;
}
} // namespace

std::optional<double> evaluate(const QString& text)
{
    const bool isAscii = std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() < 128; });
    if (!isAscii || text.trimmed().isEmpty())
        return {};
    mu::string_type expression; // wide characters on some platforms
    const QString complete = withProductSigns(text);
    for (const QChar c : complete)
        expression += static_cast<mu::char_type>(c.unicode());
    try
    {
        mu::Parser parser;
        parser.DefineConst(_T("pi"), 3.14159265358979323846);
        parser.DefineConst(_T("e"), 2.71828182845904523536);
        parser.SetExpr(expression);
        const double result = parser.Eval();
        // "1,5" has two results, and only the last is returned.
        if (parser.GetNumResults() == 1 && std::isfinite(result))
            return result;
    }
    catch (const mu::ParserError&)
    {
        return {};
    }
    return {};
}

double Relative::of(double value) const
{
    switch (operation)
    {
    case '+':
        return value + operand;
    case '-':
        return value - operand;
    case '*':
        return value * operand;
    default:
        return value / operand;
    }
}

std::optional<RelativeText> relativeText(const QString& text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.size() < 3 || trimmed[1] != QLatin1Char('=') || !QStringLiteral("+-*/").contains(trimmed[0]))
        return {};
    return RelativeText{trimmed[0].toLatin1(), trimmed.mid(2).trimmed()};
}
} // namespace orvek::host
