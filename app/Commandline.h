// SPDX-License-Identifier: MIT
#pragma once

#include "app/Fit.h"
#include "app/Ftable.h"
#include "app/Import.h"
#include "app/Run.h"
#include "app/Samples.h"
#include "app/Select.h"

#include <QString>

#include <string>
#include <variant>
#include <vector>

namespace nuvo {

/// A text for standard output: help or the version.
struct PrintOptions
{
    QString text;
};

using Command =
    std::variant<PrintOptions, FitOptions, SelectOptions, RunOptions, ImportOptions, FTableOptions, SamplesOptions>;

/// Reads a command line, the program's name left out. \throws UsageError, whose sentence ends in a hint at --help;
/// with an empty one how to begin.
Command parseCommandLine(std::vector<std::string> arguments);

} // namespace nuvo
