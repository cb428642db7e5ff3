// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Recordsums.h"
#include "engine/Transformations.h"
#include "platform/Export.h"

#include <array>
#include <cstdint>
#include <exception>
#include <map>
#include <span>
#include <tuple>
#include <vector>

namespace nuvo {

/// Terms at work on the blocks of a scan: what TermReader does record by record, column by column. A term's value is
/// that of TermReader, to the last bit; what it cannot use is told by nuvo::RecordSums.
class NUVO_EXPORT BlockTerms
{
public:
    /// The control variables and, as the last term, the response.
    BlockTerms(std::span<const TIndepVar> columns, const TDependentVar &response);

    /// What the scan has to read.
    const QStringList &fields() const { return fields_; }

    /// The terms with low parts, a bit for each.
    std::uint32_t withLow() const;

    /// Transforms the records of a block, which has to live as long as the values are looked at.
    void read(const ScanBlock &block);

    /// Of the last block: the values of each term, and for each record a bit for every term that can use it.
    /// Values have low parts (engine/kernel/Lowparts.h) where that is not null.
    std::span<const double *const> values() const { return {values_.data(), terms_.size()}; }
    std::span<const double *const> low() const { return {low_.data(), terms_.size()}; }
    std::span<const std::uint32_t> usable() const { return {usable_.data(), std::size_t(rows_)}; }

    /// Of all blocks.
    std::vector<LeftOut> leftOut() const; ///< the response first
    bool hasErrors() const { return !errors_.empty(); }
    std::vector<RecordError> errors() const; ///< in the order of the records

private:
    struct Term
    {
        Range range;
        Operation operation = Operation::Plain;
        Second second = Second::Nothing;
        int field1 = 0; ///< among fields(); 0 where there is none
        int field2 = 0;
        // The numbers of the definition, or what converting them raises.
        double number = 0;
        double exponent = 0;
        std::exception_ptr numberError;
        std::exception_ptr exponentError;
        std::vector<double> values; ///< empty where they are the field's
        std::vector<double> low;
    };
    enum class Use { Possible, Null, Impossible, RaisesWhenAsked, RaisesAtValue };

    template <class Definition>
    void addTerm(const Definition &definition, std::span<const Transformation> transformations);
    int fieldNumber(const QString &name);
    void transform(Term &term, const ScanBlock &block, int j);
    Use useOf(const Term &term, const ScanBlock &block, int row, double &value, std::exception_ptr &error) const;
    void findLowParts(Term &term, const ScanBlock &block, int j);
    void lookAtOdd(int j, const ScanBlock &block, int row);
    void settleErrors(const ScanBlock &block);

    struct Raised
    {
        int row;
        int term;
        bool atValue;
        std::exception_ptr error;
    };

    QStringList fields_;
    std::vector<Term> terms_;
    std::array<const double *, MaxParameters> values_{};
    std::array<const double *, MaxParameters> low_{};
    std::vector<std::uint32_t> usable_;
    int rows_ = 0;
    std::vector<LeftOut> leftOut_; ///< by the number of the term
    std::vector<Raised> raised_;   ///< of this block
    std::map<std::tuple<int, bool, ControlSet>, RecordError> errors_;
};

} // namespace nuvo
