#pragma once

#include "app/Options.h"

namespace nuvo {

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
