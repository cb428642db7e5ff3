// SPDX-License-Identifier: MIT
#include "engine/Mlrtable.h"
#include "platform/Errors.h"
#include "present/figures/Figurespage.h"
#include "present/statistics/Observationspage.h"
#include "present/statistics/Statisticsform.h"
#include "support/Darkpalette.h"

#include <QApplication>
#include <QDir>
#include <QStyleFactory>

#include <cstdio>

// Pictures of the window of statistics, to look at: statisticspictures samples.db DIRECTORY [dark]
// (QT_SCALE_FACTOR=2 for a dense screen).
namespace {

void draw(const char *database, const char *table, const char *response, const char *controls, const QDir &directory,
          const QString &way)
{
    TMLRTable regression;
    regression.SetDatabaseName(QString::fromLocal8Bit(database));
    regression.SetTableName(QLatin1String(table));
    regression.ResponseVarY().SetField(QLatin1String(response));
    int position = 0;
    for (const QString &field : QString::fromLatin1(controls).split(u' ')) {
        TIndepVar &control = regression.ControlVar(++position);
        control.SetField1(field);
        control.SetTransformation(QStringLiteral("None"));
    }
    regression.Open();
    if (!regression.ReLoad())
        return;
    regression.Execute();
    TStatisticsForm form;
    form.Load(regression);
    form.show();
    form.Observations().SetSelected({5});
    form.FiguresPage().SetSelected({5});
    form.FiguresPage().SetIndex(int(form.FiguresPage().Figures().size()) / 2);
    static const char *const names[] = {"summary", "diagnostics", "observations", "figures"};
    for (int page = 0; page < 4; ++page) {
        form.SetPageIndex(page);
        QApplication::processEvents();
        form.grab().save(directory.filePath(
            QStringLiteral("%1-%2-%3.png").arg(QLatin1String(table), QLatin1String(names[page]), way)));
    }
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
    const QApplication application(argc, argv);
    if (argc < 3)
        return 2;
    const bool dark = argc > 3;
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    if (dark)
        QApplication::setPalette(darkPalette());
    const QDir directory(QString::fromLocal8Bit(argv[2]));
    directory.mkpath(QStringLiteral("."));
    const QString way =
        QStringLiteral("%1x%2").arg(application.devicePixelRatio()).arg(dark ? QStringLiteral("-dark") : QString());
    try {
        draw(argv[1], "Longley", "TOTEMP", "GNPDEFL GNP UNEMP ARMED POP YEAR", directory, way);
        draw(argv[1], "Airquality", "Ozone", "Radiation Wind Temp", directory, way);
    } catch (const EPlatformError &error) {
        std::fprintf(stderr, "statisticspictures: %s\n", qPrintable(error.Message()));
        return 1;
    }
    return 0;
}
