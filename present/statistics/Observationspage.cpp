// SPDX-License-Identifier: MIT
#include "present/statistics/Observationspage.h"

#include "platform/Csvline.h"
#include "platform/Savefile.h"
#include "present/Filedialog.h"
#include "present/Forms.h"
#include "present/controls/Figuretable.h"
#include "present/controls/Tablecopy.h"
#include "present/statistics/Observationsmodel.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScopeGuard>
#include <QScopedValueRollback>
#include <QTableView>
#include <QVBoxLayout>

namespace {

class Order : public nuvo::NumberOrder
{
public:
    using NumberOrder::NumberOrder;

    void SetOnlyThose(bool only)
    {
        only_ = only;
        invalidate();
    }

protected:
    bool filterAcceptsRow(int row, const QModelIndex &) const override
    {
        return !only_ || static_cast<const nuvo::ObservationsModel *>(sourceModel())->StandsOut(row);
    }

private:
    bool only_ = false;
};

} // namespace

TObservationsPage::TObservationsPage(QWidget *parent)
    : QWidget(parent), model_(new nuvo::ObservationsModel(this)), order_(new Order(this)),
      view_(new QTableView(this)), onlyThose_(new QCheckBox(tr("&Only what stands out"), this)),
      count_(new QLabel(this)), save_(new QPushButton(tr("Save &table…"), this))
{
    order_->setSourceModel(model_);
    view_->setObjectName(QStringLiteral("ObservationsView"));
    view_->setAccessibleName(tr("Observations"));
    view_->setAccessibleDescription(tr("Every observation with its fitted value, residual and influence on the fit"));
    view_->setModel(order_);
    nuvo::setUpFigureTable(*view_);
    view_->setSelectionMode(QAbstractItemView::ExtendedSelection);

    onlyThose_->setObjectName(QStringLiteral("OnlyStandOuts"));
    count_->setObjectName(QStringLiteral("ObservationsCount"));
    count_->setTextFormat(Qt::PlainText);
    count_->setWordWrap(true); // a narrow window has room for it
    save_->setObjectName(QStringLiteral("SaveObservations"));
    save_->setAutoDefault(false);
    save_->setToolTip(tr("Save all observations with all digits, as CSV"));

    auto *top = new QHBoxLayout;
    top->addWidget(onlyThose_);
    top->addSpacing(12);
    top->addWidget(count_, 1);
    top->addWidget(save_);
    auto *all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addWidget(view_, 1);

    setTabOrder(onlyThose_, save_);
    setTabOrder(save_, view_);
    view_->installEventFilter(this);
    connect(onlyThose_, &QCheckBox::toggled, this,
            [this](bool on) { static_cast<Order *>(order_)->SetOnlyThose(on); });
    connect(save_, &QPushButton::clicked, this, &TObservationsPage::SaveAs);
    connect(view_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (!quiet_)
            Q_EMIT SelectionChanged();
    });
    SetFigures({});
}

void TObservationsPage::SetFigures(const nuvo::Figures &figures)
{
    const QScopedValueRollback quiet(quiet_, true);
    model_->SetFigures(figures);
    const int n = model_->rowCount();
    const int count = model_->StandOutCount();
    if (n == 0)
        count_->setText(tr("There is no fit with observations."));
    else if (!figures.influence)
        count_->setText(tr("%1 observations").arg(n));
    else
        count_->setText((count == 1 ? tr("%1 of %2 observations stands out") : tr("%1 of %2 observations stand out"))
                            .arg(count)
                            .arg(n));
    onlyThose_->setEnabled(n > 0);
    save_->setEnabled(n > 0);
    // Words stand where they are seen without scrolling; files and the clipboard have them last.
    QHeaderView *const header = view_->horizontalHeader();
    const int last = model_->columnCount() - 1;
    for (int column = 0; column <= last; ++column)
        header->moveSection(header->visualIndex(column), column);
    header->moveSection(last, 1);
    view_->resizeColumnsToContents();
}

bool TObservationsPage::eventFilter(QObject *watched, QEvent *event)
{
    // The view alone would copy a cell, and a window around it may have the key for itself.
    const bool override = event->type() == QEvent::ShortcutOverride;
    if ((override || event->type() == QEvent::KeyPress) &&
        static_cast<QKeyEvent *>(event)->matches(QKeySequence::Copy)) {
        event->accept();
        if (!override)
            Copy();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

std::set<qint64> TObservationsPage::Selected() const
{
    std::set<qint64> records;
    for (const QItemSelectionRange &range : view_->selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            records.insert(model_->RecordOf(order_->mapToSource(order_->index(row, 0)).row()));
    }
    return records;
}

void TObservationsPage::SetSelected(const std::set<qint64> &records)
{
    const QScopedValueRollback quiet(quiet_, true);
    QItemSelection selection;
    QModelIndex first;
    for (const qint64 record : records) {
        const int row = model_->RowOf(record);
        const QModelIndex index = row < 0 ? QModelIndex() : order_->mapFromSource(model_->index(row, 0));
        if (!index.isValid())
            continue;
        selection.select(index, index);
        if (!first.isValid() || index.row() < first.row())
            first = index;
    }
    QItemSelectionModel *chosen = view_->selectionModel();
    if (first.isValid())
        chosen->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
    chosen->select(selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    if (first.isValid())
        view_->scrollTo(first, QAbstractItemView::PositionAtCenter);
}

QString TObservationsPage::SelectionText() const
{
    return nuvo::tableText(nuvo::tableOf(*view_));
}

void TObservationsPage::Copy() const
{
    nuvo::copyTable(nuvo::tableOf(*view_));
}

void TObservationsPage::SaveCsv(const QString &file) const
{
    QString text;
    const auto addLine = [&](const auto &cell) {
        QStringList cells;
        for (int column = 0; column < model_->columnCount(); ++column)
            cells += cell(column);
        text += nuvo::csvLine(cells) + u'\n';
    };
    addLine([&](int column) { return model_->Name(column); });
    for (int row = 0; row < model_->rowCount(); ++row)
        addLine([&](int column) { return model_->Stored(row, column); });
    nuvo::saveFile(file, [&text](QIODevice &device) { return nuvo::writeText(text, device); });
}

void TObservationsPage::SaveAs()
{
    nuvo::guarded([this] {
        const QString file = nuvo::askFileName(this, tr("Save observations"), {tr("Comma separated values (*.csv)")});
        if (!file.isEmpty())
            SaveCsv(file);
    });
}
