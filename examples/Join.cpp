// SPDX-License-Identifier: MIT
#include <engine/Mlrquery.h>
#include <platform/Errors.h>

#include <QApplication>

#include <cstdio>

// A query with a join and a parameter: each state's income beside the mean of its region.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    try {
        TMLRQuery states;
        states.SetDatabaseName("samples.db");
        states.SetSQL(
            "SELECT s.\"Life expectancy\" AS Life, s.Murder, s.Income - r.Mean AS AboveRegion\n"
            "FROM States s\n"
            "JOIN (SELECT Region, AVG(Income) AS Mean FROM States GROUP BY Region) r ON r.Region = s.Region\n"
            "WHERE s.Population >= :least");
        states.SetParam("least", 1000); // taken when the query opens
        states.ResponseVarY().SetField("Life");
        int k = 0;
        for (const char *field : {"Murder", "AboveRegion"}) {
            TIndepVar &control = states.ControlVar(++k);
            control.SetField1(field);
            control.SetTransformation("None");
        }
        states.Open();
        if (!states.ReLoad())
            return 1; // a message has said why
        states.Execute();
        std::printf("%lld states, R2 = %.4f\n", states.RecordsUsed(), states.GetRSquared());
        for (int j = 1; j <= states.GetNumVars(); ++j) {
            std::printf("%-12s %10.6f  p = %.2g\n", qPrintable(states.GetcVar(j).OutputTerm()), states.Getb(j),
                        states.GetPValue(j));
        }
    } catch (const EPlatformError &error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.Message()));
        return 1;
    }
}
