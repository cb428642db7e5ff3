// SPDX-License-Identifier: MIT
#include <QFile>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <cmath>
#include <cstdio>

// Paints what standard input has as a terminal would show it: terminalpicture FILE.png
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QFile input;
    if (argc != 2 || !input.open(stdin, QIODevice::ReadOnly))
        return 2;
    const QStringList lines = QString::fromUtf8(input.readAll()).trimmed().split(u'\n');

    QFont font(QStringLiteral("Liberation Mono"));
    font.setPixelSize(13);
    const QFontMetricsF metrics(font);
    const double margin = 16;
    double width = 0;
    for (const QString &line : lines)
        width = std::max(width, metrics.horizontalAdvance(line));
    const double height = metrics.lineSpacing() * double(lines.size());

    // Two pixels a point: sharp on dense screens too.
    const int ratio = 2;
    QImage image(QSize(int(std::ceil(width + 2 * margin)), int(std::ceil(height + 2 * margin))) * ratio,
                 QImage::Format_Grayscale8);
    image.setDevicePixelRatio(ratio);
    image.fill(QColor(0xfa, 0xfa, 0xfa));
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(QColor(0x20, 0x20, 0x20));
    double y = margin + metrics.ascent();
    for (const QString &line : lines) {
        painter.drawText(QPointF(margin, y), line);
        y += metrics.lineSpacing();
    }
    painter.end();
    if (!image.save(QString::fromLocal8Bit(argv[1]))) {
        std::fprintf(stderr, "terminalpicture: cannot write %s\n", argv[1]);
        return 1;
    }
    return 0;
}
