// SPDX-License-Identifier: MIT
#pragma once

#include "select/Choice.h"
#include "select/Selections.h"

#include <cmath>

/// "+d +a -d .": what a search by partial F added and took out.
inline QString walk(const nuvo::Choice &choice)
{
    QStringList steps;
    for (const nuvo::SearchStep &step : choice.search.path) {
        switch (step.action) {
        case nuvo::SearchStep::Action::Add:
            steps.append(u'+' + choice.term(step.control));
            break;
        case nuvo::SearchStep::Action::Remove:
            steps.append(u'-' + choice.term(step.control));
            break;
        case nuvo::SearchStep::Action::End:
            steps.append(text("."));
            break;
        }
    }
    return steps.join(u' ');
}

inline QString walk(const TCorvane &search)
{
    return search.Choice() ? walk(*search.Choice()) : text("no choice");
}

/// The terms of the model that the component has.
inline QString selected(const TRegression &regression)
{
    QStringList terms;
    for (int j = 1; j <= regression.GetNumVars(); ++j)
        terms.append(regression.GetcVar(j).OutputTerm());
    return terms.join(u' ');
}

/// Loss of ammonia in a plant over 21 days: air flow, temperature of the water, concentration (Brownlee 1965).
inline const std::vector<Row> &stackLoss()
{
    static const std::vector<Row> rows = {
        {42, 80, 27, 89}, {37, 80, 27, 88}, {37, 75, 25, 90}, {28, 62, 24, 87}, {18, 62, 22, 87}, {18, 62, 23, 87},
        {19, 62, 24, 93}, {20, 62, 24, 93}, {15, 58, 23, 87}, {14, 58, 18, 80}, {14, 58, 18, 89}, {13, 58, 17, 88},
        {11, 58, 18, 82}, {12, 58, 19, 93}, {8, 50, 18, 89},  {7, 50, 18, 86},  {8, 50, 19, 72},  {8, 50, 19, 79},
        {9, 50, 20, 80},  {15, 56, 20, 82}, {15, 70, 20, 91},
    };
    return rows;
}
