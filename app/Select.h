#pragma once

#include "app/Options.h"

namespace nuvo {

/// Loads and fits with all variables, chooses a model and prints; message boxes go to standard error meanwhile.
/// Returns whether the component is loaded at the end. \pre a QApplication, as components are widgets.
/// \throws EPlatformError when the database, a field or a conversion fails; nothing is printed then.
bool select(const SelectOptions &options);

} // namespace nuvo
