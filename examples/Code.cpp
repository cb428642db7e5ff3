// SPDX-License-Identifier: MIT
#include <engine/Mlrtable.h>
#include <platform/Errors.h>

#include <QApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    try {
        TMLRTable air;
        air.SetDatabaseName("samples.db");
        air.SetTableName("Airquality");
        air.ResponseVarY().SetField("Ozone");
        air.ResponseVarY().SetTransformation("Log");
        air.ControlVar(1).SetField1("Temp");
        air.ControlVar(1).SetTransformation("None");
        air.ControlVar(2).SetField1("Wind");
        air.ControlVar(2).SetTransformation("Inverse");
        air.Open();
        if (!air.ReLoad())
            return 1; // a message has said why
        air.Execute();
        std::printf("%lld of %lld days, R2 = %.4f\n", air.RecordsUsed(), air.RecordsRead(), air.GetRSquared());
        for (int j = 1; j <= air.GetNumVars(); ++j)
            std::printf("%-8s %8.4f\n", qPrintable(air.GetcVar(j).OutputTerm()), air.Getb(j));
        const double today[] = {0, 80, 1 / 9.7}; // columns count from 1
        std::printf("At 80 degrees and 9.7 miles per hour: Ln(Ozone) = %.4f\n", air.Predict(today, 2));
    } catch (const EPlatformError &error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.Message()));
        return 1;
    }
}
