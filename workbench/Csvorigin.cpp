// SPDX-License-Identifier: MIT
#include "workbench/Csvorigin.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QJsonArray>

namespace nuvo {

namespace {

/// A character as it stands in JSON; nothing for one that was not told.
QString textOf(std::optional<char> sign)
{
    return sign ? QString(QLatin1Char(*sign)) : QString();
}

std::optional<char> signOf(const QJsonValue &json)
{
    const QString text = json.toString();
    return text.size() == 1 && text[0].unicode() < 0x80 ? std::optional(char(text[0].unicode())) : std::nullopt;
}

} // namespace

CsvOrigin originOf(const QString &table, const QString &file, const CsvCorrections &corrections)
{
    const QFileInfo info(file);
    return {table, file, corrections, info.size(), info.lastModified().toMSecsSinceEpoch()};
}

QString CsvOrigin::whyNot() const
{
    const QFileInfo info(file);
    if (!info.isFile())
        return QCoreApplication::translate("Ascommand", "%1 is no longer there").arg(info.fileName());
    if (info.size() != size || info.lastModified().toMSecsSinceEpoch() != modified)
        return QCoreApplication::translate("Ascommand", "%1 has changed since it was read").arg(info.fileName());
    return {};
}

QJsonObject toJson(const CsvOrigin &origin)
{
    QJsonArray nulls;
    for (const std::string &null : origin.corrections.nulls)
        nulls.append(QString::fromStdString(null));
    QString encoding;
    for (const auto &[name, one] : csvEncodings) {
        if (one == origin.corrections.encoding)
            encoding = QLatin1String(name);
    }
    return {{QStringLiteral("table"), origin.table},
            {QStringLiteral("file"), origin.file},
            {QStringLiteral("size"), double(origin.size)},
            {QStringLiteral("modified"), double(origin.modified)},
            {QStringLiteral("encoding"), encoding},
            {QStringLiteral("separator"), textOf(origin.corrections.separator)},
            {QStringLiteral("decimal"), textOf(origin.corrections.decimal)},
            {QStringLiteral("nulls"), nulls}};
}

CsvOrigin originFromJson(const QJsonObject &json)
{
    CsvOrigin origin;
    origin.table = json.value(QLatin1StringView("table")).toString();
    origin.file = json.value(QLatin1StringView("file")).toString();
    origin.size = qint64(json.value(QLatin1StringView("size")).toDouble());
    origin.modified = qint64(json.value(QLatin1StringView("modified")).toDouble());
    const QString encoding = json.value(QLatin1StringView("encoding")).toString();
    for (const auto &[name, one] : csvEncodings) {
        if (encoding == QLatin1String(name))
            origin.corrections.encoding = one;
    }
    origin.corrections.separator = signOf(json.value(QLatin1StringView("separator")));
    origin.corrections.decimal = signOf(json.value(QLatin1StringView("decimal")));
    for (const auto &null : json.value(QLatin1StringView("nulls")).toArray())
        origin.corrections.nulls.push_back(null.toString().toStdString());
    return origin;
}

} // namespace nuvo
