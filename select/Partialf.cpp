// SPDX-License-Identifier: MIT
#include "select/Partialf.h"

#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"

TPartialFSearch::TPartialFSearch(QWidget *owner) : TCorvane(owner) {}

TPartialFSearch::~TPartialFSearch() = default;

TTable *TPartialFSearch::FDistTable() const
{
    if (!fDistTableBound_ && !fDistTableName_.isEmpty()) {
        fDistTable_ = FindComponent<TTable>(fDistTableName_);
        fDistTableBound_ = !fDistTable_.isNull();
    }
    return fDistTable_;
}

void TPartialFSearch::SetFDistTable(TTable *table)
{
    RefuseWhileRunning();
    fDistTable_ = table;
    fDistTableName_ = table != nullptr ? table->Name() : QString();
    fDistTableBound_ = true;
}

QString TPartialFSearch::FDistTableName() const
{
    return fDistTableName_;
}

void TPartialFSearch::SetFDistTableName(const QString &name)
{
    RefuseWhileRunning();
    fDistTableName_ = name;
    fDistTable_ = nullptr;
    fDistTableBound_ = false;
    FDistTable();
}

void TPartialFSearch::SetShowReport(bool show)
{
    RefuseWhileRunning();
    showReport_ = show;
}

void TPartialFSearch::SetShowProgress(bool show)
{
    RefuseWhileRunning();
    showProgress_ = show;
}

bool TPartialFSearch::SetControls(TTermTable table, int row, int count)
{
    NeedBound();
    if (TMLRQuery *query = Query())
        return SetQueryControls(*query, table, row, count);
    return SetTableControls(*Table(), table, row, count);
}
