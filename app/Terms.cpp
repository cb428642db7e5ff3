// SPDX-License-Identifier: MIT
#include "app/Terms.h"

#include "app/Usage.h"
#include "engine/Transformations.h"

#include <QStringBuilder>
#include <QStringList>

#include <optional>

namespace nuvo {
namespace {

constexpr QStringView logarithm = u"Ln(";

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
    if (operand.isEmpty() || isNumber(operand, true) || operand.startsWith(logarithm))
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

/// A text parted at its operators. A quote opens only where an operand begins, alone, in parentheses or behind "Ln(":
/// within a name it is a character like any other.
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
    for (qsizetype at = text.startsWith(logarithm) ? logarithm.size() : 0; at < text.size(); ++at) {
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

/// How the forms are written in messages: F and G are fields, K and N numbers.
QString formOf(const Transformation &transformation)
{
    static constexpr QStringView seconds[] = {u"", u"G", u"K", u"N"};
    return transformation.before % u"F" % transformation.behind % seconds[int(transformation.second)];
}

/// The name that stands where a form has its F.
std::optional<QString> firstField(QStringView operand, QStringView form)
{
    if (form == u"F")
        return field(operand);
    // "Ln(F)" and "(F)"
    const QStringView opening = form.first(form.indexOf(u'F'));
    if (!operand.startsWith(opening))
        return std::nullopt;
    const auto inner = inParentheses(operand.sliced(opening.size() - 1));
    return inner ? field(*inner) : std::nullopt;
}

/// The term that a text says when it has this form.
std::optional<Term> match(const Pieces &pieces, const Transformation &transformation)
{
    const QString text = formOf(transformation);
    const Pieces form = split(text);
    if (form.operators != pieces.operators)
        return std::nullopt;
    Term term;
    term.transformation = transformation.keyword.toString();
    for (qsizetype i = 0; i < form.operands.size(); ++i) {
        const QStringView place = form.operands[i];
        const QStringView operand = pieces.operands[i];
        if (place.contains(u'F')) {
            // In parentheses behind "1/" it is the response's inverse, not the control's.
            const auto name =
                i > 0 && place == u"F" && operand.startsWith(u'(') ? std::nullopt : firstField(operand, place);
            if (!name)
                return std::nullopt;
            term.field1 = *name;
        } else if (place == u"G") {
            const auto name = field(operand);
            if (!name)
                return std::nullopt;
            term.field2 = *name;
        } else if (place == u"K" || place == u"N") {
            if (!isNumber(operand))
                return std::nullopt;
            (place == u"K" ? term.exponent : term.scaleFactor) = operand.toString();
        } else if (operand != place) {
            return std::nullopt;
        }
    }
    return term;
}

/// The first of the transformations whose form a text has.
std::optional<Term> parse(const QString &text, std::span<const Transformation> transformations)
{
    const Pieces pieces = split(QStringView(text).trimmed());
    for (const Transformation &transformation : transformations) {
        if (!transformation.term)
            continue;
        if (auto term = match(pieces, transformation))
            return term;
    }
    return std::nullopt;
}

/// "F, Ln(F) or F/N"
QString forms(std::span<const Transformation> transformations)
{
    QStringList list;
    for (const Transformation &transformation : transformations) {
        if (transformation.term)
            list.append(formOf(transformation));
    }
    const QString last = list.takeLast();
    return list.join(QStringLiteral(", ")) % u" or " % last;
}

} // namespace

Term parseControl(const QString &text)
{
    if (text.isEmpty())
        return {QStringLiteral("Undefined"), {}, {}, {}, {}};
    if (const auto term = parse(text, controlTransformations()))
        return *term;
    throw UsageError(
        QStringLiteral("\"%1\" is no term for a control variable: %2, where F and G are fields and K and "
                       "N are numbers; a field's name that holds an operator or is a number stands in "
                       "double quotes.")
            .arg(text, forms(controlTransformations())));
}

Term parseResponse(const QString &text)
{
    if (const auto term = parse(text, responseTransformations()))
        return *term;
    throw UsageError(QStringLiteral("\"%1\" is no term for the response: %2, where F is a field and N is a number; a "
                                    "field's name that holds an operator or is a number stands in double quotes.")
                         .arg(text, forms(responseTransformations())));
}

} // namespace nuvo
