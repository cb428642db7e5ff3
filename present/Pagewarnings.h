// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "present/Figures.h"

#include <QStringList>

#include <cstddef>
#include <vector>

namespace nuvo {

/// An observation that is worth looking at, and by what it stands out.
struct NUVO_EXPORT StandOut
{
    std::size_t observation = 0; ///< from 0
    bool leverage = false;       ///< above 2 p / n, p = m + 1
    bool residual = false;       ///< studentized, beyond 2 either way
    bool dffits = false;         ///< beyond 2 sqrt(p / n) either way
    bool cook = false;           ///< above 4 / n

    QString inWords() const; ///< "leverage, residual"
};
/// Those of the figures' influence, the largest Cook's distance first; none without influence. The bounds of
/// leverage, residual and DFFITS are those of Belsley, Kuh and Welsch, Regression Diagnostics (1980), section 2.1;
/// that of Cook's distance is the usual one of the applied literature (Bollen and Jackman 1990).
NUVO_EXPORT std::vector<StandOut> standOuts(const Figures &figures);

/// The ordinal of an observation's record in the dataset, else its own number, from 1.
NUVO_EXPORT long long recordOf(const Figures &figures, std::size_t observation);

/// What a reader should know before using the figures, a sentence or two each: terms that are linear combinations of
/// others or infinite somewhere, no degrees of freedom, an exact fit, a variance inflation above 10, observations
/// with a leverage of 1 or with one above 2 p / n and a studentized residual beyond 2, tests that fail at 5 %.
NUVO_EXPORT QStringList pageWarnings(const Figures &figures, int digits = 7, QChar point = u'.');

} // namespace nuvo
