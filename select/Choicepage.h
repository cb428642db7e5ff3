// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "present/Page.h"
#include "select/Choice.h"

namespace nuvo {

/// A choice as a page: what was compared by what rule on which records, each step with the F and p of every candidate
/// or the models by size with their figures, what is left and why, and what is worth a warning. Without a title.
/// \param point the decimal sign
NUVO_EXPORT Page choicePage(const Choice &choice, int digits = 6, QChar point = u'.');
/// The report of the run: its head, the page as text of 80 columns, the processing time. Lines end in "\n\r".
NUVO_EXPORT QString choiceReport(const Choice &choice);
/// The same for a message box, which has no room for all the steps and models: what is left, why, and the warnings.
NUVO_EXPORT QString choiceSummary(const Choice &choice);

/// What came of the choice, in a sentence: the terms that are left and why, or why there is none.
/// \param point the decimal sign
NUVO_EXPORT QString choiceResult(const Choice &choice, QChar point = u'.');

// Words of it.

/// "Forward selection".
NUVO_EXPORT QString methodName(Choice::Method method);
/// "Cp", "AIC", "BIC", "adjusted R²", "PRESS", "F".
NUVO_EXPORT QString criterionName(SubsetCriterion criterion);
/// The criterion's figure of a model.
NUVO_EXPORT double criterionOf(const SubsetFigures &figures, SubsetCriterion criterion);
/// "F above 4", "p below 0.05", "F above its 5 % point (table, "5 Percent")"; how a variable enters.
NUVO_EXPORT QString thresholdText(const ChoiceThreshold &threshold, bool entry, QChar point = u'.');
/// One sentence without its full stop: "Adding x4: F = 22.7985, p = 0.000576"; of the end why it ended: "No variable
/// above the threshold 4".
NUVO_EXPORT QString stepText(const Choice &choice, const SearchStep &step, QChar point = u'.');
/// What is worth a warning, in sentences.
NUVO_EXPORT QStringList choiceWarnings(const Choice &choice);

} // namespace nuvo
