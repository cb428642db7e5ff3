// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Mlrtable.h"

/// The regression that the examples begin with: employment by output and unemployment, loaded and fitted.
class FittedLongley : public TMLRTable
{
public:
    FittedLongley()
    {
        SetDatabaseName("samples.db");
        SetTableName("Longley");
        ResponseVarY().SetField("TOTEMP");
        ControlVar(1).SetField1("GNP");
        ControlVar(1).SetTransformation("None");
        ControlVar(2).SetField1("UNEMP");
        ControlVar(2).SetTransformation("None");
        Open();
        ReLoad();
        Execute();
    }
};
