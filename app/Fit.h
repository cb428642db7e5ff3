// SPDX-License-Identifier: MIT
#pragma once

#include "app/Fieldvalues.h"
#include "app/Modeloptions.h"
#include "engine/kernel/Robust.h"
#include "present/figures/Figurefile.h"

#include <QSize>

namespace nuvo {

/// The width and the height of a plot's picture, in pixels.
inline constexpr int LeastPlotSide = 100;
inline constexpr int MostPlotSide = 10000;

struct FitOptions : ModelOptions
{
    QString message;
    bool warnings = false;
    bool matrices = false;
    QString saveReport; ///< a file; empty for none
    QString savePlots;  ///< a directory for the figures; empty for none
    FigureFormat plotFormat = FigureFormat::Png;
    QSize plotSize = UsualFigureSize;
    QString saveCanvases;     ///< a directory for the plot window's canvases; empty for none
    QString saveObservations; ///< a file; empty for none
    double level = 0.95;      ///< of intervals; more than 0, less than 1
    bool influence = false;
    std::optional<RobustKind> robust;
    QList<FieldValues> at; ///< where to predict, in the order given
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
    CLI::Option *plotFormat_;
    CLI::Option *plotSize_;
    CLI::Option *saveCanvases_;
    CLI::Option *saveObservations_;
    CLI::Option *level_;
    CLI::Option *influence_;
    CLI::Option *robust_;
    CLI::Option *at_;
    CLI::Option *show_;
};

/// Loads and fits; message boxes go to standard error meanwhile. When a fit came out, writes the files that are asked
/// for; then prints, in the format that is asked for; then shows the report window until it is closed. Returns
/// whether a fit came out. \pre a QApplication, as components are widgets, with a display for showing and with fonts
/// for writing. \throws EPlatformError when the database, a field, a conversion or a file fails; nothing is printed
/// then.
bool fit(const FitOptions &options);

} // namespace nuvo
