// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "select/Bkmain.h"
#include "select/Cvmain.h"
#include "select/Fwdmain.h"
#include "select/Stepmain.h"

#include <tuple>
#include <utility>

namespace nuvo {

/// A component class and what a person is told of it.
template <class Component>
struct Listed
{
    using Class = Component;
    const char *page;        ///< of a palette
    const char *description; ///< one line
    const char *header;      ///< as a program includes it
    const char *firstName;   ///< of a new one on a form
    const char *whatsThis;   ///< some sentences
};

// All components, each once: the palette of a form designer, the reader of forms and whatever else goes through them
// are made from these lists, in this order.

inline constexpr std::tuple RegressionComponents{
    Listed<TMLRTable>{"Nuvo Statistics", "Multiple linear regression on a table", "<engine/Mlrtable.h>", "mlrTable",
                      "A table that fits a multiple linear regression to its own records. Bind it with DatabaseName "
                      "and TableName, define the response and up to ten control variables; the program calls Open, "
                      "ReLoad and Execute."},
    Listed<TMLRQuery>{"Nuvo Statistics", "Multiple linear regression on a query", "<engine/Mlrquery.h>", "mlrQuery",
                      "An SQL statement that fits a multiple linear regression to its own records. Bind it with "
                      "DatabaseName and SQL, define the response and up to ten control variables; the program calls "
                      "Open, ReLoad and Execute."},
};

inline constexpr std::tuple SelectionComponents{
    Listed<TOptimizeMLR>{"Nuvo Statistics", "Best subsets of the control variables", "<select/Cvmain.h>",
                         "optimizeMLR",
                         "Fits every subset of a regression component's control variables and keeps the best models "
                         "by OptCriteria. The program calls Run."},
    Listed<TBackElimMLR>{
        "Nuvo Statistics", "Backward elimination of control variables", "<select/Bkmain.h>", "backElimMLR",
        "Takes control variables out of a regression component's model, one by one, by their partial "
        "F. The program calls Run."},
    Listed<TFwdSelectMLR>{"Nuvo Statistics", "Forward selection of control variables", "<select/Fwdmain.h>",
                          "fwdSelectMLR",
                          "Puts control variables into a regression component's model, one by one, by their partial "
                          "F. The program calls Run."},
    Listed<TStepWiseMLR>{"Nuvo Statistics", "Stepwise regression", "<select/Stepmain.h>", "stepWiseMLR",
                         "Puts control variables into a regression component's model and takes them out again, by "
                         "their partial F. The program calls Run."},
};

inline constexpr std::tuple DataComponents{
    Listed<TTable>{"Data Access", "The records of a table", "<platform/Table.h>", "table",
                   "The records of one table or view. Bind it with DatabaseName and TableName; its models show it in "
                   "Qt's views."},
    Listed<TQuery>{
        "Data Access", "The records of an SQL statement", "<platform/Query.h>", "query",
        "The records of an SQL statement that reads. Bind it with DatabaseName and SQL; its models show it "
        "in Qt's views."},
};

/// Calls with every entry of a list, in its order.
template <class List, class Use>
constexpr void forEach(const List &list, const Use &use)
{
    std::apply([&use](const auto &...entry) { (use(entry), ...); }, list);
}

/// Calls with every component there is.
template <class Use>
constexpr void forEachComponent(const Use &use)
{
    forEach(RegressionComponents, use);
    forEach(SelectionComponents, use);
    forEach(DataComponents, use);
}

} // namespace nuvo
