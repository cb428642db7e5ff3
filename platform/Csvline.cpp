// SPDX-License-Identifier: MIT
#include "platform/Csvline.h"

#include <algorithm>

namespace nuvo {

namespace {

bool isBlank(QChar c)
{
    return c == u' ' || (c >= u'\t' && c <= u'\r');
}

QString csvCell(QString text)
{
    const bool parts = std::any_of(text.cbegin(), text.cend(),
                                   [](QChar c) { return c == u',' || c == u'"' || c == u'\n' || c == u'\r'; });
    if (!parts && (text.isEmpty() || (!isBlank(text.front()) && !isBlank(text.back()))))
        return text;
    return u'"' + text.replace(u'"', QLatin1String("\"\"")) + u'"';
}

} // namespace

QString csvLine(const QStringList &cells)
{
    QStringList line;
    for (const QString &cell : cells)
        line += csvCell(cell);
    return line.join(u',');
}

} // namespace nuvo
