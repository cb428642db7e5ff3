// SPDX-License-Identifier: MIT
#pragma once

#include "app/Components.h"
#include "app/Filedatabase.h"
#include "app/Modeloptions.h"
#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "platform/Errors.h"

namespace nuvo {

/// The definition of a control variable that a term stands for.
TIndepVar definitionOf(const Term &control);

/// Gives a component the database, the variables and the description of the command line.
void defineModel(TDataSet &dataset, TRegression &regression, const ModelOptions &options);

/// The fields of the variables.
QStringList fieldsOf(const ModelOptions &options);

/// How what was probably meant by a field that is not there is written, as a sentence behind a blank: of "log(x)" or
/// "a, b"; empty where nothing is known of it.
QString writtenOtherwise(const QString &message, const ModelOptions &options);

/// Calls with the component, a table or a query, defined and not open.
template <class Use>
bool withOwnModel(const ModelOptions &options, const Use &use)
{
    if (options.sql) {
        OnTerminal<TMLRQuery> query;
        query.SetSQL(*options.sql);
        defineModel(query, query, options);
        return use(query);
    }
    OnTerminal<TMLRTable> table;
    table.SetTableName(*options.table);
    table.SetFilter(options.filter);
    table.SetFiltered(!options.filter.isEmpty());
    table.SetIndexFieldNames(options.order);
    defineModel(table, table, options);
    return use(table);
}

/// Calls with the component that the command line asks for, a table or a query, defined and not open.
/// Of a CSV file it is the table that the file becomes for the time of the call.
template <class Use>
bool withModel(const ModelOptions &options, const Use &use)
{
    if (options.csv) {
        const FileDatabase data(*options.csv);
        ModelOptions own = options;
        own.csv.reset();
        own.database = data.database();
        own.table = data.table();
        try {
            return withModel(own, use);
        } catch (const EConvertError &error) {
            const QString place = data.firstWithoutNumber(fieldsOf(options));
            throw EConvertError(place.isEmpty() ? error.Message() : error.Message() + u' ' + place);
        }
    }
    try {
        return withOwnModel(options, use);
    } catch (const EDatabaseError &error) {
        const QString advice = writtenOtherwise(error.Message(), options);
        if (advice.isEmpty())
            throw;
        throw EDatabaseError(error.Message() + advice);
    }
}

} // namespace nuvo
