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

/// The forms' colours are fixed, text and ground alike, so that a dark desktop cannot take one of the two away.
NUVO_EXPORT QPalette formPalette();
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
