// SPDX-License-Identifier: MIT
#pragma once

#include "app/Syntax.h"

namespace nuvo {

/// The most denominators that a table of F quantiles takes.
inline constexpr int MaxDenominators = 1000000;

struct FTableOptions
{
    QString database;
    QString table;
    int denominators = 2500; ///< 1 to MaxDenominators
    bool replace = false;
};

/// The command line of ftable.
class FTableCommand : public CommandSyntax
{
public:
    explicit FTableCommand(CLI::App &program);
    FTableOptions read() const;

private:
    CLI::Option *database_;
    CLI::Option *table_;
    CLI::Option *denominators_;
    CLI::Option *replace_;
};

/// Numerators of the table: 1 to this.
inline constexpr int FTableNumerators = 10;

/// What the table holds of the F distribution for one pair of degrees of freedom.
struct FQuantiles
{
    double upper1;  ///< exceeded with probability 0.01
    double upper5;  ///< exceeded with probability 0.05, which is the 95th percentile
    double upper10; ///< exceeded with probability 0.10
};

/// To within a few units of a double's last digit. \pre both at least 1
FQuantiles fQuantiles(int numerator, int denominator);

/// Makes a table of F quantiles: key (Numerator, Denominator), columns "1 Percent", "5 Percent", "10 Percent" with
/// the upper critical values and "95 Percent" with the 95th percentile. Draws a progress bar on a terminal when it
/// takes longer than a moment. \return one line that says what was made \throws EPlatformError when the database
/// fails, and when the table is there and is not to be replaced; Interrupted when a signal came.
QString makeFTable(const FTableOptions &options);

} // namespace nuvo
