#pragma once

#include "app/Modeloptions.h"

namespace nuvo {

struct FitOptions : ModelOptions
{
    QString message;
    bool warnings = false;
    bool matrices = false;
    QString saveReport; ///< a file; empty for none
    QString savePlots;  ///< a directory; empty for none
    bool show = false;
};

/// The command line of fit.
class FitCommand : public ModelSyntax
{
public:
    explicit FitCommand(CLI::App &program);
    FitOptions read() const;

private:
    CLI::Option *message_;
    CLI::Option *warnings_;
    CLI::Option *matrices_;
    CLI::Option *saveReport_;
    CLI::Option *savePlots_;
    CLI::Option *show_;
};

/// Loads and fits; message boxes go to standard error meanwhile. When a fit came out, writes the files that are asked
/// for; then prints, in the format that is asked for; then shows the report window until it is closed. Returns
/// whether a fit came out. \pre a QApplication, as components are widgets, with a display for showing and with fonts
/// for writing. \throws EPlatformError when the database, a field, a conversion or a file fails; nothing is printed
/// then.
bool fit(const FitOptions &options);

} // namespace nuvo
