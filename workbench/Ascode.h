// SPDX-License-Identifier: MIT
#pragma once

#include "workbench/Modelstate.h"

namespace nuvo {

/// A C++ program that makes the same fit and prints its coefficients, as the examples do: a whole file.
/// \pre state.isFittable()
QString fitProgram(const ModelState &state);

/// A text as a literal of C++, quotes included.
QString cppLiteral(const QString &text);

} // namespace nuvo
