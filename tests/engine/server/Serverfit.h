// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Fit.h"
#include "engine/Serversums.h"
#include "support/Databases.h"
#include "support/Text.h"

#include <QStringList>

#include <memory>

inline TIndepVar controlOf(const char *transformation, const char *field1, const char *second = "")
{
    TIndepVar definition;
    definition.SetTransformation(u(transformation));
    definition.SetField1(u(field1));
    definition.SetField2(u(second));
    definition.SetExponent(u(second));
    definition.SetScaleFactor(u(second));
    return definition;
}

inline TDependentVar responseOf(const char *field, const char *transformation = "None", const char *factor = "1")
{
    TDependentVar definition;
    definition.SetTransformation(u(transformation));
    definition.SetField(u(field));
    definition.SetScaleFactor(u(factor));
    return definition;
}

/// Plain fields of a table.
inline nuvo::RecordRequest requestOf(const QString &database, const char *table, const QStringList &controls,
                                     const char *response = "y")
{
    nuvo::RecordRequest request;
    request.source.databaseName = database;
    request.source.table = u(table);
    for (const QString &field : controls)
        request.columns.push_back(controlOf("None", field.toUtf8().constData()));
    request.response = responseOf(response);
    return request;
}

inline nuvo::RecordSums readOn(const nuvo::RecordRequest &request)
{
    std::optional<nuvo::RecordSums> sums = nuvo::ServerReader(request).read();
    if (!sums)
        throw EDatabaseError(u("It was ended."));
    return std::move(*sums);
}

/// The fit of a set of controls.
inline std::unique_ptr<nuvo::Fit> fitOf(nuvo::RecordSums &records, nuvo::ControlSet set)
{
    nuvo::Sums sums;
    sums.products = records.sums.products(set);
    sums.n = records.sums.count(set);
    int place = 0;
    for (int j = 0; j < records.sums.controls(); ++j) {
        if ((set >> j & 1) != 0)
            sums.exponents[size_t(++place)] = records.sums.exponent(j);
    }
    sums.m = place;
    sums.exponents[size_t(++place)] = records.sums.exponent(records.sums.controls());
    return std::make_unique<nuvo::Fit>(nuvo::Observations(), sums);
}

inline std::unique_ptr<nuvo::Fit> fitOf(nuvo::RecordSums &records)
{
    return fitOf(records, (nuvo::ControlSet(1) << records.sums.controls()) - 1);
}
