// SPDX-License-Identifier: MIT
#include "engine/Mlrtable.h"
#include "platform/Errors.h"
#include "platform/Messages.h"
#include "present/Connectiondlg.h"
#include "present/Mlroutpt.h"
#include "present/Mlrplot.h"
#include "present/figures/Figurespage.h"
#include "present/statistics/Observationspage.h"
#include "present/statistics/Statisticsform.h"
#include "select/Choice.h"
#include "select/Cvmain.h"
#include "select/choice/Choiceform.h"
#include "select/choice/Modelspage.h"

#include <QAction>
#include <QApplication>
#include <QDir>

#include <cstdio>
#include <utility>
#include <vector>

// Pictures of the windows that a fit of the Longley table opens: windowpictures samples.db DIRECTORY
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", "2"); // sharp on dense screens too
    qputenv("LC_ALL", "C.UTF-8");
    const QApplication application(argc, argv);
    if (argc != 3)
        return 2;
    const QDir directory(QString::fromLocal8Bit(argv[2]));
    bool saved = true;
    const auto save = [&](QWidget &window, const char *name) {
        saved = window.grab().save(directory.filePath(QLatin1String(name))) && saved;
    };
    try {
        TMLRTable longley;
        longley.SetDatabaseName(QString::fromLocal8Bit(argv[1]));
        longley.SetTableName(QStringLiteral("Longley"));
        longley.SetDescription(QStringLiteral("Employment, 1947 to 1962"));
        longley.ResponseVarY().SetField(QStringLiteral("TOTEMP"));
        int position = 0;
        for (const char *field : {"GNPDEFL", "GNP", "UNEMP", "ARMED", "POP", "YEAR"}) {
            TIndepVar &control = longley.ControlVar(++position);
            control.SetField1(QLatin1String(field));
            control.SetTransformation(QStringLiteral("None"));
        }
        longley.Open();
        if (!longley.ReLoad())
            return 1;
        longley.Execute();

        nuvo::saveReport(longley, directory.filePath(QStringLiteral("report.png")));
        TMLRPlotForm plots;
        plots.Load(longley);
        plots.findChild<QAction *>(QStringLiteral("X021"))->trigger();
        save(plots, "scatter.png");
        plots.ECDFPlotBtnClick();
        save(plots, "ecdf.png");

        TStatisticsForm statistics;
        statistics.Load(longley);
        statistics.resize(900, 620);
        statistics.Observations().SetSelected({5});
        statistics.FiguresPage().SetSelected({5});
        const std::vector<nuvo::Figure> &figures = statistics.FiguresPage().Figures();
        for (std::size_t i = 0; i < figures.size(); ++i) {
            if (figures[i].kind == nuvo::FigureKind::ResidualByLeverage)
                statistics.FiguresPage().SetIndex(int(i));
        }
        statistics.show();
        for (const auto &[page, name] : {std::pair(2, "observations.png"), std::pair(3, "statistics.png")}) {
            statistics.SetPageIndex(page);
            QApplication::processEvents();
            save(statistics, name);
        }

        TOptimizeMLR search;
        search.SetTable(&longley);
        search.SetRule(TCorvane::Textbook);
        search.SetModelsPerSize(3);
        SetMessageHandler([](const QString &, TMsgDlgType, unsigned, int) { return int(mrOk); }); // its report
        search.Run();
        TChoiceForm choice;
        choice.SetChoice(*search.Choice());
        choice.resize(1060, 470);
        choice.show();
        choice.Models().SetSelected(7);
        save(choice, "choice.png");
        nuvo::ConnectionDialog connection;
        connection.SetDatabaseName(QStringLiteral("postgresql://analyst@db.example.org/sales"));
        connection.show();
        save(connection, "designer-connection.png");
        if (!saved)
            std::fprintf(stderr, "windowpictures: cannot write to %s\n", argv[2]);
        return saved ? 0 : 1;
    } catch (const EPlatformError &error) {
        std::fprintf(stderr, "windowpictures: %s\n", qPrintable(error.Message()));
        return 1;
    }
}
