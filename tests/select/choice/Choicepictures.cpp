// SPDX-License-Identifier: MIT
#include "present/Fitted.h"
#include "select/Bkmain.h"
#include "select/Cvmain.h"
#include "select/Stepmain.h"
#include "select/choice/Choiceform.h"
#include "select/choice/Modelspage.h"
#include "select/choice/Stepspage.h"
#include "support/Darkpalette.h"

#include <QApplication>
#include <QDir>
#include <QStyleFactory>

#include <cstdio>
#include <limits>

// Pictures of the window of a choice, to look at: choicepictures DIRECTORY [dark]
// (QT_SCALE_FACTOR=2 for a dense screen).
namespace {

class Pictures
{
public:
    Pictures(const char *directory, bool dark) : directory_(QString::fromLocal8Bit(directory)), dark_(dark)
    {
        directory_.mkpath(QStringLiteral("."));
    }

    template <class Method>
    void draw(const char *name, TRegression &regression, Method &method, int selected, QSize size = {})
    {
        method.SetTable(dynamic_cast<TMLRTable *>(&regression));
        method.SetRule(TCorvane::Textbook);
        method.Run();
        if (!method.Choice())
            return;
        TChoiceForm form;
        form.Load(method);
        if (size.isValid())
            form.resize(size);
        form.show();
        form.Models().SetSelected(selected);
        form.Steps().SetSelected(selected);
        for (int page = 0; page < 3; ++page) {
            form.SetPageIndex(page);
            QApplication::processEvents();
            form.grab().save(directory_.filePath(QStringLiteral("%1-%2-%3x%4.png")
                                                     .arg(QLatin1String(name))
                                                     .arg(form.PageIndex() + 1)
                                                     .arg(qApp->devicePixelRatio())
                                                     .arg(dark_ ? QStringLiteral("-dark") : QString())));
        }
    }

private:
    QDir directory_;
    bool dark_;
};

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
    const QApplication application(argc, argv);
    if (argc < 2)
        return 2;
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    if (argc > 2)
        QApplication::setPalette(darkPalette());
    SetMessageHandler([](const QString &, TMsgDlgType, unsigned, int) { return int(mrOk); });
    Pictures pictures(argv[1], argc > 2);
    {
        Fitted fitted = scatteredFit(40, 4);
        TOptimizeMLR method;
        method.SetModelsPerSize(3);
        pictures.draw("few", fitted.table, method, 2);
    }
    {
        Fitted fitted = scatteredFit(40, 5);
        TStepWiseMLR method;
        method.SetPIn(0.15);
        method.SetPOut(0.15);
        pictures.draw("steps", fitted.table, method, 2);
    }
    QStringList names;
    for (int j = 1; j <= 10; ++j)
        names += QStringLiteral("a_name_as_long_as_they_come_%1_in_databases").arg(j);
    Fitted fitted(60, names, [](int i, int j) {
        if (j == 7 && i % 9 == 0)
            return std::numeric_limits<double>::quiet_NaN();
        return j == 10 ? scattered(i, 1) - scattered(i, 2) : scattered(i, j);
    });
    {
        TOptimizeMLR method;
        method.SetModelsPerSize(5);
        method.SetOptCriteria(TOptimizeMLR::BIC);
        pictures.draw("long", fitted.table, method, 8);
    }
    fitted.define(fitted.table, fitted.table, QStringLiteral("y"));
    Fitted::run(fitted.table, fitted.table);
    {
        TOptimizeMLR method;
        method.SetModelsPerSize(5);
        pictures.draw("narrow", fitted.table, method, 8, {560, 480});
    }
    fitted.define(fitted.table, fitted.table, QStringLiteral("y"));
    Fitted::run(fitted.table, fitted.table);
    {
        TBackElimMLR method;
        method.SetP(0.05);
        pictures.draw("narrowsteps", fitted.table, method, 3, {560, 480});
    }
    return 0;
}
