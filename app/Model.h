#pragma once

#include "app/Components.h"
#include "app/Modeloptions.h"
#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"

namespace nuvo {

/// The definition of a control variable that a term stands for.
TIndepVar definitionOf(const Term &control);

/// Gives a component the database, the variables and the description of the command line.
void defineModel(TDataSet &dataset, TRegression &regression, const ModelOptions &options);

/// Calls with the component that the command line asks for, a table or a query, defined and not open.
template <class Use>
auto withModel(const ModelOptions &options, const Use &use)
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

} // namespace nuvo
