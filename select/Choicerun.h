// SPDX-License-Identifier: MIT
#pragma once

#include "select/Choice.h"
#include "select/Selectionrun.h"

#include <utility>

namespace nuvo {

class Observations;
class SubsetSums;

/// A run under the rule Textbook, as far as the methods are the same: it loads with all candidates, which then share
/// one sample, has the method compare them by the sums over it, tells the way, leaves the component with the chosen
/// model, fitted to the shared sample, closes the progress and writes the report. The definitions are not touched
/// before that.
class ChoiceRun
{
public:
    /// \param told what is known of the choice before it is made: method, thresholds, criterion
    ChoiceRun(SelectionRun &run, Choice told) : run_(run), choice_(std::move(told)) {}
    ChoiceRun(const ChoiceRun &) = delete;
    ChoiceRun &operator=(const ChoiceRun &) = delete;
    virtual ~ChoiceRun();

    void search();

protected:
    /// Compares the candidates and takes down what comes of it; whether there is a model to leave, `selected` then.
    virtual bool choose(const SubsetSums &sums) = 0;
    /// What is told of it, step by step.
    virtual QStringList steps() const = 0;

    SelectionRun &run_;
    Choice choice_;
    /// Of the response: sums of squares are in units of 2^(2 exponent) (see nuvo::scaleOf). 0 as good as always.
    int exponent_ = 0;

private:
    void takeDefinitions();
    void describe();
    bool compare();
    void leave(ControlSet model);
};

/// Puts a model of a choice onto the component, loads and fits it over the sample that the candidates share, and
/// makes `choice` say so.  \throws EDatabaseError when definitions or records are not those of the choice any more;
/// all is as it was then.
void applyChoice(TRegression &regression, Choice &choice, ControlSet model, int index);

} // namespace nuvo
