// SPDX-License-Identifier: MIT
#include <engine/Mlrtable.h>
#include <platform/Errors.h>

#include <QApplication>
#include <QQmlContext>
#include <QQuickView>
#include <QVariantList>

#include <cstdio>

// A Qt Quick page that shows a fit's figures: the program hands it numbers, the page lays them out (Quick.qml).
int main(int argc, char **argv)
{
    QApplication application(argc, argv); // not QGuiApplication: components are widgets
    QVariantList rows;
    try {
        TMLRTable longley;
        longley.SetDatabaseName("samples.db");
        longley.SetTableName("Longley");
        longley.ResponseVarY().SetField("TOTEMP");
        longley.ControlVar(1).SetField1("GNP");
        longley.ControlVar(1).SetTransformation("None");
        longley.ControlVar(2).SetField1("UNEMP");
        longley.ControlVar(2).SetTransformation("None");
        longley.Open();
        if (!longley.ReLoad())
            return 1; // a message has said why
        longley.Execute();
        for (int j = 0; j <= longley.GetNumVars(); ++j) {
            const std::array<double, 2> interval = longley.GetConfidence(j);
            rows.append(QVariantMap{{"term", j == 0 ? QString("constant") : longley.GetcVar(j).OutputTerm()},
                                    {"estimate", longley.Getb(j)},
                                    {"low", interval[0]},
                                    {"high", interval[1]},
                                    {"p", longley.GetPValue(j)}});
        }
    } catch (const EPlatformError &error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.Message()));
        return 1;
    }
    QQuickView view;
    view.rootContext()->setContextProperty("coefficients", rows);
    view.setSource(QUrl("qrc:/Quick.qml"));
    if (view.status() == QQuickView::Error)
        return 1; // Qt has said on standard error what the page lacks
    view.show();
    return application.exec();
}
