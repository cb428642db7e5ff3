// SPDX-License-Identifier: MIT
#include <engine/Mlrtable.h>
#include <platform/Errors.h>

#include <QApplication>

#include <cstdio>

// A table on a PostgreSQL server, which adds up the records itself:
//     example_postgres postgresql://ann@localhost/shop
// A password comes from PostgreSQL's password file, never from the address.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "Usage: example_postgres postgresql://user@host:port/database\n");
        return 2;
    }
    try {
        TMLRTable longley;
        longley.SetDatabaseName(QString::fromLocal8Bit(argv[1]) + "?connect_timeout=5&read_timeout=60");
        longley.SetTableName("longley"); // a server keeps names in small letters unless they were quoted
        longley.SetRecords(TMLRTable::ServerRecords);
        longley.ResponseVarY().SetField("totemp");
        longley.ControlVar(1).SetField1("gnp");
        longley.ControlVar(1).SetTransformation("None");
        longley.ControlVar(2).SetField1("unemp");
        longley.ControlVar(2).SetTransformation("None");
        longley.Open();
        if (!longley.ReLoad())
            return 1; // a message has said why
        longley.Execute();
        std::printf("%lld records, R2 = %.6f\n", longley.RecordsUsed(), longley.GetRSquared());
        for (int j = 0; j <= longley.GetNumVars(); ++j)
            std::printf("b%d = %.10g\n", j, longley.Getb(j));
    } catch (const EPlatformError &error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.Message()));
        return 1;
    }
}
