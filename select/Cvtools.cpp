// SPDX-License-Identifier: MIT
#include "select/Cvtools.h"

#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "platform/Errors.h"
#include "select/Modeltools.h"

#include <algorithm>
#include <cmath>

namespace {

void setModel(const TMLRModel &model, TRegression &component)
{
    component.RefuseWhileBusy();
    nuvo::writeModel(model, component);
}

bool setControls(TRegression &component, TTermTable table, int row, int count)
{
    component.RefuseWhileBusy();
    nuvo::writeControls(component, table[row], count);
    return component.ReLoad();
}

bool setControl(TRegression &component, TTermTable table, int which, int row)
{
    component.RefuseWhileBusy();
    nuvo::writeControl(component, table[row], which);
    return component.ReLoad();
}

void setControlByIndex(TRegression &component, int index, const QString &transformation)
{
    component.RefuseWhileBusy();
    if (index >= 1 && index <= component.GetNumVars())
        nuvo::writeControlByIndex(component, index, transformation);
}

} // namespace

namespace nuvo {

void writeModel(const TMLRModel &model, TRegression &component)
{
    for (int k = 1; k <= MaxControls; ++k)
        component.ControlVar(k).SetTransformation(model.Transformations[k - 1]);
}

void saveModel(TMLRModel &model, TRegression &component)
{
    for (int k = 1; k <= MaxControls; ++k) {
        // Mostly the same text as before, or one that shares it.
        if (const QString text = component.ControlVar(k).Transformation();
            !model.Transformations[k - 1].isSharedWith(text))
            model.Transformations[k - 1] = text;
    }
    if (!component.Computed())
        return;
    model.RSquared = component.GetRSquared();
    model.SSquared = component.GetMSE();
    model.F = component.GetF();
}

void writeControls(TRegression &component, const TTermRow &row, int count)
{
    for (int k = 1; k <= std::min(count, MaxControls); ++k)
        component.ControlVar(k).SetTransformation(row[k - 1]);
}

void writeControl(TRegression &component, const TTermRow &row, int which)
{
    if (which >= 1 && which <= MaxControls)
        component.ControlVar(which).SetTransformation(row[which - 1]);
}

void writeControlByIndex(TRegression &component, int index, const QString &transformation)
{
    const QString term = component.GetcVar(index).OutputTerm();
    for (int k = 1; k <= MaxControls; ++k) {
        TIndepVar &control = component.ControlVar(k);
        if (control.OutputTerm() == term)
            control.SetTransformation(transformation);
    }
}

int indexOf(const TRegression &component, const QString &name)
{
    for (int j = 1; j <= component.GetNumVars(); ++j) {
        if (component.GetcVar(j).OutputTerm() == name)
            return j;
    }
    return 0;
}

} // namespace nuvo

TMLRModel &TMLRModels::operator[](int index)
{
    return const_cast<TMLRModel &>(std::as_const(*this)[index]);
}

const TMLRModel &TMLRModels::operator[](int index) const
{
    if (index < 1 || index > Size)
        throw EStringListError(
            QStringLiteral("There is no model %1 in the list: its models are 1 to %2.").arg(index).arg(Size));
    return models_[index - 1];
}

void ClearModelList(TMLRModels &models)
{
    for (int i = 1; i <= TMLRModels::Size; ++i) {
        TMLRModel &model = models[i];
        model.F = 0;
        model.RSquared = 0;
        model.SSquared = 1.0e40;
    }
}

void SetTableModel(const TMLRModel &model, TMLRTable &component)
{
    setModel(model, component);
}

void SetQueryModel(const TMLRModel &model, TMLRQuery &component)
{
    setModel(model, component);
}

void SaveTableModel(TMLRModel &model, TMLRTable &component)
{
    nuvo::saveModel(model, component);
}

void SaveQueryModel(TMLRModel &model, TMLRQuery &component)
{
    nuvo::saveModel(model, component);
}

bool SetTableControls(TMLRTable &component, TTermTable table, int row, int count)
{
    return setControls(component, table, row, count);
}

bool SetQueryControls(TMLRQuery &component, TTermTable table, int row, int count)
{
    return setControls(component, table, row, count);
}

bool SetTableControl(TMLRTable &component, TTermTable table, int which, int row)
{
    return setControl(component, table, which, row);
}

bool SetQueryControl(TMLRQuery &component, TTermTable table, int which, int row)
{
    return setControl(component, table, which, row);
}

void SetTableControlByIndex(TMLRTable &component, int index, const QString &transformation)
{
    setControlByIndex(component, index, transformation);
}

void SetQueryControlByIndex(TMLRQuery &component, int index, const QString &transformation)
{
    setControlByIndex(component, index, transformation);
}

int indexOfTable(const TMLRTable &component, const QString &name)
{
    return nuvo::indexOf(component, name);
}

int indexOfQuery(const TMLRQuery &component, const QString &name)
{
    return nuvo::indexOf(component, name);
}

void BinaryTable(TSubsetTable &table, int rows, int bits)
{
    for (int r = 0; r < rows; ++r) {
        int digits = r;
        for (int bit = bits; bit >= 1; --bit) {
            table[r][bit - 1] = static_cast<unsigned char>(digits % 2);
            digits /= 2;
        }
    }
}

int intmin(int a, int b)
{
    return std::min(a, b);
}

int nearestInt(double x)
{
    const double whole = std::trunc(x);
    return int(x - whole >= 0.5 ? whole + 1 : whole);
}
