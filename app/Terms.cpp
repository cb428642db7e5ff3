#include "app/Terms.h"

#include "app/Usage.h"

#include <QStringList>

#include <optional>

namespace nuvo {
namespace {

bool isOperator(QChar c)
{
    return c == u'/' || c == u'*' || c == u'^';
}

/// A decimal number, as the definitions convert it. "INF" and "NAN" are left to the fields: INF is inflation to some.
bool isNumber(QStringView text, bool commaToo = false)
{
    const qsizetype size = text.size();
    qsizetype at = 0;
    const auto skipSign = [&] {
        if (at < size && (text[at] == u'+' || text[at] == u'-'))
            ++at;
    };
    const auto skipDigits = [&] {
        const qsizetype from = at;
        while (at < size && text[at] >= u'0' && text[at] <= u'9')
            ++at;
        return at - from;
    };
    skipSign();
    qsizetype digits = skipDigits();
    if (at < size && (text[at] == u'.' || (commaToo && text[at] == u','))) {
        ++at;
        digits += skipDigits();
    }
    if (digits == 0)
        return false;
    if (at < size && (text[at] == u'e' || text[at] == u'E')) {
        ++at;
        skipSign();
        if (skipDigits() == 0)
            return false;
    }
    return at == size;
}

/// The position behind a name in double quotes that begins at `from`; -1 when it is never closed.
qsizetype behindQuoted(QStringView text, qsizetype from)
{
    for (qsizetype at = from + 1; at < text.size(); ++at) {
        if (text[at] != u'"')
            continue;
        if (at + 1 == text.size() || text[at + 1] != u'"')
            return at + 1;
        ++at;
    }
    return -1;
}

/// The name that an operand stands for, or nothing when it is none.
std::optional<QString> field(QStringView operand)
{
    operand = operand.trimmed();
    if (operand.startsWith(u'"')) {
        if (behindQuoted(operand, 0) != operand.size())
            return std::nullopt;
        QString name = operand.sliced(1, operand.size() - 2).toString();
        return name.replace(QStringLiteral("\"\""), QStringLiteral("\""));
    }
    // A comma is no decimal sign here, yet a number that holds one is not taken for a name: "GNP/1,5" asks for a
    // division by a number.
    if (operand.isEmpty() || isNumber(operand, true) || operand.startsWith(u"Ln("))
        return std::nullopt;
    for (const QChar c : operand) {
        if (isOperator(c))
            return std::nullopt;
    }
    return operand.toString();
}

/// The text between "(" and ")" when these are the first and the last character.
std::optional<QStringView> inParentheses(QStringView text)
{
    if (text.size() < 2 || !text.startsWith(u'(') || !text.endsWith(u')'))
        return std::nullopt;
    return text.sliced(1, text.size() - 2);
}

/// A text parted at its operators. A quote opens only where an operand begins, alone or in parentheses: within a name
/// it is a character like any other.
struct Pieces
{
    QList<QStringView> operands; ///< one more than operators, blanks around them removed
    QString operators;
};

Pieces split(QStringView text)
{
    Pieces pieces;
    qsizetype from = 0;
    bool begins = true;
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar c = text[at];
        if (c == u'"' && begins) {
            const qsizetype behind = behindQuoted(text, at);
            if (behind < 0)
                break; // field() refuses what is left
            at = behind - 1;
            begins = false;
        } else if (isOperator(c)) {
            pieces.operands.append(text.sliced(from, at - from).trimmed());
            pieces.operators.append(c);
            from = at + 1;
            begins = true;
        } else if (!c.isSpace() && c != u'(') {
            begins = false;
        }
    }
    pieces.operands.append(text.sliced(from).trimmed());
    return pieces;
}

Term ofField(const char16_t *transformation, const QString &name)
{
    Term term;
    term.transformation = QString::fromUtf16(transformation);
    term.field1 = name;
    return term;
}

/// The rows that controls and responses share, and those of one kind alone; nothing when none fits.
std::optional<Term> parse(QStringView text, bool control)
{
    if (const auto name = field(text))
        return ofField(u"None", *name);
    if (text.startsWith(u"Ln(")) {
        const auto inner = inParentheses(text.sliced(2));
        const auto name = inner ? field(*inner) : std::nullopt;
        return name ? std::optional(ofField(u"Log", *name)) : std::nullopt;
    }

    const Pieces pieces = split(text);
    const QStringView left = pieces.operands.first();
    const QStringView right = pieces.operands.last();
    if (pieces.operators == u"/" && left == u"1") {
        // The response's inverse stands in parentheses, a control's does not.
        const auto inner = inParentheses(right);
        const bool fits = control ? !right.startsWith(u'(') : inner.has_value();
        const auto name = fits ? field(control ? right : *inner) : std::nullopt;
        return name ? std::optional(ofField(u"Inverse", *name)) : std::nullopt;
    }
    const auto name = field(left);
    if (!name)
        return std::nullopt;
    if (pieces.operators == u"/" && isNumber(right)) {
        Term term = ofField(u"Scale", *name);
        term.scaleFactor = right.toString();
        return term;
    }
    if (!control)
        return std::nullopt;
    if (pieces.operators == u"^/" && pieces.operands[1] == u"1" && right == u"2")
        return ofField(u"Sqrt", *name);
    if (pieces.operators == u"^" && isNumber(right)) {
        Term term = ofField(u"Power", *name);
        term.exponent = right.toString();
        return term;
    }
    if (pieces.operators == u"*" || pieces.operators == u"/") {
        if (const auto second = field(right)) {
            Term term = ofField(pieces.operators == u"*" ? u"Product" : u"Quotient", *name);
            term.field2 = *second;
            return term;
        }
    }
    return std::nullopt;
}

} // namespace

Term parseControl(const QString &text)
{
    if (text.isEmpty())
        return ofField(u"Undefined", QString());
    if (const auto term = parse(QStringView(text).trimmed(), true))
        return *term;
    throw UsageError(
        QStringLiteral("\"%1\" is no term for a control variable: F, Ln(F), 1/F, F^1/2, F^K, F/N, F*G or "
                       "F/G, where F and G are fields and K and N are numbers; a field's name that holds "
                       "an operator or is a number stands in double quotes.")
            .arg(text));
}

Term parseResponse(const QString &text)
{
    if (const auto term = parse(QStringView(text).trimmed(), false))
        return *term;
    throw UsageError(QStringLiteral("\"%1\" is no term for the response: F, Ln(F), 1/(F) or F/N, where F is a field "
                                    "and N is a number; a field's name that holds an operator or is a number stands "
                                    "in double quotes.")
                         .arg(text));
}

} // namespace nuvo
