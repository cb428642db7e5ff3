// SPDX-License-Identifier: MIT
#include "design/model/Modelmime.h"

#include "design/model/Regressionmodel.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QMimeData>

namespace nuvo {

namespace {

const QString fieldsKind = QStringLiteral("application/x-nuvo-fields");
const QString placeKind = QStringLiteral("application/x-nuvo-place");

} // namespace

QMimeData *mimeOfFields(const QStringList &names)
{
    auto *mime = new QMimeData;
    mime->setData(fieldsKind, QJsonDocument(QJsonArray::fromStringList(names)).toJson(QJsonDocument::Compact));
    return mime;
}

QMimeData *mimeOfPlace(int place)
{
    auto *mime = new QMimeData;
    mime->setData(placeKind, QByteArray::number(place));
    return mime;
}

// Another program may give anything this name: Qt's own form of a list would believe whatever length stands there.
QStringList fieldsIn(const QMimeData *mime)
{
    QStringList names;
    const QJsonArray list = QJsonDocument::fromJson(mime->data(fieldsKind)).array();
    for (const auto &name : list) {
        if (!name.isString())
            return {};
        names.append(name.toString());
    }
    return names;
}

std::optional<int> placeIn(const QMimeData *mime)
{
    bool isNumber = false;
    const int place = mime->data(placeKind).toInt(&isNumber);
    if (!isNumber || place < 0 || place >= RegressionModel::Places)
        return {};
    return place;
}

} // namespace nuvo
