#include "present/Forms.h"

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

} // namespace nuvo
