// SPDX-License-Identifier: MIT
#pragma once

#include "workbench/Keptmodels.h"

namespace nuvo {

/// Two models side by side.
struct ModelComparison
{
    QStringList differences; ///< as nuvo::differences()
    /// Why the figures of the two do not compare, a sentence; empty where they do: the same response of the same
    /// records.
    QString obstacle;
    /// For nested models that compare: whether the further terms of the larger one are needed, in words and figures.
    QString test;
};

ModelComparison compare(const KeptModel &one, const KeptModel &other);

/// All of it as lines, with the figures of both.
QString comparisonText(const KeptModel &one, const KeptModel &other);

} // namespace nuvo
