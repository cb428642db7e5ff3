#pragma once

#include "app/Options.h"

namespace nuvo {

struct RunResult
{
    QString output;         ///< for standard output, in the format that was asked for
    bool succeeded = false; ///< whether every fit and every selection came to a result
};

/// Loads a form and, in the form's order, opens and fits every regression component and runs every selection
/// component; message boxes go to standard error meanwhile. Paths that the form names start in the working directory.
/// \pre a QApplication, as components are widgets.
/// \throws EPlatformError when the form cannot be loaded or has no such component, when a selection is bound to
/// nothing, and when the database, a field or a conversion fails.
RunResult runForm(const RunOptions &options);

} // namespace nuvo
