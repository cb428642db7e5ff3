// SPDX-License-Identifier: MIT
#include "engine/Mlrquery.h"

#include "present/Loadgage.h"
#include "present/Mlroutpt.h"
#include "present/Mlrplot.h"
#include "present/statistics/Statisticsform.h"

TMLRQuery::TMLRQuery(QWidget *owner) : TQuery(owner), TRegression(static_cast<TDataSet &>(*this), Form::Query) {}

TMLRQuery::~TMLRQuery() = default;

std::unique_ptr<nuvo::Progress> TMLRQuery::MakeLoadProgress()
{
    return std::make_unique<TMLRGaugeDlg>();
}

void TMLRQuery::Output()
{
    nuvo::showReport(*this, [this] { ShowPlots(); });
}

void TMLRQuery::ShowPlots()
{
    nuvo::showPlots(*this, FPlotForm);
}

void TMLRQuery::ShowStatistics()
{
    nuvo::showStatistics(*this);
}
