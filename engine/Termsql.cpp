// SPDX-License-Identifier: MIT
#include "engine/Termsql.h"

#include "engine/Termreader.h"
#include "engine/Transformations.h"

#include <cmath>
#include <limits>

namespace nuvo {

namespace {

/// A term on its way into a statement.
class TermWriter
{
public:
    TermWriter(const TVariableDefinition &definition, const Transformation *transformation, const SqlNumbers &sql,
               const SqlFields &fields)
        : definition_(definition), sql_(sql), first_(fields(definition.Strings(2)))
    {
        if (transformation != nullptr)
            transformation_ = *transformation;
        const bool needsField2 = transformation_.second == Second::Field2;
        if (needsField2)
            second_ = fields(definition.Strings(3));
        switch (transformation_.second) {
        case Second::Exponent:
            setNumber(wholeExponentOf(definition));
            break;
        case Second::ScaleFactor:
            setNumber(scaleFactorOf(definition));
            break;
        case Second::Field2:
        case Second::Nothing:
            break;
        }
    }

    SqlTerm term() const
    {
        SqlTerm term;
        term.present = first_.present;
        if (transformation_.second == Second::Field2)
            term.present += QLatin1String(" AND ") + second_.present;
        term.usable = term.present;
        if (isNever()) {
            term.usable.clear();
            term.value = QStringLiteral("NULL");
            return term;
        }
        term.value = transformedSql(transformation_.operation, first_.number, second_.number, number_, sql_);
        for (const QString &condition : {rangeCondition(), finiteCondition()}) {
            if (!condition.isEmpty())
                term.usable += QLatin1String(" AND ") + condition;
        }
        term.guarded = transformation_.operation != Operation::Plain;
        term.whole = first_.whole && !term.guarded;
        return term;
    }

private:
    static constexpr double kLargest = std::numeric_limits<double>::max();

    void setNumber(double number)
    {
        number_ = number;
        if (std::isfinite(number))
            second_.number = sql_.literal(number);
    }

    /// What the definition itself says of every record.
    bool isNever() const
    {
        switch (transformation_.range.of) {
        case Range::Of::Exponent:
            if (!transformation_.range.Holds(exponentOf(definition_)))
                return true;
            break;
        case Range::Of::SizeOfScaleFactor:
            if (!transformation_.range.Holds(std::fabs(scaleFactorOf(definition_))))
                return true;
            break;
        default:
            break;
        }
        const bool divides = transformation_.operation == Operation::Over;
        return transformation_.second == Second::ScaleFactor &&
               (!std::isfinite(number_) || (divides && number_ == 0));
    }

    QString rangeCondition() const
    {
        const Range &range = transformation_.range;
        const QString sign = range.above ? QStringLiteral(" > ") : QStringLiteral(" >= ");
        switch (range.of) {
        case Range::Of::Field1:
            return first_.number + sign + sql_.literal(range.limit);
        case Range::Of::SizeOfField1:
            return sql_.abs(first_.number) + sign + sql_.literal(range.limit);
        case Range::Of::Field2NotNullOrZero:
            return sql_.abs(second_.number) + QLatin1String(" >= ") + sql_.literal(ZeroTolerance);
        default:
            return {};
        }
    }

    /// That the value is not infinite, which databases take for an error.
    QString finiteCondition() const
    {
        const QString size = sql_.abs(first_.number);
        const auto atMost = [&](double limit) { return size + QLatin1String(" <= ") + sql_.literal(limit); };
        const bool field2 = transformation_.second == Second::Field2;
        switch (transformation_.operation) {
        case Operation::SignedPower:
            // Not to be surpassed by another rounding of the power.
            return number_ > 1 ? atMost(std::pow(kLargest, 1 / number_) * (1 - 1e-12)) : QString();
        case Operation::Times:
            if (field2) {
                const QString other = sql_.abs(second_.number);
                return QStringLiteral("%1 <= %2 / CASE WHEN %3 > %4 THEN %3 ELSE %4 END")
                    .arg(size, sql_.literal(kLargest), other, sql_.literal(1));
            }
            break;
        case Operation::Over:
            if (field2) {
                const QString other = sql_.abs(second_.number);
                return QStringLiteral("%1 <= %2 * CASE WHEN %3 < %4 THEN %3 ELSE %4 END")
                    .arg(size, sql_.literal(kLargest), other, sql_.literal(1));
            }
            return std::fabs(number_) < 1 ? atMost(kLargest * std::fabs(number_)) : QString();
        default:
            break;
        }
        return {};
    }

    const TVariableDefinition &definition_;
    const SqlNumbers &sql_;
    Transformation transformation_{};
    SqlField first_;
    SqlField second_;
    double number_ = 0;
};

} // namespace

QString SqlTerm::safeValue() const
{
    return guarded && !usable.isEmpty() ? QStringLiteral("CASE WHEN %1 THEN %2 END").arg(usable, value) : value;
}

SqlTerm sqlTerm(const TIndepVar &definition, const SqlNumbers &sql, const SqlFields &fields)
{
    return TermWriter(definition, findKeyword(controlTransformations(), definition.Transformation()), sql, fields)
        .term();
}

SqlTerm sqlTerm(const TDependentVar &definition, const SqlNumbers &sql, const SqlFields &fields)
{
    return TermWriter(definition, findKeyword(responseTransformations(), definition.Transformation()), sql, fields)
        .term();
}

} // namespace nuvo
