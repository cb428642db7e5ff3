// SPDX-License-Identifier: MIT
#include "engine/Termvalue.h"

#include "engine/Transformations.h"
#include "platform/Errors.h"
#include "platform/Formats.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace nuvo {

namespace {

bool sameField(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

/// The term's transformation; that of an unknown keyword is none.
const Transformation &transformationOf(const TIndepVar &term)
{
    static constexpr Transformation plain{};
    const Transformation *const found = findKeyword(controlTransformations(), term.Transformation());
    return found != nullptr ? *found : plain;
}

/// The fields of terms, each once.
QStringList fieldsOf(std::span<const TIndepVar> terms)
{
    QStringList fields;
    const auto add = [&](const QString &field) {
        if (!fields.contains(field, Qt::CaseInsensitive))
            fields.append(field);
    };
    for (const TIndepVar &term : terms) {
        add(term.Field1());
        if (transformationOf(term).second == Second::Field2)
            add(term.Field2());
    }
    return fields;
}

void checkFields(std::span<const TIndepVar> terms, const FieldValues &values)
{
    const QStringList fields = fieldsOf(terms);
    for (auto at = values.begin(); at != values.end(); ++at) {
        const QString &field = at->first;
        if (!fields.contains(field, Qt::CaseInsensitive))
            throw EConvertError(QStringLiteral("No term has a field \"%1\"; the fields of the terms: %2.")
                                    .arg(field, fields.join(QStringLiteral(", "))));
        if (std::any_of(values.begin(), at, [&](const auto &one) { return sameField(one.first, field); }))
            throw EConvertError(QStringLiteral("A value of the field \"%1\" is given twice.").arg(field));
    }
    for (const QString &field : fields) {
        if (std::none_of(values.begin(), values.end(), [&](const auto &one) { return sameField(one.first, field); }))
            throw EConvertError(QStringLiteral("No value of the field \"%1\" is given.").arg(field));
    }
}

/// \pre It was given.
double valueOf(const FieldValues &values, const QString &field)
{
    return std::find_if(values.begin(), values.end(), [&](const auto &one) { return sameField(one.first, field); })
        ->second;
}

double secondOf(const TIndepVar &term, Second second, const FieldValues &values)
{
    switch (second) {
    case Second::Field2:
        return valueOf(values, term.Field2());
    case Second::Exponent:
        return StrToInt(term.Exponent());
    case Second::ScaleFactor:
        return StrToFloat(term.ScaleFactor());
    case Second::Nothing:
        break;
    }
    return 0;
}

bool takes(const TIndepVar &term, const Range &range, double first, double second)
{
    switch (range.of) {
    case Range::Of::Field1:
        return range.Holds(first);
    case Range::Of::SizeOfField1:
        return range.Holds(std::fabs(first));
    case Range::Of::Exponent:
        return range.Holds(second);
    case Range::Of::SizeOfScaleFactor:
        return range.Holds(std::fabs(StrToFloat(term.ScaleFactor())));
    case Range::Of::Field2NotNull:
    case Range::Of::Field2NotNullOrZero:
    case Range::Of::Anything:
        break;
    }
    return true;
}

[[noreturn]] void refuse(const TIndepVar &term, const FieldValues &values)
{
    const auto given = [&](const QString &field) { return FloatToStr(valueOf(values, field)); };
    QString fields = QStringLiteral("%1 of the field \"%2\"").arg(given(term.Field1()), term.Field1());
    if (transformationOf(term).second == Second::Field2)
        fields += QStringLiteral(" with %1 of \"%2\"").arg(given(term.Field2()), term.Field2());
    throw EConvertError(QStringLiteral("The term %1 cannot take %2.").arg(term.OutputTerm(), fields));
}

} // namespace

std::optional<TermValue> termValue(const TIndepVar &term, const FieldValues &values)
{
    const Transformation &transformation = transformationOf(term);
    const double first = valueOf(values, term.Field1());
    const double second = secondOf(term, transformation.second, values);
    const double value = transformed(transformation.operation, first, second);
    if (!takes(term, transformation.range, first, second) || !std::isfinite(value))
        return {};
    return TermValue{value, first == 0 ? 0 : lowPart(transformation.operation, first, second, value)};
}

TermValues termValues(std::span<const TIndepVar> terms, const FieldValues &values)
{
    checkFields(terms, values);
    TermValues result;
    for (const TIndepVar &term : terms) {
        const std::optional<TermValue> one = termValue(term, values);
        if (!one)
            refuse(term, values);
        result.values.push_back(one->value);
        result.low.push_back(one->low);
    }
    return result;
}

} // namespace nuvo
