// SPDX-License-Identifier: MIT
#pragma once

#include "design/plugin/Editing.h"

namespace nuvo {

// What a form would show, from its data, while it is designed. Copies of the components are loaded and fitted, so
// that the form, its definitions and its undo stack stay as they are. What is wrong is said in a message box.

/// Fits a copy of a regression component and shows its statistics; returns when their window is closed, or Escape has
/// ended the load.
void fitAndShow(const TComponent &component, const Editing &editing);

/// Runs a copy of a selection component on a copy of the regression that it is bound to, and shows the choice.
void chooseAndShow(const TComponent &component, const Editing &editing);

} // namespace nuvo
