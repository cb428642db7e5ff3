// SPDX-License-Identifier: MIT
#pragma once

#include "app/Syntax.h"

namespace nuvo {

struct SamplesOptions
{
    QString directory;
    QString database; ///< none is read
};

/// The command line of samples.
class SamplesCommand : public CommandSyntax
{
public:
    explicit SamplesCommand(CLI::App &program);
    SamplesOptions read() const;

private:
    CLI::Option *directory_;
};

/// Writes the samples into a folder, which is made when it is not there: the database samples.db, a CSV file and a
/// form of Qt Designer. All of them or none; nothing that is there already is replaced. \return lines that say what
/// there is now and what to do with it \throws EPlatformError when they cannot be written or one of them is there
/// already; Interrupted when a signal came.
QString makeSamples(const SamplesOptions &options);

} // namespace nuvo
