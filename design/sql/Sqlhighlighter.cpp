// SPDX-License-Identifier: MIT
#include "design/sql/Sqlhighlighter.h"

#include <QRegularExpression>
#include <QSet>
#include <QWidget>

namespace nuvo {

namespace {

const QSet<QString> &words()
{
    static const QSet<QString> all = [] {
        const QString list = QStringLiteral(
            "ALL AND AS ASC AVG BETWEEN BY CASE CAST COALESCE COUNT CROSS DESC DISTINCT ELSE END EXCEPT EXISTS FALSE "
            "FETCH FIRST FROM FULL GROUP HAVING ILIKE IN INNER INTERSECT IS JOIN LAST LEFT LIKE LIMIT MAX MIN "
            "NATURAL NOT NULL NULLIF NULLS OFFSET ON OR ORDER OUTER OVER PARTITION RECURSIVE RIGHT ROWS SELECT SHOW "
            "SUM THEN TRUE UNION USING VALUES WHEN WHERE WINDOW WITH");
        const QStringList split = list.split(u' ');
        return QSet<QString>(split.begin(), split.end());
    }();
    return all;
}

/// Of the two the one that can be read on the ground.
QColor ink(const QColor &ground, const QColor &onLight, const QColor &onDark)
{
    return ground.lightnessF() > 0.5F ? onLight : onDark;
}

} // namespace

void SqlHighlighter::highlightBlock(const QString &text)
{
    enum State { Plain = 0, Comment = 1 };
    static const QRegularExpression pieces(
        QStringLiteral("(?<comment>--.*$)|(?<begin>/\\*)|(?<literal>'(?:[^']|'')*'?)|(?<name>\"(?:[^\"]|\"\")*\"?)|"
                       "(?<parameter>(?<![:\\w]):[A-Za-z_]\\w*)|(?<number>\\b\\d+(?:\\.\\d*)?(?:[eE][-+]?\\d+)?\\b)|"
                       "(?<word>[A-Za-z_]\\w*)"));
    const QColor ground = editor_.palette().color(QPalette::Base);
    QTextCharFormat quiet;
    quiet.setForeground(editor_.palette().color(QPalette::PlaceholderText));
    quiet.setFontItalic(true);
    QTextCharFormat word;
    word.setForeground(ink(ground, QColor(0x0b, 0x3d, 0x91), QColor(0x8a, 0xc4, 0xff)));
    word.setFontWeight(QFont::Bold);
    QTextCharFormat literal;
    literal.setForeground(ink(ground, QColor(0x1d, 0x6b, 0x2c), QColor(0x9c, 0xdc, 0x9c)));
    QTextCharFormat number;
    number.setForeground(ink(ground, QColor(0x8a, 0x3b, 0x00), QColor(0xff, 0xc0, 0x7a)));

    const QString end = QStringLiteral("*/");
    qsizetype from = 0;
    setCurrentBlockState(Plain);
    const auto comment = [&](qsizetype begin) {
        const qsizetype found = text.indexOf(end, begin);
        const qsizetype until = found < 0 ? text.size() : found + end.size();
        if (found < 0)
            setCurrentBlockState(Comment);
        return until;
    };
    if (previousBlockState() == Comment) {
        from = comment(0);
        setFormat(0, int(from), quiet);
    }
    while (from < text.size()) {
        const QRegularExpressionMatch match = pieces.match(text, from);
        if (!match.hasMatch())
            return;
        const qsizetype begin = match.capturedStart();
        qsizetype until = match.capturedEnd();
        const auto paint = [&](const QTextCharFormat &format) { setFormat(int(begin), int(until - begin), format); };
        if (match.hasCaptured(QStringLiteral("begin"))) {
            until = comment(begin + 2);
            paint(quiet);
        } else if (match.hasCaptured(QStringLiteral("comment"))) {
            paint(quiet);
        } else if (match.hasCaptured(QStringLiteral("literal"))) {
            paint(literal);
        } else if (match.hasCaptured(QStringLiteral("number")) || match.hasCaptured(QStringLiteral("parameter"))) {
            paint(number);
        } else if (match.hasCaptured(QStringLiteral("word")) && words().contains(match.captured().toUpper())) {
            paint(word);
        }
        from = until;
    }
}

} // namespace nuvo
