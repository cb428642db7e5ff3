#pragma once

#include "app/Options.h"

namespace nuvo {

/// Loads and fits; message boxes go to standard error meanwhile. When a fit came out, writes the files that are asked
/// for; then prints, in the format that is asked for; then shows the report window until it is closed. Returns
/// whether a fit came out. \pre a QApplication, as components are widgets, with a display for showing and with fonts
/// for writing. \throws EPlatformError when the database, a field, a conversion or a file fails; nothing is printed
/// then.
bool fit(const FitOptions &options);

} // namespace nuvo
