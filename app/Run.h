// SPDX-License-Identifier: MIT
#pragma once

#include "app/Syntax.h"

namespace nuvo {

struct RunOptions
{
    QString form; ///< a file
    OutputFormat format = OutputFormat::Text;
};

/// The command line of run.
class RunCommand : public CommandSyntax
{
public:
    explicit RunCommand(CLI::App &program);
    RunOptions read() const;

private:
    CLI::Option *form_;
    CLI::Option *format_;
};

/// Loads a form and, in the form's order, opens and fits every regression component and runs every selection
/// component; then prints. Message boxes go to standard error meanwhile. Relative paths of databases are looked for
/// beside the form, then in the working directory. Returns whether every fit and every selection came to a result.
/// \pre a QApplication, as components are widgets. \throws EPlatformError when the form cannot be loaded or has no
/// such component, when a selection is bound to nothing, and when the database, a field or a conversion fails;
/// nothing is printed then.
bool runForm(const RunOptions &options);

} // namespace nuvo
