// SPDX-License-Identifier: MIT
#pragma once

#include "workbench/Modelstate.h"

#include <QJsonObject>

#include <vector>

namespace nuvo {

/// A model that was tried, with the figures that models are compared by. A figure that does not exist is a NaN.
struct KeptModel
{
    QString name; ///< that a person gave it; empty: its terms stand for it
    ModelState state;
    qint64 n = 0;
    double rSquared = 0;
    double adjustedRSquared = 0;
    double s = 0; ///< standard error of the estimate
    double aic = 0;
    double residual = 0; ///< SSE
    double total = 0;    ///< SST: other than that of other records
    double degreesOfFreedom = 0;

    /// The name, or the terms.
    QString title() const { return name.isEmpty() ? state.title() : name; }
};

/// The figures of a current fit beside the state that it is of.  \pre regression.ResultsCurrent()
KeptModel keptModel(const ModelState &state, TRegression &regression);

QJsonObject toJson(const KeptModel &model);
KeptModel keptFromJson(const QJsonObject &json);

/// Where two models differ, a line for each difference, for people: terms that only one of them has, other records,
/// another response. \return nothing where they are of the same state.
QStringList differences(const ModelState &one, const ModelState &other);

} // namespace nuvo
