#pragma once

#include <QPixmap>

namespace nuvo {

enum class Picture {
    Records, ///< a stack of records, 28 x 28
    Fit,     ///< points and the line through them, 28 x 28
    Models,  ///< candidates, the best one marked, 32 x 32
};

/// One of the dialogs' pictures for a screen of that pixel ratio, on a transparent ground.
QPixmap drawPicture(Picture picture, qreal ratio);

} // namespace nuvo
