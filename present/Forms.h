// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "platform/Messages.h"

#include <QFont>
#include <QPalette>
#include <QSize>
#include <QString>

#include <exception>
#include <utility>

class QColor;
class QLabel;
class QPlainTextEdit;
class QWidget;

namespace nuvo {

/// Whether a palette has light letters on a dark ground. The forms have the desktop's colours, but for parts whose
/// colours are their own: these have both, letters and ground, so that a dark desktop cannot take one of them away.
NUVO_EXPORT bool isDark(const QPalette &palette);
/// Black on light grey, for such parts.
NUVO_EXPORT QPalette lightPalette();
/// Gives a control whose letters are of a dark colour of their own a light ground where that around it is dark.
NUVO_EXPORT void giveLightGround(QWidget &control);
/// The desktop's colours, with one for what is selected that navy stands out from: a light blue where it would not.
QPalette gaugePalette(const QPalette &desktop);
/// Puts letters with a shadow, dark ones before white ones, so that they are read on the desktop's ground: the white
/// ones are in front where that is dark.
void stackTitle(QLabel &dark, QLabel &white);
/// Has the buttons of a form show the focus in a colour that stands out from them.
NUVO_EXPORT void markFocus(QWidget &form);
/// The forms' letters: 8 points, that is 11 pixels of Arial. The forms are laid out in pixels.
NUVO_EXPORT QFont formFont();

/// Black on white, for what looks like paper.
QPalette paperPalette();
/// Fixed-pitch letters: the matrices are aligned by blanks.
QFont matrixFont(int points);
/// Bold letters of a form's title. A style sheet says as much and takes longer than all the rest of a small form.
void setTitleLetters(QLabel &title, const QString &family, int pixels, const QColor &ink);
/// What the lines of a memo take, its frame and margins included.
QSize neededSize(const QPlainTextEdit &memo);

/// Points of the forms as pixels: 8 points are 11.
constexpr int pointsToPixels(int points)
{
    return (points * 96 + 36) / 72;
}

/// Puts a window that is about to open into the middle of its screen, wherever the window behind it stands.
void centreOnScreen(QWidget &window);

/// Runs a handler of a form; an error becomes a message box, since it must not reach Qt's event loop.
template <class Handler>
void guarded(Handler &&handler)
{
    try {
        std::forward<Handler>(handler)();
    } catch (const std::exception &error) {
        MessageDlg(QString::fromUtf8(error.what()), TMsgDlgType::mtError);
    }
}

} // namespace nuvo
