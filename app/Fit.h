#pragma once

#include "app/Options.h"

namespace nuvo {

struct FitResult
{
    QString output; ///< for standard output, in the format that was asked for
    bool fitted = false;
};

/// Loads and fits; message boxes go to standard error while it runs. \pre a QApplication, as components are widgets.
/// \throws EPlatformError when the database, a field or a conversion fails.
FitResult fit(const FitOptions &options);

} // namespace nuvo
