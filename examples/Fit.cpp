// SPDX-License-Identifier: MIT
#include <engine/Mlrtable.h>
#include <present/Page.h>

#include <QApplication>

#include <cstdio>

// A fit and its page. What cannot be done is an exception; Code.cpp shows how to catch it.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    TMLRTable longley;
    longley.SetDatabaseName("samples.db");
    longley.SetTableName("Longley");
    longley.ResponseVarY().SetField("TOTEMP");
    longley.ControlVar(1).SetField1("GNP");
    longley.ControlVar(1).SetTransformation("None");
    longley.Open();
    if (longley.ReLoad())
        longley.Execute();
    std::printf("%s", qUtf8Printable(nuvo::pageText(nuvo::statisticsPage(nuvo::figures(longley, {})))));
}
