// SPDX-License-Identifier: MIT
#include "present/Forms.h"

#include <QAbstractButton>
#include <QFontMetrics>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScreen>
#include <QStyle>
#include <QTextDocument>

#include <algorithm>
#include <cstdlib>

namespace nuvo {

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness();
}

QPalette lightPalette()
{
    QPalette palette(QColor(0xd9, 0xd9, 0xd9));
    palette.setColor(QPalette::Highlight, QColor(0xa6, 0xca, 0xf0));
    palette.setColor(QPalette::HighlightedText, Qt::black);
    return palette;
}

void giveLightGround(QWidget &control)
{
    if (!isDark(control.palette()))
        return;
    QPalette palette = lightPalette();
    palette.setColor(control.foregroundRole(), control.palette().color(control.foregroundRole()));
    control.setPalette(palette);
    control.setAutoFillBackground(true);
}

QPalette gaugePalette(const QPalette &desktop)
{
    constexpr int Light = 180;
    QPalette palette;
    palette.setResolveMask(0);
    if (desktop.color(QPalette::Highlight).lightness() < Light)
        palette.setColor(QPalette::Highlight, lightPalette().color(QPalette::Highlight));
    return palette;
}

void stackTitle(QLabel &dark, QLabel &white)
{
    (isDark(white.parentWidget()->palette()) ? white : dark).raise();
}

QFont formFont()
{
    QFont font(QStringLiteral("Arial"));
    font.setPixelSize(pointsToPixels(8));
    return font;
}

QPalette paperPalette()
{
    QPalette palette(lightPalette());
    palette.setColor(QPalette::Window, Qt::white);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::WindowText, Qt::black);
    palette.setColor(QPalette::Text, Qt::black);
    return palette;
}

QFont matrixFont(int points)
{
    QFont font(QStringLiteral("Liberation Mono"));
    font.setStyleHint(QFont::TypeWriter);
    font.setBold(false); // said, so that a bold form does not hand its own on
    font.setPixelSize(pointsToPixels(points));
    return font;
}

void markFocus(QWidget &form)
{
    constexpr int Pale = 150;
    for (QAbstractButton *button : form.findChildren<QAbstractButton *>()) {
        const QColor selected = button->palette().color(QPalette::Highlight);
        const QColor ground = button->palette().color(QPalette::Button);
        if (std::abs(selected.lightness() - ground.lightness()) >= Pale)
            continue;
        QPalette palette = button->palette();
        palette.setColor(QPalette::Highlight,
                         ground.lightness() > 128 ? QColor(0, 0x3c, 0xa0) : QColor(0x7a, 0xc0, 0xff));
        button->setPalette(palette);
    }
}

void centreOnScreen(QWidget &window)
{
    window.move(
        QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, window.size(), window.screen()->availableGeometry())
            .topLeft());
}

void setTitleLetters(QLabel &title, const QString &family, int pixels, const QColor &ink)
{
    QFont font(family);
    font.setPixelSize(pixels);
    font.setBold(true);
    title.setFont(font);
    QPalette palette = title.palette();
    palette.setColor(title.foregroundRole(), ink);
    title.setPalette(palette);
}

QSize neededSize(const QPlainTextEdit &memo)
{
    const QFontMetrics metrics(memo.font());
    int width = 0;
    int lines = 0;
    for (const QString &line : memo.toPlainText().split(u'\n')) {
        width = std::max(width, metrics.horizontalAdvance(line));
        ++lines;
    }
    const int margins = 2 * (memo.frameWidth() + int(memo.document()->documentMargin()) + 1);
    return {width + margins, lines * metrics.lineSpacing() + margins};
}

} // namespace nuvo
