// SPDX-License-Identifier: MIT
#include "engine/Blockterms.h"

#include "engine/Termreader.h"
#include "platform/Errors.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace nuvo {

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

template <class Convert>
std::exception_ptr errorOf(const Convert &convert)
{
    try {
        convert();
    } catch (const EPlatformError &) {
        return std::current_exception();
    }
    return nullptr;
}

double finiteOrNone(double value)
{
    return std::isfinite(value) ? value : none;
}

/// Values of which a NaN, and only a NaN, has to be looked at again.
template <class Value>
void fill(std::vector<double> &values, const double *field, int rows, Value value)
{
    for (int row = 0; row < rows; ++row)
        values[std::size_t(row)] = value(field[row]);
}

} // namespace

BlockTerms::BlockTerms(std::span<const TIndepVar> columns, const TDependentVar &response)
{
    for (const TIndepVar &column : columns)
        addTerm(column, controlTransformations());
    addTerm(response, responseTransformations());
    leftOut_.resize(terms_.size());
    usable_.resize(ScanBlock::kMostRows);
}

template <class Definition>
void BlockTerms::addTerm(const Definition &definition, std::span<const Transformation> transformations)
{
    Term &term = terms_.emplace_back();
    if (const Transformation *found = findKeyword(transformations, definition.Transformation())) {
        term.range = found->range;
        term.operation = found->operation;
        term.second = found->second;
    }
    term.field1 = fieldNumber(definition.Strings(2));
    if (term.second == Second::Field2)
        term.field2 = fieldNumber(definition.Strings(3));
    if (term.second == Second::ScaleFactor || term.range.of == Range::Of::SizeOfScaleFactor)
        term.numberError = errorOf([&] { term.number = scaleFactorOf(definition); });
    if (term.second == Second::Exponent)
        term.numberError = errorOf([&] { term.number = wholeExponentOf(definition); });
    if (term.range.of == Range::Of::Exponent)
        term.exponentError = errorOf([&] { term.exponent = exponentOf(definition); });
    const bool plain = term.operation == Operation::Plain && term.range.of == Range::Of::Anything;
    if (!plain)
        term.values.resize(ScanBlock::kMostRows);
    if (hasLowPart(term.operation))
        term.low.resize(ScanBlock::kMostRows);
}

std::uint32_t BlockTerms::withLow() const
{
    std::uint32_t bits = 0;
    for (std::size_t j = 0; j < terms_.size(); ++j)
        bits |= std::uint32_t(!terms_[j].low.empty()) << j;
    return bits;
}

int BlockTerms::fieldNumber(const QString &name)
{
    for (qsizetype i = 0; i < fields_.size(); ++i) {
        if (fields_[i].compare(name, Qt::CaseInsensitive) == 0)
            return int(i);
    }
    fields_.append(name);
    return int(fields_.size()) - 1;
}

void BlockTerms::read(const ScanBlock &block)
{
    rows_ = block.rows();
    std::fill_n(usable_.begin(), rows_, 0);
    raised_.clear();
    for (int j = 0; j < int(terms_.size()); ++j) {
        transform(terms_[std::size_t(j)], block, j);
        const double *const values = values_[std::size_t(j)];
        int odd = 0;
        for (int row = 0; row < rows_; ++row) {
            const bool isNumber = values[row] == values[row];
            usable_[std::size_t(row)] |= std::uint32_t(isNumber) << j;
            odd += isNumber ? 0 : 1;
        }
        for (int row = 0; odd > 0; ++row) {
            if (std::isnan(values[row])) {
                lookAtOdd(j, block, row);
                --odd;
            }
        }
        findLowParts(terms_[std::size_t(j)], block, j);
    }
    if (!raised_.empty())
        settleErrors(block);
}

/// The values of a term, NaNs where more than the field's number has to be known.
void BlockTerms::transform(Term &term, const ScanBlock &block, int j)
{
    const double *const field = block.column(term.field1);
    values_[std::size_t(j)] = term.values.empty() ? field : term.values.data();
    if (term.values.empty())
        return;
    const Range &range = term.range;
    const double number = term.number;
    const bool holds = !term.numberError && !term.exponentError &&
                       (range.of != Range::Of::Exponent || range.Holds(term.exponent)) &&
                       (range.of != Range::Of::SizeOfScaleFactor || range.Holds(std::fabs(number)));
    if (!holds) {
        std::fill_n(term.values.begin(), rows_, none);
        return;
    }
    switch (term.operation) {
    case Operation::Logarithm:
        fill(term.values, field, rows_, [&](double v) { return range.Holds(v) ? std::log(v) : none; });
        break;
    case Operation::SquareRoot:
        fill(term.values, field, rows_, [&](double v) { return range.Holds(v) ? std::sqrt(v) : none; });
        break;
    case Operation::Reciprocal:
        fill(term.values, field, rows_, [&](double v) { return range.Holds(std::fabs(v)) ? 1 / v : none; });
        break;
    case Operation::Times:
    case Operation::Over: {
        const double *const other = term.second == Second::Field2 ? block.column(term.field2) : nullptr;
        const bool over = term.operation == Operation::Over;
        for (int row = 0; row < rows_; ++row) {
            const double second = other != nullptr ? other[row] : number;
            const bool zero = over && other != nullptr && std::fabs(second) < ZeroTolerance;
            term.values[std::size_t(row)] =
                zero ? none : finiteOrNone(over ? field[row] / second : field[row] * second);
        }
        break;
    }
    case Operation::SignedPower:
    case Operation::Plain:
        fill(term.values, field, rows_,
             [&](double v) { return std::isnan(v) ? none : finiteOrNone(transformed(term.operation, v, number)); });
        break;
    }
}

void BlockTerms::findLowParts(Term &term, const ScanBlock &block, int j)
{
    low_[std::size_t(j)] = term.low.empty() ? nullptr : term.low.data();
    if (term.low.empty())
        return;
    const double *const field = block.column(term.field1);
    const double *const other = term.second == Second::Field2 ? block.column(term.field2) : nullptr;
    for (int row = 0; row < rows_; ++row) {
        const std::size_t at = std::size_t(row);
        const bool known = (usable_[at] >> j & 1) != 0 && field[row] != 0;
        const double second = other != nullptr ? other[row] : term.number;
        term.low[at] = known ? lowPart(term.operation, field[row], second, term.values[at]) : 0;
    }
}

/// All of what TermReader::UseOf() and Value() say, in their order, of one record.
BlockTerms::Use BlockTerms::useOf(const Term &term, const ScanBlock &block, int row, double &value,
                                  std::exception_ptr &error) const
{
    const double first = block.column(term.field1)[row];
    if (block.isNull(term.field1, row))
        return Use::Null;
    const bool readable = !std::isnan(first);
    const auto raises = [&](Use use, int field) {
        error = errorOf([&] { block.fail(field, row); });
        return use;
    };
    const auto raisesNumber = [&](Use use, const std::exception_ptr &what) {
        error = what;
        return use;
    };
    const Range &range = term.range;
    switch (range.of) {
    case Range::Of::Field1:
    case Range::Of::SizeOfField1:
        if (!readable)
            return raises(Use::RaisesWhenAsked, term.field1);
        if (!range.Holds(range.of == Range::Of::Field1 ? first : std::fabs(first)))
            return Use::Impossible;
        break;
    case Range::Of::Exponent:
        if (term.exponentError)
            return raisesNumber(Use::RaisesWhenAsked, term.exponentError);
        if (!range.Holds(term.exponent))
            return Use::Impossible;
        break;
    case Range::Of::SizeOfScaleFactor:
        if (term.numberError)
            return raisesNumber(Use::RaisesWhenAsked, term.numberError);
        if (!range.Holds(std::fabs(term.number)))
            return Use::Impossible;
        break;
    case Range::Of::Field2NotNull:
    case Range::Of::Field2NotNullOrZero:
        if (block.isNull(term.field2, row))
            return Use::Null;
        break;
    case Range::Of::Anything:
        break;
    }
    if (!readable)
        return raises(Use::RaisesAtValue, term.field1);
    double second = term.number;
    if (term.second == Second::Field2) {
        second = block.column(term.field2)[row];
        if (std::isnan(second))
            return raises(Use::RaisesAtValue, term.field2);
        if (term.operation == Operation::Over && std::fabs(second) < ZeroTolerance)
            return Use::Impossible;
    } else if (term.numberError && !(term.operation == Operation::SignedPower && first == 0)) {
        return raisesNumber(Use::RaisesAtValue, term.numberError);
    }
    value = transformed(term.operation, first, second);
    return std::isfinite(value) ? Use::Possible : Use::Impossible;
}

void BlockTerms::lookAtOdd(int j, const ScanBlock &block, int row)
{
    Term &term = terms_[std::size_t(j)];
    double value = 0;
    std::exception_ptr error;
    const Use use = useOf(term, block, row, value, error);
    if (use == Use::Possible) {
        term.values[std::size_t(row)] = value;
        usable_[std::size_t(row)] |= std::uint32_t(1) << j;
        return;
    }
    LeftOut &count = leftOut_[std::size_t(j)];
    ++(use == Use::Null ? count.null : count.invalid);
    if (count.first.size() < LeftOut::Ordinals)
        count.first.push_back(block.firstRecord() + row);
    if (error)
        raised_.push_back({row, j, use == Use::RaisesAtValue, error});
}

/// An error is known by its term and by which terms accept the record: of each kind the first one is enough.
void BlockTerms::settleErrors(const ScanBlock &block)
{
    std::map<int, ControlSet> accepted;
    for (const Raised &one : raised_) {
        ControlSet &terms = accepted.try_emplace(one.row, usable_[std::size_t(one.row)]).first->second;
        if (one.atValue)
            terms |= ControlSet(1) << one.term;
    }
    std::stable_sort(raised_.begin(), raised_.end(), [](const Raised &a, const Raised &b) { return a.row < b.row; });
    for (const Raised &one : raised_) {
        const ControlSet terms = accepted[one.row];
        errors_.try_emplace({one.term, one.atValue, terms},
                            RecordError{one.term, one.atValue, terms, block.firstRecord() + one.row, one.error});
    }
}

std::vector<LeftOut> BlockTerms::leftOut() const
{
    std::vector<LeftOut> result = leftOut_;
    std::rotate(result.begin(), result.end() - 1, result.end());
    return result;
}

std::vector<RecordError> BlockTerms::errors() const
{
    std::vector<RecordError> result;
    for (const auto &[kind, error] : errors_)
        result.push_back(error);
    std::stable_sort(result.begin(), result.end(),
                     [](const RecordError &a, const RecordError &b) { return a.record < b.record; });
    return result;
}

} // namespace nuvo
