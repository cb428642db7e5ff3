// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Mlrtypes.h"
#include "engine/Transformations.h"
#include "platform/Fields.h"

#include <optional>

class TDataSet;

namespace nuvo {

/// The numbers of a definition, which it holds as texts.
/// \throws EConvertError which names the field whose term it is.
NUVO_EXPORT double scaleFactorOf(const TVariableDefinition &definition);
NUVO_EXPORT double exponentOf(const TVariableDefinition &definition);
NUVO_EXPORT int wholeExponentOf(const TVariableDefinition &definition);

/// A definition at work on a dataset: what ValidTransformation and Process of the definitions do, for many records.
/// Fields are looked up and texts converted once, but not before a record needs them, so that errors come where and
/// when the definition's own operations would raise them. The definition and the dataset must outlive it.
class NUVO_EXPORT TermReader
{
public:
    TermReader(const TIndepVar &definition, TDataSet &dataset);
    TermReader(const TDependentVar &definition, TDataSet &dataset);

    /// What the term can make of the current record.
    enum class Use {
        Possible,
        Null,       ///< a field that it needs is null
        Impossible, ///< a value that it cannot take
    };

    bool Valid()
    {
        if (plain_ && field1_ != nullptr)
            return !field1_->IsNull();
        return UseOf() == Use::Possible;
    }
    /// The same, and why not.
    Use UseOf();
    double Value()
    {
        if (plain_ && field1_ != nullptr)
            return field1_->AsFloat();
        return ValueSlow();
    }

    /// Whether values have low parts, and that of the current record's, `value`; it reads the fields again.
    bool HasLowPart() const { return hasLowPart(operation_); }
    double LowPart(double value);

private:
    TermReader(const TVariableDefinition &definition, TDataSet &dataset, const Transformation *transformation);

    double ValueSlow();
    double SecondValue();
    const TField &Field1();
    const TField &Field2();
    double ScaleFactor();
    double ExponentAsFloat();
    int ExponentAsInteger();

    const TVariableDefinition &definition_;
    TDataSet &dataset_;
    Range range_;
    Operation operation_ = Operation::Plain;
    Second second_ = Second::Nothing;
    bool plain_; ///< the first field as it stands
    const TField *field1_ = nullptr;
    const TField *field2_ = nullptr;
    std::optional<double> scaleFactor_;
    std::optional<double> exponentAsFloat_;
    std::optional<int> exponentAsInteger_;
};

} // namespace nuvo
