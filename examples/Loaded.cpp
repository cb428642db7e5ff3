// SPDX-License-Identifier: MIT
#include <engine/Mlrtable.h>
#include <platform/Errors.h>
#include <platform/Formfolder.h>
#include <select/Stepmain.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUiLoader>

#include <cstdio>
#include <memory>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QFile file(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString("Designed.ui"));
    if (!file.open(QIODevice::ReadOnly))
        return 1;
    QUiLoader loader; // it knows the components from the plugin for Qt Designer
    loader.setWorkingDirectory(QFileInfo(file).dir());
    const std::unique_ptr<QWidget> window(loader.load(&file));
    if (window) // so that its database is looked for beside the form, wherever the program was started
        nuvo::setFormFolder(*window, loader.workingDirectory().absolutePath());
    auto *table = window ? window->findChild<TMLRTable *>("mlrTable") : nullptr;
    auto *stepWise = window ? window->findChild<TStepWiseMLR *>("stepWiseMLR") : nullptr;
    if (table == nullptr || stepWise == nullptr) {
        std::fprintf(stderr, "No such components; is the plugin in Qt's plugin path?\n");
        return 1;
    }
    try {
        table->Open();
        if (!table->ReLoad())
            return 1;
        table->Execute();
        for (int j = 0; j <= table->GetNumVars(); ++j)
            std::printf("B%d = %.15g\n", j, table->Getb(j));
        stepWise->Run();
        std::printf("Stepwise regression keeps %d of the variables.\n", table->GetNumVars());
    } catch (const EPlatformError &error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.Message()));
        return 1;
    }
}
