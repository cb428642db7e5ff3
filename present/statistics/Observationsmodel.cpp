// SPDX-License-Identifier: MIT
#include "present/statistics/Observationsmodel.h"

#include "platform/Messages.h"
#include "present/Significant.h"
#include "present/controls/Figuretable.h"

#include <QLocale>

#include <cmath>

namespace nuvo {

void ObservationsModel::SetFigures(const Figures &figures)
{
    beginResetModel();
    columns_.clear();
    records_.clear();
    rows_.clear();
    const std::size_t n = figures.observed.size();
    for (std::size_t i = 0; i < n; ++i) {
        records_.push_back(recordOf(figures, i));
        rows_.insert(records_.back(), int(i));
    }
    const auto add = [this, n](const QString &name, const QString &title, const QString &hint,
                               std::vector<double> values, Reason reason = None) {
        values.resize(n, Figures::None);
        columns_.push_back({withoutControls(title), hint, std::move(values), reason, withoutControls(name)});
    };
    add(QStringLiteral("record"), tr("Record"), tr("Place of the record in the dataset"),
        {records_.begin(), records_.end()}, Any);
    add(figures.response.term, figures.response.term, tr("Response"), figures.observed);
    for (std::size_t j = 0; j < figures.x.size(); ++j)
        add(figures.columns[j].term, figures.columns[j].term, tr("Term %1").arg(j + 1), figures.x[j]);
    add(QStringLiteral("fitted"), tr("Fitted"), tr("Fitted value"), figures.fitted);
    add(QStringLiteral("residual"), tr("Residual"), tr("Response less fitted value"), figures.residuals);
    const Influence influence = figures.influence.value_or(Influence());
    add(QStringLiteral("leverage"), tr("Leverage"), tr("Leverage; stands out above 2 p/n"), influence.leverage,
        Leverage);
    add(QStringLiteral("standardizedResidual"), tr("Standardized"), tr("Standardized residual"),
        influence.standardizedResiduals);
    add(QStringLiteral("studentizedResidual"), tr("Studentized"),
        tr("Studentized residual; stands out beyond 2 either way"), influence.studentizedResiduals, Residual);
    add(QStringLiteral("cook"), QStringLiteral("Cook"), tr("Cook's distance; stands out above 4/n"), influence.cook,
        Cook);
    add(QStringLiteral("dffits"), QStringLiteral("DFFITS"),
        tr("Change of the fitted value without the observation; stands out beyond 2 sqrt(p/n)"), influence.dffits,
        Dffits);
    add(QStringLiteral("standsOutBy"), tr("Stands out by"), tr("What makes the observation worth looking at"), {},
        Any);

    reasons_.assign(n, None);
    words_ = QStringList(qsizetype(n), QString());
    const std::vector<StandOut> found = standOuts(figures);
    standOuts_ = int(found.size());
    for (const StandOut &one : found) {
        if (one.observation >= n)
            continue;
        reasons_[one.observation] = Any | (one.leverage ? Leverage : None) | (one.residual ? Residual : None) |
                                    (one.cook ? Cook : None) | (one.dffits ? Dffits : None);
        words_[qsizetype(one.observation)] = one.inWords();
    }
    endResetModel();
}

int ObservationsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(records_.size());
}

int ObservationsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(columns_.size());
}

bool ObservationsModel::IsReason(int row, int column) const
{
    return (reasons_[std::size_t(row)] & columns_[std::size_t(column)].reason) != 0;
}

QString ObservationsModel::Exact(int row, int column, QChar point) const
{
    if (IsWords(column))
        return words_[row];
    if (IsRecord(column))
        return QString::number(RecordOf(row));
    const double value = columns_[std::size_t(column)].values[std::size_t(row)];
    if (std::isnan(value))
        return {};
    return QString::number(value, 'g', QLocale::FloatingPointShortest).replace(u'.', point);
}

QString ObservationsModel::Stored(int row, int column) const
{
    if (!IsWords(column))
        return Exact(row, column, u'.');
    QStringList names;
    for (const Column &one : columns_) {
        if (one.reason != Any && (reasons_[std::size_t(row)] & one.reason) != 0)
            names.append(one.name);
    }
    return names.join(u' ');
}

QString ObservationsModel::Hint(int row, int column) const
{
    const QString value = Exact(row, column, QLocale().decimalPoint().front());
    QString hint = tr("Record %1").arg(RecordOf(row));
    if (!IsRecord(column) && !IsWords(column))
        hint += QStringLiteral(", %1: %2").arg(Title(column), value.isEmpty() ? tr("does not exist") : value);
    if (IsReason(row, column))
        hint += u'\n' + tr("Stands out by: %1").arg(words_[row]);
    return hint;
}

QVariant ObservationsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const int row = index.row();
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
        if (IsRecord(column) || IsWords(column))
            return Exact(row, column, u'.');
        return significant(columns_[std::size_t(column)].values[std::size_t(row)], 7,
                           QLocale().decimalPoint().front());
    case Qt::ToolTipRole:
        // Field names are no markup.
        return QStringLiteral("<p style='white-space:pre'>") + Hint(row, column).toHtmlEscaped() +
               QStringLiteral("</p>");
    case Qt::AccessibleTextRole:
        return Hint(row, column).replace(u'\n', QLatin1String(". "));
    case Qt::TextAlignmentRole:
        return int((IsWords(column) ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    case NumberRole:
        if (IsWords(column))
            return words_[row];
        return columns_[std::size_t(column)].values[std::size_t(row)];
    case MarkedRole:
        return IsReason(row, column);
    default:
        return {};
    }
}

QVariant ObservationsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= int(columns_.size()))
        return {};
    if (role == Qt::DisplayRole)
        return Title(section);
    if (role == Qt::ToolTipRole)
        return columns_[std::size_t(section)].hint;
    return {};
}

} // namespace nuvo
