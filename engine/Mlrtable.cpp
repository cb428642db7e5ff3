// SPDX-License-Identifier: MIT
#include "engine/Mlrtable.h"

#include "present/Loadgage.h"
#include "present/Mlroutpt.h"
#include "present/Mlrplot.h"
#include "present/statistics/Statisticsform.h"

TMLRTable::TMLRTable(QWidget *owner) : TTable(owner), TRegression(static_cast<TDataSet &>(*this), Form::Table) {}

TMLRTable::~TMLRTable() = default;

std::unique_ptr<nuvo::Progress> TMLRTable::MakeLoadProgress()
{
    return std::make_unique<TMLRGaugeDlg>();
}

void TMLRTable::Output()
{
    nuvo::showReport(*this, [this] { ShowPlots(); });
}

void TMLRTable::ShowPlots()
{
    nuvo::showPlots(*this, FPlotForm);
}

void TMLRTable::ShowStatistics()
{
    nuvo::showStatistics(*this);
}
