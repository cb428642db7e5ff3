#pragma once

#include "app/Options.h"

namespace nuvo {

struct SelectResult
{
    QString output;      ///< for standard output, in the format that was asked for
    bool loaded = false; ///< whether the component is, at the end
};

/// Loads and fits with all variables, then chooses a model; message boxes go to standard error while it runs.
/// \pre a QApplication, as components are widgets.
/// \throws EPlatformError when the database, a field or a conversion fails.
SelectResult select(const SelectOptions &options);

} // namespace nuvo
