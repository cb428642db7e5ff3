// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Maxdata.h"
#include "platform/Export.h"

#include <QString>

#include <array>
#include <span>

class TMLRQuery;
class TMLRTable;

// What the selection components share: the record of a candidate model, the list of saved ones, and the routines that
// switch control variables in and out. Selection works by rewriting transformation texts: "Undefined" takes a control
// variable out, the text that it had before the run brings it back. Each routine over a regression component has a
// form for tables and one for queries that does the same.
//
// While a component loads or a selection runs on it, all of them that change it are refused with an EDatabaseError.

/// A candidate model as it was saved.
struct TMLRModel
{
    /// Transformation of ControlVar01 to ControlVar10, the first at 0.
    std::array<QString, MaxControls> Transformations;
    double F = 0;        ///< overall F statistic
    double RSquared = 0; ///< coefficient of determination
    double SSquared = 0; ///< residual mean square
};

/// The twenty saved models, numbered from 1.
class NUVO_EXPORT TMLRModels
{
public:
    static constexpr int Size = 20;

    /// \throws EStringListError for an index outside 1..20.
    TMLRModel &operator[](int index);
    /// The same.
    const TMLRModel &operator[](int index) const;

private:
    std::array<TMLRModel, Size> models_;
};

/// A row of transformation texts: the one of control variable k at k - 1, the eleventh unused.
using TTermRow = std::array<QString, MaxControls + 1>;
using TTermTable = std::span<const TTermRow>;

/// Row r holds the binary digits of r, each 0 or 1; room for every subset of ten control variables.
using TSubsetTable = std::array<std::array<unsigned char, MaxControls + 1>, 1 << MaxControls>;

/// Takes back the figures of all twenty models: F 0, RSquared 0, SSquared 1e40. The texts stay.
NUVO_EXPORT void ClearModelList(TMLRModels &models);

/// Gives the control variables the model's transformations. Does not load.
NUVO_EXPORT void SetTableModel(const TMLRModel &model, TMLRTable &component);
/// The same for a query.
NUVO_EXPORT void SetQueryModel(const TMLRModel &model, TMLRQuery &component);

/// Saves the transformations, and, only where the component is computed, the figures; else those stay.
NUVO_EXPORT void SaveTableModel(TMLRModel &model, TMLRTable &component);
/// The same for a query.
NUVO_EXPORT void SaveQueryModel(TMLRModel &model, TMLRQuery &component);

/// Gives control variables 1 to count (ten at most) the texts of a row and reloads; whether that came out.
/// \pre row is a row of the table.
NUVO_EXPORT bool SetTableControls(TMLRTable &component, TTermTable table, int row, int count);
/// The same for a query.
NUVO_EXPORT bool SetQueryControls(TMLRQuery &component, TTermTable table, int row, int count);

/// The same for one control variable; outside 1..10 nothing is set, and the reload is done all the same.
NUVO_EXPORT bool SetTableControl(TMLRTable &component, TTermTable table, int which, int row);
/// The same for a query.
NUVO_EXPORT bool SetQueryControl(TMLRQuery &component, TTermTable table, int which, int row);

/// Gives every control variable whose output term is that of active column `index` the transformation: more than one
/// where two show the same term. Does not load. Outside 1..GetNumVars() nothing is set.
NUVO_EXPORT void SetTableControlByIndex(TMLRTable &component, int index, const QString &transformation);
/// The same for a query.
NUVO_EXPORT void SetQueryControlByIndex(TMLRQuery &component, int index, const QString &transformation);

/// The first active column with this output term, from 1; 0 when there is none.
NUVO_EXPORT int indexOfTable(const TMLRTable &component, const QString &name);
/// The same for a query.
NUVO_EXPORT int indexOfQuery(const TMLRQuery &component, const QString &name);

/// Fills rows 0 to rows - 1: the lowest digit of a row's number stands at bits - 1, the highest at 0.
/// \pre rows <= 1024, bits <= 10.
NUVO_EXPORT void BinaryTable(TSubsetTable &table, int rows, int bits);

/// The smaller of two.
NUVO_EXPORT int intmin(int a, int b);
/// Positive halves go up (2.5 is 3); negative numbers are cut towards zero (-2.7 is -2). \pre fits an int.
NUVO_EXPORT int nearestInt(double x);
