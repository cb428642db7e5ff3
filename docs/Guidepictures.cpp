// SPDX-License-Identifier: MIT
// The forms of the examples, with their programs' entries out of the way.
#define main formMain
#include "examples/Form.cpp" // NOLINT(bugprone-suspicious-include)
#undef main
#define main predictionMain
#include "examples/Prediction.cpp" // NOLINT(bugprone-suspicious-include)
#undef main

#include "present/figures/Figurefile.h"
#include "present/figures/Fitdata.h"

#include <QDir>

#include <cstdio>

namespace {

/// A fit of a table of the sample database without transformations.
void fit(TMLRTable &table, const QString &name, const QString &response, const QStringList &controls)
{
    table.SetDatabaseName("samples.db");
    table.SetTableName(name);
    table.ResponseVarY().SetField(response);
    for (int k = 1; k <= controls.size(); ++k) {
        table.ControlVar(k).SetField1(controls[k - 1]);
        table.ControlVar(k).SetTransformation("None");
    }
    table.Open();
    if (table.ReLoad())
        table.Execute();
}

QImage figure(TMLRTable &table, nuvo::FigureKind kind, const std::set<qint64> &selected)
{
    nuvo::FigureSheet sheet;
    sheet.size = QSize(620, 400);
    sheet.selected = selected;
    return nuvo::figureImage(nuvo::fitFigure(nuvo::figureData(table), kind), sheet, 2);
}

} // namespace

// Pictures of the guide and of the examples: guidepictures samples.db DIRECTORY
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", "2"); // sharp on dense screens too
    qputenv("LC_ALL", "C.UTF-8");
    const QApplication application(argc, argv);
    if (argc != 3)
        return 2;
    const QDir directory(QDir(QString::fromLocal8Bit(argv[2])).absolutePath());
    if (!QDir::setCurrent(QFileInfo(QString::fromLocal8Bit(argv[1])).absolutePath()))
        return 1;
    bool saved = true;
    const auto save = [&](const QImage &picture, const char *name) {
        saved = picture.save(directory.filePath(QLatin1String(name))) && saved;
    };
    try {
        TMLRTable states;
        fit(states, "States", "Murder", {"High school", "Area"});
        save(figure(states, nuvo::FigureKind::ResidualByLeverage, {2}), "guide-leverage.png");
        TMLRTable air;
        fit(air, "Airquality", "Ozone", {"Radiation", "Wind", "Temp"});
        save(figure(air, nuvo::FigureKind::ResidualByFitted, {}), "guide-curved.png");

        Form form;
        form.resize(560, 330);
        form.show();
        form.findChild<QPushButton *>()->click();
        save(form.grab().toImage(), "example-form.png");
        PredictionForm prediction;
        prediction.show();
        save(prediction.grab().toImage(), "example-prediction.png");
    } catch (const EPlatformError &error) {
        std::fprintf(stderr, "guidepictures: %s\n", qPrintable(error.Message()));
        return 1;
    }
    if (!saved)
        std::fprintf(stderr, "guidepictures: cannot write to %s\n", argv[2]);
    return saved ? 0 : 1;
}
