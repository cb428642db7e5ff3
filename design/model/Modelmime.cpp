#include "design/model/Modelmime.h"

#include "design/model/Regressionmodel.h"

#include <QDataStream>
#include <QIODevice>
#include <QMimeData>

namespace nuvo {

namespace {

const QString fieldsKind = QStringLiteral("application/x-nuvo-fields");
const QString placeKind = QStringLiteral("application/x-nuvo-place");

} // namespace

QMimeData *mimeOfFields(const QStringList &names)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << names;
    auto *mime = new QMimeData;
    mime->setData(fieldsKind, bytes);
    return mime;
}

QMimeData *mimeOfPlace(int place)
{
    auto *mime = new QMimeData;
    mime->setData(placeKind, QByteArray::number(place));
    return mime;
}

QStringList fieldsIn(const QMimeData *mime)
{
    QStringList names;
    QDataStream stream(mime->data(fieldsKind));
    stream >> names;
    return stream.status() == QDataStream::Ok ? names : QStringList();
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
