// SPDX-License-Identifier: MIT
#include "select/Textbook.h"

#include "platform/Errors.h"
#include "platform/Formats.h"
#include "select/Choicepage.h"
#include "select/Choicerun.h"

#include <cmath>
#include <utility>

namespace nuvo {

namespace {

StepMethod stepMethod(Choice::Method method)
{
    switch (method) {
    case Choice::Method::Backward:
        return StepMethod::Backward;
    case Choice::Method::Forward:
        return StepMethod::Forward;
    default:
        return StepMethod::Stepwise;
    }
}

class StepsRun : public ChoiceRun
{
public:
    StepsRun(SelectionRun &run, Choice told, TTable *table) : ChoiceRun(run, std::move(told)), table_(table) {}

protected:
    bool choose(const SubsetSums &sums) override;
    QStringList steps() const override;

private:
    StepThreshold comparedWith(const ChoiceThreshold &threshold);
    double lookUp(const QString &column, double degreesOfFreedom);

    const QPointer<TTable> table_;
};

bool StepsRun::choose(const SubsetSums &sums)
{
    StepSearch &search = choice_.search;
    search = searchSteps(sums, stepMethod(choice_.method), comparedWith(choice_.enter), comparedWith(choice_.remove));
    for (SearchStep &step : search.path)
        step.sse = std::scalbn(step.sse, 2 * exponent_);
    choice_.selected = search.selected;
    return true;
}

QStringList StepsRun::steps() const
{
    QStringList texts;
    for (const SearchStep &step : choice_.search.path)
        texts += stepText(choice_, step) + u'.';
    return texts;
}

StepThreshold StepsRun::comparedWith(const ChoiceThreshold &threshold)
{
    switch (threshold.kind) {
    case ChoiceThreshold::Kind::Probability:
        return probabilityThreshold(threshold.value);
    case ChoiceThreshold::Kind::Table:
        return
            [this, column = threshold.column](double degreesOfFreedom) { return lookUp(column, degreesOfFreedom); };
    case ChoiceThreshold::Kind::Number:
        break;
    }
    return fixedThreshold(threshold.value);
}

/// Unlike the look-up of the written rule, nothing stands in for a value that is not there.
double StepsRun::lookUp(const QString &column, double degreesOfFreedom)
{
    if (table_.isNull())
        throw EDatabaseError(QStringLiteral("The table of F values went away while a model was being chosen."));
    if (!(degreesOfFreedom >= 1))
        return std::nan("");
    const bool found = table_->FindKey({1, int(degreesOfFreedom)});
    run_.check();
    TField &field = table_->FieldByName(column);
    if (!found || field.IsNull())
        throw EDatabaseError(QStringLiteral("%1 has no value \"%2\" for 1 and %3 degrees of freedom.")
                                 .arg(table_->Caption(), column, QString::number(degreesOfFreedom)));
    return field.AsFloat();
}

} // namespace

ChoiceThreshold thresholdOf(const TPartialFSearch &selector, const ToldThreshold &told)
{
    const QString property = QString::fromLatin1(told.property);
    const bool hasTable = selector.FDistTable() != nullptr;
    if (!hasTable && !selector.FDistTableName().isEmpty())
        throw EDatabaseError(QStringLiteral("There is no table component called \"%1\", the FDistTable.")
                                 .arg(selector.FDistTableName()));
    if (told.probability == 0) {
        if (hasTable)
            return {ChoiceThreshold::Kind::Table, 0, told.column};
        return {ChoiceThreshold::Kind::Number, told.f, {}};
    }
    if (!(told.probability > 0 && told.probability < 1))
        throw EDatabaseError(QStringLiteral("%1 is %2; a probability is more than 0 and less than 1.")
                                 .arg(property, FloatToStr(told.probability)));
    if (hasTable)
        throw EDatabaseError(
            QStringLiteral("%1 and FDistTable are both given; thresholds come from one of them.").arg(property));
    return {ChoiceThreshold::Kind::Probability, told.probability, {}};
}

void searchAsTextbook(SelectionRun &run, const TPartialFSearch &selector, Choice::Method method,
                      const ChoiceThreshold &enter, const ChoiceThreshold &remove)
{
    Choice told;
    told.method = method;
    told.enter = enter;
    told.remove = remove;
    StepsRun(run, std::move(told), selector.FDistTable()).search();
}

} // namespace nuvo
