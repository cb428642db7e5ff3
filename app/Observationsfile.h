// SPDX-License-Identifier: MIT
#pragma once

#include "present/Figures.h"

#include <QString>

namespace nuvo {

/// Writes a line for each observation of a current fit as comma-separated values (UTF-8, lines ended by LF): record,
/// the response, each term, fitted, residual, leverage, standardizedResidual, studentizedResidual, cook, dffits, the
/// first line naming them. Numbers read back give the same doubles; one that does not exist is an empty cell.
/// \pre the figures have their influence
/// \throws EPlatformError when the file cannot be written; no partial file is left.
void saveObservations(const Figures &figures, const QString &file);

} // namespace nuvo
