// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "present/figures/Figure.h"

class TRegression;

namespace nuvo {

/// What the figures of a regression's current fit are made from, with the ordinals of its records; empty data when
/// the fit is not current. `level` is that of the bands, more than 0 and less than 1. Figures that do not exist (no
/// degrees of freedom, a leverage of 1, dependent terms) are NaNs.
NUVO_EXPORT FigureData figureData(TRegression &regression, double level = 0.95);

} // namespace nuvo
