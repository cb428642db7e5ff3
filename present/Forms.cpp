#include "present/Forms.h"

#include <QFontMetrics>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScreen>
#include <QStyle>
#include <QTextDocument>

#include <algorithm>

namespace nuvo {

QPalette formPalette()
{
    QPalette palette(QColor(0xd9, 0xd9, 0xd9));
    palette.setColor(QPalette::Highlight, QColor(0xa6, 0xca, 0xf0));
    palette.setColor(QPalette::HighlightedText, Qt::black);
    return palette;
}

QFont formFont()
{
    QFont font(QStringLiteral("Arial"));
    font.setPixelSize(pointsToPixels(8));
    return font;
}

QPalette paperPalette()
{
    QPalette palette(formPalette());
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
