// SPDX-License-Identifier: MIT
#include "ui_Designed.h"

#include <platform/Errors.h>

#include <QApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QWidget window;
    Ui::Form form;
    form.setupUi(&window);
    try {
        TMLRTable &table = *form.mlrTable; // as it is called in Qt Designer
        table.Open();
        if (!table.ReLoad())
            return 1; // a message has said why
        table.Execute();
        for (int j = 0; j <= table.GetNumVars(); ++j)
            std::printf("B%d = %.15g\n", j, table.Getb(j));
        form.stepWiseMLR->Run();
        std::printf("Stepwise regression keeps %d of the variables.\n", table.GetNumVars());
    } catch (const EPlatformError &error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.Message()));
        return 1;
    }
}
