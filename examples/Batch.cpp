// SPDX-License-Identifier: MIT
#include <engine/Mlrtable.h>
#include <platform/Errors.h>
#include <present/Page.h>
#include <present/figures/Fitdata.h>

#include <QApplication>

#include <cstdio>

// A report as PDF from a job that runs at night: no display, no question, a status for the scheduler.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // message boxes are lines on standard error there
    QApplication application(argc, argv);
    try {
        TMLRTable longley;
        longley.SetDatabaseName("samples.db");
        longley.SetTableName("Longley");
        longley.SetDescription("Employment, 1947 to 1962");
        longley.ResponseVarY().SetField("TOTEMP");
        int k = 0;
        for (const char *field : {"GNP", "UNEMP", "ARMED"}) {
            TIndepVar &control = longley.ControlVar(++k);
            control.SetField1(field);
            control.SetTransformation("None");
        }
        longley.Open();
        if (!longley.ReLoad())
            return 1;
        longley.Execute();
        nuvo::Asked asked;
        asked.influence = true;
        const nuvo::Figures figures = nuvo::figures(longley, asked);
        nuvo::PageStyle style;
        style.influence = true;
        nuvo::savePage(nuvo::statisticsPage(figures, style), "longley.pdf",
                       nuvo::fitFigures(nuvo::figureData(longley)));
        std::printf("Wrote longley.pdf\n");
    } catch (const EPlatformError &error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.Message()));
        return 1;
    }
}
