// SPDX-License-Identifier: MIT
#include "select/Choicepage.h"

#include "platform/Messages.h"
#include "present/Significant.h"
#include "select/Selectionrun.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace nuvo {

namespace {

struct ChoiceWords
{
    Q_DECLARE_TR_FUNCTIONS(ChoiceWords)
};

constexpr int Digits = 6;
using Action = SearchStep::Action;

QString figure(double value, int digits, QChar point)
{
    return std::isinf(value) && value > 0 ? QStringLiteral("infinite") : significant(value, digits, point);
}

/// Why a search is over.
QString endText(const Choice &choice, const SearchStep &end)
{
    const bool enters = choice.method != Choice::Method::Backward;
    const bool comparable = std::any_of(end.candidates.begin(), end.candidates.end(),
                                        [](const StepCandidate &candidate) { return !std::isnan(candidate.f); });
    if (choice.controls.isEmpty())
        return ChoiceWords::tr("There is no variable to choose from");
    if (end.sse == 0 && choice.observations - 1 > SubsetSums::sizeOf(end.model))
        return ChoiceWords::tr("The model fits exactly");
    if (!comparable && SubsetSums::sizeOf(end.model) == choice.count() && enters)
        return ChoiceWords::tr("Every variable is in the model");
    if (!enters && end.model == 0)
        return ChoiceWords::tr("No variable is left in the model");
    if (!comparable)
        return enters ? ChoiceWords::tr("No variable can enter: what is left depends on those in the model or would "
                                        "leave no degrees of freedom")
                      : ChoiceWords::tr("No variable can be judged: there are no degrees of freedom");
    switch (choice.method) {
    case Choice::Method::Backward:
        return ChoiceWords::tr("No variable below the threshold");
    case Choice::Method::Stepwise:
        if (end.entering == 0)
            return ChoiceWords::tr("Every variable is in the model, none below the threshold to stay");
        if (end.model != 0)
            return ChoiceWords::tr("No variable above the threshold to enter, none below the one to stay");
        break;
    default:
        break;
    }
    return ChoiceWords::tr("No variable above the threshold");
}

class Layout
{
    Q_DECLARE_TR_FUNCTIONS(ChoiceWords)

public:
    Layout(const Choice &choice, int digits, QChar point) : choice_(choice), digits_(digits), point_(point)
    {
        page_.point = point;
    }

    Page summary()
    {
        writeSubject();
        page_.add(Page::Kind::Paragraph,
                  (choice_.end == Choice::End::Chosen ? QStringLiteral("Left: ") : QString()) + resultText());
        writeWarnings();
        return page_;
    }

    Page page()
    {
        writeSubject();
        writeSample();
        if (choice_.end == Choice::End::Chosen || choice_.end == Choice::End::NoBestModel) {
            if (choice_.isOptimal())
                writeModels();
            else
                writePath();
        }
        page_.add(Page::Kind::Heading, QStringLiteral("The model that is left"));
        page_.add(Page::Kind::Paragraph, resultText());
        writeWarnings();
        return page_;
    }

    /// What came of the choice.
    QString resultText() const
    {
        switch (choice_.end) {
        case Choice::End::NoRecords:
            return tr("None: no record can be used by every variable.");
        case Choice::End::ResponseFixed:
            return tr("None: %1 does not vary over the records that every variable can use.").arg(choice_.response);
        case Choice::End::NoBestModel:
            return noBestText();
        case Choice::End::Chosen:
            break;
        }
        return chosenText();
    }

private:
    QString number(double value) const { return figure(value, digits_, point_); }
    QString p(double value) const { return probability(value, digits_, point_); }

    void writeSubject()
    {
        const QString rule = choice_.isOptimal()
                                 ? QStringLiteral("all subsets by %1").arg(criterionName(choice_.criterion))
                                 : QStringLiteral("by partial F");
        page_.add(Page::Kind::Paragraph,
                  QStringLiteral("%1, %2, as textbooks do: %3 on %4")
                      .arg(methodName(choice_.method), rule, choice_.response,
                           choice_.controls.isEmpty() ? QStringLiteral("no variable")
                                                      : choice_.controls.join(QStringLiteral(", "))));
    }

    void writeSample()
    {
        page_.add(Page::Kind::Paragraph,
                  QStringLiteral("All candidates share %1 observations, the records that every variable can use "
                                 "(%2 read, %3 left out).")
                      .arg(choice_.observations)
                      .arg(choice_.recordsRead)
                      .arg(choice_.skipped()));
        QStringList rules;
        if (choice_.method == Choice::Method::Forward || choice_.method == Choice::Method::Stepwise)
            rules += QStringLiteral("A variable enters with %1.").arg(thresholdText(choice_.enter, true, point_));
        if (choice_.method == Choice::Method::Backward || choice_.method == Choice::Method::Stepwise)
            rules += QStringLiteral("A variable leaves with %1.").arg(thresholdText(choice_.remove, false, point_));
        if (choice_.method == Choice::Method::Stepwise)
            rules += QStringLiteral("The threshold to stay is never above the one to enter.");
        if (!rules.isEmpty())
            page_.add(Page::Kind::Paragraph, rules.join(u' '));
    }

    void writePath()
    {
        if (choice_.search.leftOut != 0)
            page_.add(Page::Kind::Paragraph, QStringLiteral("Left out at the beginning, as they depend on those "
                                                            "before them: %1.")
                                                 .arg(choice_.terms(choice_.search.leftOut).join(u", ")));
        int number = 0;
        for (const SearchStep &step : choice_.search.path) {
            const bool ends = step.action == Action::End;
            page_.add(
                Page::Kind::Heading,
                ends ? QStringLiteral("End. ") + stepText(choice_, step, point_)
                     : QStringLiteral("Step %1. %2").arg(QString::number(++number), stepText(choice_, step, point_)));
            if (!ends)
                page_.addLine({QStringLiteral("threshold F = %1").arg(this->number(step.threshold)),
                               QStringLiteral("SSE after = %1").arg(this->number(step.sse))});
            writeCandidates(step);
        }
    }

    void writeCandidates(const SearchStep &step)
    {
        if (step.candidates.empty())
            return;
        Page::Table table;
        table.columns = {{QStringLiteral("Variable"), false},
                         {QStringLiteral("Partial F")},
                         {QStringLiteral("p-value")},
                         {QString(), false}};
        int at = 0;
        for (const StepCandidate &candidate : step.candidates) {
            const bool entering = step.action == Action::Add || (step.action == Action::End && at < step.entering);
            ++at;
            table.rows += {choice_.term(candidate.control), number(candidate.f), p(candidate.pValue),
                           candidate.dependent ? QStringLiteral("depends on the model")
                           : candidate.control == step.control
                               ? (entering ? QStringLiteral("enters") : QStringLiteral("leaves"))
                           : step.action != Action::End ? QString()
                           : entering                   ? QStringLiteral("could enter")
                                                        : QStringLiteral("could leave")};
        }
        page_.addTable(std::move(table));
    }

    void writeModels()
    {
        if (choice_.controls.isEmpty())
            return;
        page_.add(Page::Kind::Heading, choice_.perSize == 1
                                           ? QStringLiteral("The best model of each size")
                                           : QStringLiteral("The %1 best models of each size").arg(choice_.perSize));
        Page::Table table;
        table.columns = {{QStringLiteral("No.")},
                         {QStringLiteral("Size")},
                         {criterionName(choice_.criterion)},
                         {QString(), false},
                         {QStringLiteral("Variables"), false},
                         {QStringLiteral("SSE")},
                         {QStringLiteral("R²")},
                         {QStringLiteral("adjusted R²")},
                         {QStringLiteral("s²")},
                         {QStringLiteral("F")}};
        static constexpr SubsetCriterion Others[] = {SubsetCriterion::Cp, SubsetCriterion::Aic, SubsetCriterion::Bic,
                                                     SubsetCriterion::Press};
        for (const SubsetCriterion other : Others) {
            if (other != choice_.criterion)
                table.columns += Page::Column{criterionName(other)};
        }
        int at = 0;
        for (const SubsetFigures &model : choice_.subsets.bySize) {
            const bool best = choice_.subsets.best && choice_.subsets.best->controls == model.controls;
            QStringList row{QString::number(++at),
                            QString::number(model.size),
                            number(criterionOf(model, choice_.criterion)),
                            model.dependent ? QStringLiteral("dependent")
                            : best          ? QStringLiteral("best")
                                            : QString(),
                            choice_.terms(model.controls).join(QStringLiteral(", ")),
                            number(model.sse),
                            number(model.rSquared),
                            number(model.adjustedRSquared),
                            number(model.sSquared),
                            number(model.f)};
            for (const SubsetCriterion other : Others) {
                if (other != choice_.criterion)
                    row += number(criterionOf(model, other));
            }
            table.rows += row;
        }
        page_.addTable(std::move(table));
    }

    void writeWarnings()
    {
        for (const QString &warning : choiceWarnings(choice_))
            page_.add(Page::Kind::Item, warning);
    }

    QString noBestText() const
    {
        const QString criterion = criterionName(choice_.criterion);
        if (choice_.controls.isEmpty())
            return tr("The constant alone: there is no variable to choose from.");
        if (choice_.criterion == SubsetCriterion::Press && choice_.observations > MaxObservations)
            return tr("The variables as they were before: %1 exists for no subset, as it needs every observation, "
                      "not "
                      "a sample of them.")
                .arg(criterion);
        if (choice_.observations <= choice_.count() + 1)
            return tr("The variables as they were before: %1 exists for no subset, as %2 observations leave the full "
                      "model no degrees of freedom.")
                .arg(criterion, QString::number(choice_.observations));
        return tr("The variables as they were before: %1 exists for no subset.").arg(criterion);
    }

    QString chosenText() const
    {
        const QStringList terms = choice_.terms(choice_.selected);
        const QString model = terms.isEmpty() ? tr("The constant alone") : terms.join(QStringLiteral(", "));
        const bool best =
            choice_.isOptimal() && choice_.subsets.best && choice_.subsets.best->controls == choice_.selected;
        if (choice_.applied > 0 && !best)
            return (choice_.isOptimal() ? tr("%1 (number %2 of the list, put in the place of the chosen one).")
                                        : tr("%1 (number %2 of the steps, put in the place of the chosen one)."))
                .arg(model, QString::number(choice_.applied));
        if (!choice_.isOptimal())
            return model + u'.';
        const bool largest =
            choice_.criterion == SubsetCriterion::AdjustedRSquared || choice_.criterion == SubsetCriterion::F;
        return (largest ? tr("%1: the largest %2 of all subsets, %3.")
                        : tr("%1: the smallest %2 of all subsets, %3."))
            .arg(model, criterionName(choice_.criterion),
                 choice_.subsets.best->sse == 0 ? tr("an exact fit")
                                                : number(criterionOf(*choice_.subsets.best, choice_.criterion)));
    }

    const Choice &choice_;
    const int digits_;
    const QChar point_;
    Page page_;
};

/// "Ozone 37 null", "x 2 impossible, 1 null".
QString leftOutText(const LeftOut &one)
{
    if (one.null > 0 && one.invalid > 0)
        return ChoiceWords::tr("%1 %2 null, %3 impossible", "a term and numbers of records")
            .arg(one.term, QString::number(one.null), QString::number(one.invalid));
    return one.null > 0 ? ChoiceWords::tr("%1 %2 null", "a term and a number of records")
                              .arg(one.term, QString::number(one.null))
                        : ChoiceWords::tr("%1 %2 impossible", "a term and a number of records")
                              .arg(one.term, QString::number(one.invalid));
}

QString reportOf(const Choice &choice, const Page &page, int columns)
{
    QString text = pageText(page, columns);
    while (text.endsWith(u'\n'))
        text.chop(1);
    return reportHead(choice.description) + text.replace(u'\n', QStringLiteral("\n\r")) +
           processingTimeLine(choice.processingTime);
}

} // namespace

Page choicePage(const Choice &choice, int digits, QChar point)
{
    return Layout(choice, digits, point).page();
}

QString choiceReport(const Choice &choice)
{
    return reportOf(choice, choicePage(choice), 80);
}

QString choiceSummary(const Choice &choice)
{
    return reportOf(choice, Layout(choice, Digits, u'.').summary(), 100);
}

QString choiceResult(const Choice &choice, QChar point)
{
    return Layout(choice, Digits, point).resultText();
}

QString methodName(Choice::Method method)
{
    switch (method) {
    case Choice::Method::Stepwise:
        return QStringLiteral("Stepwise regression");
    case Choice::Method::Backward:
        return QStringLiteral("Backward elimination");
    case Choice::Method::Forward:
        return QStringLiteral("Forward selection");
    case Choice::Method::Optimal:
        break;
    }
    return QStringLiteral("Optimal subset");
}

QString criterionName(SubsetCriterion criterion)
{
    switch (criterion) {
    case SubsetCriterion::Aic:
        return QStringLiteral("AIC");
    case SubsetCriterion::Bic:
        return QStringLiteral("BIC");
    case SubsetCriterion::AdjustedRSquared:
        return ChoiceWords::tr("adjusted R²");
    case SubsetCriterion::Press:
        return QStringLiteral("PRESS");
    case SubsetCriterion::F:
        return QStringLiteral("F");
    case SubsetCriterion::Cp:
        break;
    }
    return QStringLiteral("Cp");
}

double criterionOf(const SubsetFigures &figures, SubsetCriterion criterion)
{
    switch (criterion) {
    case SubsetCriterion::Aic:
        return figures.aic;
    case SubsetCriterion::Bic:
        return figures.bic;
    case SubsetCriterion::AdjustedRSquared:
        return figures.adjustedRSquared;
    case SubsetCriterion::Press:
        return figures.press;
    case SubsetCriterion::F:
        return figures.f;
    case SubsetCriterion::Cp:
        break;
    }
    return figures.cp;
}

QString thresholdText(const ChoiceThreshold &threshold, bool entry, QChar point)
{
    switch (threshold.kind) {
    case ChoiceThreshold::Kind::Probability:
        return QStringLiteral("p %1 %2").arg(entry ? QStringLiteral("below") : QStringLiteral("above"),
                                             significant(threshold.value, 7, point));
    case ChoiceThreshold::Kind::Table:
        return QStringLiteral("F %1 \"%2\" of the F table")
            .arg(entry ? QStringLiteral("above") : QStringLiteral("below"), threshold.column);
    case ChoiceThreshold::Kind::Number:
        break;
    }
    return QStringLiteral("F %1 %2").arg(entry ? QStringLiteral("above") : QStringLiteral("below"),
                                         significant(threshold.value, 7, point));
}

QString stepText(const Choice &choice, const SearchStep &step, QChar point)
{
    if (step.action == Action::End)
        return endText(choice, step);
    const bool adding = step.action == Action::Add;
    const QString term = choice.term(step.control);
    if (std::isnan(step.f))
        return (adding ? ChoiceWords::tr("Adding %1: the fit is exact with it and without")
                       : ChoiceWords::tr("Removing %1: the fit is exact with it and without"))
            .arg(term);
    if (std::isinf(step.f))
        return (adding ? ChoiceWords::tr("Adding %1: the fit becomes exact")
                       : ChoiceWords::tr("Removing %1: the fit becomes exact"))
            .arg(term);
    return (adding ? ChoiceWords::tr("Adding %1: F = %2, p = %3") : ChoiceWords::tr("Removing %1: F = %2, p = %3"))
        .arg(term, figure(step.f, Digits, point), probability(step.pValue, Digits, point));
}

QStringList choiceWarnings(const Choice &choice)
{
    QStringList list;
    if (choice.skipped() > 0) {
        QStringList who;
        for (const LeftOut &one : choice.leftOut) {
            if (one.null + one.invalid > 0)
                who += leftOutText(one);
        }
        const QString skipped = QString::number(choice.skipped());
        const QString read = QString::number(choice.recordsRead);
        list += who.isEmpty()
                    ? ChoiceWords::tr("Nulls and impossible values took %1 of %2 records away from all candidates. "
                                      "Without some of these variables there are more records, and the choice can be "
                                      "another one.")
                          .arg(skipped, read)
                    : ChoiceWords::tr("Nulls and impossible values took %1 of %2 records away from all candidates "
                                      "(%3). Without some of these variables there are more records, and the choice "
                                      "can be another one.")
                          .arg(skipped, read, who.join(QStringLiteral("; ")));
    }
    if (choice.end != Choice::End::Chosen)
        return list;
    list += ChoiceWords::tr("The p-values after a selection are too small and the intervals too narrow: they do not "
                            "know that the model was chosen on the same records.");
    if (!choice.subsets.dependent.empty())
        list += ChoiceWords::tr("%1 of the subsets are dependent: a variable in them is a linear combination of the "
                                "others. They are never the best.")
                    .arg(choice.subsets.dependent.size());
    return list;
}

} // namespace nuvo
