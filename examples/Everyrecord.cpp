// SPDX-License-Identifier: MIT
#include <engine/Mlrtable.h>
#include <platform/Errors.h>

#include <QApplication>

#include <cstdio>

// Every record of a large table, while the program goes on: memory stays that of a block of records.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    TMLRTable orders;
    // No handler may let an exception out: Qt's event loop cannot carry it.
    QObject::connect(&orders, &TMLRTable::LoadEnded, &application, [&](bool loaded) {
        if (loaded) {
            orders.Execute();
            std::printf("%lld records, residuals of a sample of %d\n", orders.RecordsUsed(), orders.SampleSize());
            std::printf("price = %.6f %+.6f size %+.6f age\n", orders.Getb(0), orders.Getb(1), orders.Getb(2));
        }
        QCoreApplication::exit(loaded ? 0 : 1);
    });
    try {
        orders.SetDatabaseName("orders.db");
        orders.SetTableName("Orders");
        orders.SetRecords(TMLRTable::AllRecords);
        orders.ResponseVarY().SetField("price");
        orders.ControlVar(1).SetField1("size");
        orders.ControlVar(1).SetTransformation("None");
        orders.ControlVar(2).SetField1("age");
        orders.ControlVar(2).SetTransformation("None");
        orders.Open();
        orders.StartReLoad(); // returns at once; LoadEnded tells the end, StopLoad() would end it early
    } catch (const EPlatformError &error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.Message()));
        return 1;
    }
    return application.exec();
}
