// SPDX-License-Identifier: MIT
#include "design/model/Fieldsmodel.h"

#include "design/model/Modelmime.h"
#include "platform/Messages.h"

#include <QIconEngine>
#include <QMimeData>
#include <QPainter>

namespace nuvo {

namespace {

/// A sign before a field's name, in the colour of letters: fields are told apart without it as well.
class SignEngine : public QIconEngine
{
public:
    SignEngine(QChar sign, const QColor &ink) : sign_(sign), ink_(ink) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        QFont font = painter->font();
        font.setBold(true);
        font.setPixelSize(std::max(6, rect.height() * 3 / 4));
        painter->setFont(font);
        painter->setPen(mode == QIcon::Selected ? QGuiApplication::palette().color(QPalette::HighlightedText) : ink_);
        painter->drawText(rect, Qt::AlignCenter, QString(sign_));
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap map(size);
        map.fill(Qt::transparent);
        QPainter painter(&map);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return map;
    }
    QIconEngine *clone() const override { return new SignEngine(*this); }

private:
    QChar sign_;
    QColor ink_;
};

} // namespace

void FieldsModel::SetFields(const std::vector<ModelField> &fields)
{
    beginResetModel();
    fields_ = fields;
    uses_.assign(fields.size(), QString());
    endResetModel();
}

void FieldsModel::SetModel(const RegressionModel &model)
{
    for (int row = 0; row < int(fields_.size()); ++row) {
        QStringList labels;
        for (const int place : model.placesOf(FieldAt(row).name))
            labels += RegressionModel::label(place);
        uses_[std::size_t(row)] = labels.join(QStringLiteral(", "));
    }
    if (!fields_.empty())
        Q_EMIT dataChanged(index(0, UseColumn), index(int(fields_.size()) - 1, UseColumn));
}

int FieldsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(fields_.size());
}

int FieldsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : Columns;
}

QString FieldsModel::Hint(const ModelField &field) const
{
    const QString name = withoutControls(field.name);
    if (!field.numeric)
        return tr("%1 holds no number (%2): it cannot be a variable of a regression.").arg(name, field.kind);
    return tr("%1 (%2). Double click, Enter or Insert: the next free place. Y: the response. Or drag it "
              "to a place.")
        .arg(name, field.kind);
}

QVariant FieldsModel::data(const QModelIndex &index, int role) const
{
    const ModelField &field = FieldAt(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return index.column() == NameColumn   ? withoutControls(field.name)
               : index.column() == KindColumn ? field.kind
                                              : uses_[std::size_t(index.row())];
    case Qt::DecorationRole:
        if (index.column() == NameColumn)
            return QIcon(
                new SignEngine(field.numeric ? u'#' : u'–',
                               view_.palette().color(field.numeric ? QPalette::Link : QPalette::PlaceholderText)));
        break;
    case Qt::ForegroundRole:
        if (!field.numeric)
            return view_.palette().color(QPalette::PlaceholderText);
        break;
    case Qt::ToolTipRole:
        return Hint(field);
    case Qt::AccessibleTextRole:
        if (index.column() == NameColumn && !field.numeric)
            return tr("%1, cannot be used").arg(field.name);
        break;
    case Qt::AccessibleDescriptionRole:
        return Hint(field);
    default:
        break;
    }
    return {};
}

QVariant FieldsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == NameColumn ? tr("Field") : section == KindColumn ? tr("Holds") : tr("Used as");
}

Qt::ItemFlags FieldsModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    const Qt::ItemFlags all = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    return FieldAt(index.row()).numeric ? all | Qt::ItemIsDragEnabled : all;
}

QMimeData *FieldsModel::mimeData(const QModelIndexList &indexes) const
{
    QStringList names;
    for (const QModelIndex &index : indexes) {
        if (index.column() == NameColumn && FieldAt(index.row()).numeric)
            names += FieldAt(index.row()).name;
    }
    return mimeOfFields(names);
}

void FieldsFilter::SetText(const QString &text)
{
    text_ = text.trimmed();
    invalidate();
}

bool FieldsFilter::filterAcceptsRow(int row, const QModelIndex &) const
{
    const ModelField &field = static_cast<const FieldsModel *>(sourceModel())->FieldAt(row);
    return text_.isEmpty() || field.name.contains(text_, Qt::CaseInsensitive) ||
           field.kind.startsWith(text_, Qt::CaseInsensitive);
}

} // namespace nuvo
