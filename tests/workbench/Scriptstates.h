// SPDX-License-Identifier: MIT
#pragma once

#include "workbench/Modelstate.h"

/// What the script makes of a table: the state after each of its changes, from the first one on.
inline nuvo::ModelState scriptState(const QString &database, int change)
{
    nuvo::ModelState state;
    state.database = database;
    state.table = QStringLiteral("data");
    state.filter = QStringLiteral("x >= %1").arg(change);
    state.model.setField(0, QStringLiteral("y"));
    state.model.setField(1, QStringLiteral("x"));
    if (change % 3 == 0)
        state.model.setTransformation(1, QStringLiteral("Ln"));
    return state;
}
