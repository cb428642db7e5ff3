// SPDX-License-Identifier: MIT
#pragma once

#include <QPixmap>

namespace nuvo {

enum class Picture {
    Records, ///< a stack of records, 28 x 28
    Fit,     ///< points and the line through them, 28 x 28
    Models,  ///< candidates, the best one marked, 32 x 32
    // The plot window's buttons, 24 x 24.
    Scatter,          ///< dots along a slope
    ResidualInput,    ///< dots about a line, one after the other
    ResidualControl,  ///< dots about a line, an X below
    ResidualResponse, ///< dots about a line, a Y below
    ResidualFitted,   ///< dots about a line, a Y with a hat below
    Ecdf,             ///< a rising curve of dots
    Clear,            ///< an empty sheet
    Close,            ///< a cross
};

/// One of the dialogs' pictures for a screen of that pixel ratio, on a transparent ground, which can be a dark one.
QPixmap drawPicture(Picture picture, qreal ratio, bool onDark = false);

} // namespace nuvo
