// SPDX-License-Identifier: MIT
#include "workbench/Recordspage.h"

#include "platform/Errors.h"
#include "platform/Query.h"
#include "platform/Table.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QTableView>
#include <QVBoxLayout>

namespace nuvo {

RecordsPage::RecordsPage(QWidget *parent)
    : QWidget(parent), filter_(new QLineEdit(this)), view_(new QTableView(this)), error_(new QLabel(this))
{
    setObjectName(QStringLiteral("RecordsPage"));
    filter_->setObjectName(QStringLiteral("Filter"));
    filter_->setPlaceholderText(tr("Filter: a condition such as  YEAR > 1950"));
    filter_->setToolTip(tr("An SQL condition; records that do not fulfil it are left out everywhere (Enter)"));
    filter_->setAccessibleName(tr("Filter"));
    filter_->setClearButtonEnabled(true);
    view_->setObjectName(QStringLiteral("Records"));
    view_->setAccessibleName(tr("Records"));
    view_->setSelectionBehavior(QAbstractItemView::SelectRows);
    view_->setAlternatingRowColors(true);
    view_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    view_->setTabKeyNavigation(false);
    error_->setObjectName(QStringLiteral("RecordsError"));
    error_->setWordWrap(true);
    error_->setTextFormat(Qt::PlainText);
    error_->hide();
    auto *const all = new QVBoxLayout(this);
    all->addWidget(filter_);
    all->addWidget(error_);
    all->addWidget(view_, 1);
    connect(filter_, &QLineEdit::editingFinished, this, [this] {
        if (filter_->text().trimmed() != state_.filter)
            Q_EMIT FilterTyped(filter_->text().trimmed());
    });
}

// The view has to let go of the model before that goes.
RecordsPage::~RecordsPage()
{
    view_->setModel(nullptr);
}

void RecordsPage::SetState(const ModelState &state)
{
    filter_->setText(state.filter);
    filter_->setEnabled(state.hasData() && !state.isQuery());
    const bool same = state.database == state_.database && state.table == state_.table && state.sql == state_.sql &&
                      state.filter == state_.filter;
    state_ = state;
    if (same)
        return;
    std::unique_ptr<TDataSet> dataset;
    QString error;
    try {
        if (state.isQuery()) {
            auto query = std::make_unique<TQuery>();
            query->SetSQL(state.sql);
            dataset = std::move(query);
        } else if (state.hasData()) {
            auto table = std::make_unique<TTable>();
            table->SetTableName(state.table);
            table->SetFilter(state.filter);
            table->SetFiltered(!state.filter.isEmpty());
            dataset = std::move(table);
        }
        if (dataset) {
            dataset->SetDatabaseName(state.database);
            dataset->Open();
        }
    } catch (const EPlatformError &failed) {
        error = failed.Message();
        dataset.reset();
    }
    Show(std::move(dataset), error);
}

void RecordsPage::Show(std::unique_ptr<TDataSet> dataset, const QString &error)
{
    view_->setModel(nullptr);
    dataset_ = std::move(dataset);
    error_->setText(error);
    error_->setVisible(!error.isEmpty());
    if (!dataset_)
        return;
    view_->setModel(dataset_->Model());
    connect(view_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (!quiet_)
            Q_EMIT SelectionChanged();
    });
}

void RecordsPage::SetSelected(const std::set<qint64> &records)
{
    if (!dataset_ || records == Selected())
        return;
    const QScopedValueRollback<bool> quiet(quiet_, true);
    QAbstractItemModel &model = *view_->model();
    const auto last = records.empty() ? 0 : *records.rbegin();
    while (model.rowCount() < last && model.canFetchMore({}))
        model.fetchMore({});
    QItemSelection selection;
    for (const qint64 record : records) {
        if (record >= 1 && record <= model.rowCount())
            selection.select(model.index(int(record - 1), 0), model.index(int(record - 1), model.columnCount() - 1));
    }
    view_->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (!records.empty() && *records.begin() <= model.rowCount())
        view_->scrollTo(model.index(int(*records.begin() - 1), 0), QAbstractItemView::PositionAtCenter);
}

std::set<qint64> RecordsPage::Selected() const
{
    std::set<qint64> records;
    if (view_->selectionModel() != nullptr) {
        for (const QModelIndex &row : view_->selectionModel()->selectedRows())
            records.insert(row.row() + 1);
    }
    return records;
}

} // namespace nuvo
