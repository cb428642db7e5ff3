// SPDX-License-Identifier: MIT
#pragma once

#include "present/Reportdocument.h"

#include <QString>

namespace nuvo {

enum class Matrices { Left, Shown };

/// The report as plain text for a terminal or a file of that many columns (at least 80), lines ended by LF: each
/// caption of the report window with its text, blocks whose lines belong together side by side. Long names have lines
/// of their own, nothing is cut. Control characters are turned into blanks.
NUVO_EXPORT QString reportPlainText(const Figures &figures, Matrices matrices = Matrices::Shown, int columns = 80);

/// Columns that a text takes on a terminal.
NUVO_EXPORT int displayWidth(const QString &text);

} // namespace nuvo
