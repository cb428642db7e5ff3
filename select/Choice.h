// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Leftout.h"
#include "engine/kernel/Bestsubsets.h"
#include "engine/kernel/Stepsearch.h"
#include "platform/Export.h"

#include <QString>
#include <QStringList>

#include <array>
#include <optional>
#include <vector>

namespace nuvo {

/// Against what a partial F is held, as it was told.
struct ChoiceThreshold
{
    enum class Kind { Number, Table, Probability };

    Kind kind = Kind::Number;
    double value = 0; ///< the F, or the probability from which F(1, DOF) is worked out; 0 of a table
    QString column;   ///< of the F table
};

/// A choice under the textbook's rule: everything that a reader is shown of it, once, as numbers and terms. Text,
/// window, plot and JSON lay it out. A value: it needs no component and nobody changes it.
///
/// Controls are the candidates, in the order of their ControlVars, numbered from 1: control j is bit j - 1 of a
/// nuvo::ControlSet and `controls[j - 1]`.
struct NUVO_EXPORT Choice
{
    enum class Method { Optimal, Stepwise, Backward, Forward };
    /// Why the run left the model that it left.
    enum class End {
        Chosen,        ///< by its rule: a best model, or no variable above or below the threshold any more
        NoRecords,     ///< no record can be used by all controls and the response
        ResponseFixed, ///< the response does not vary over the shared sample
        NoBestModel,   ///< no subset has the criterion's figure; the definitions are as they were
    };

    Method method = Method::Optimal;
    End end = End::Chosen;

    QString dataset;     ///< TRegression::DataSourceName()
    QString description; ///< of the regression component
    QString response;    ///< term, as reports write it
    QStringList controls;
    std::vector<int> positions; ///< of the candidates among ControlVar01 to ControlVar10: 1 to 10
    using Transformations = std::array<QString, MaxControls>; ///< of ControlVar01 to ControlVar10, the first at 0
    Transformations transformations;                          ///< when the run began

    // The sample that all candidates share.
    qint64 observations = 0;
    qint64 recordsRead = 0; ///< looked at; those that did not become observations were taken from all candidates
    qint64 skipped() const { return recordsRead - observations; }
    /// The response first, then the controls: which records each of them cannot use. Empty when nothing was skipped.
    std::vector<LeftOut> leftOut;
    double total = 0; ///< sum of squares of the response around its mean

    // Stepwise, backward, forward. `enter` has no meaning for backward, `remove` none for forward.
    ChoiceThreshold enter;
    ChoiceThreshold remove; ///< of stepwise: as told; what counts is never above that of entry
    StepSearch search;

    // Optimal.
    SubsetCriterion criterion = SubsetCriterion::Cp;
    int perSize = 1;      ///< K: so many models of each size are listed
    SubsetChoice subsets; ///< `bySize` is the list whose models SelectModel() takes, from 1

    double processingTime = 0; ///< of the run, in days

    /// The model that is left on the component.
    ControlSet selected = 0;
    /// The number in the list, from 1, of the model that SelectModel() has put in the place of the chosen one: of
    /// optimal an entry of subsets.bySize, else the model after that step of search.path. 0: the chosen one is left.
    int applied = 0;

    /// How many models SelectModel() can take, and number `index` of them; nothing for a number that is none.
    int modelCount() const;
    /// The controls of model `index`, from 1 to modelCount().
    std::optional<ControlSet> model(int index) const;

    /// With these controls in the model and the others out of it.
    Transformations transformationsOf(ControlSet model) const;

    /// Whether all subsets were compared; else there are steps.
    bool isOptimal() const { return method == Method::Optimal; }
    /// Candidates.
    int count() const { return int(controls.size()); }
    /// The terms of a set, in the order of their numbers.
    QStringList terms(ControlSet set) const;
    /// Of one control, from 1.
    QString term(int control) const { return controls[control - 1]; }
};

} // namespace nuvo
