// SPDX-License-Identifier: MIT
#include <engine/Mlrtable.h>
#include <platform/Errors.h>

#include <QApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <cstdio>

namespace {

// A component only reads. What a program writes goes over a connection of its own, in one transaction.
bool writeResiduals(TMLRTable &air, QSqlDatabase database)
{
    QSqlQuery write(database);
    if (!database.transaction() || !write.exec("DROP TABLE IF EXISTS Residuals") ||
        !write.exec("CREATE TABLE Residuals (Day DATE PRIMARY KEY, Fitted REAL, Residual REAL, Leverage REAL)") ||
        !write.prepare("INSERT INTO Residuals VALUES (?, ?, ?, ?)"))
        return false;
    for (int i = 1; i <= air.SampleSize(); ++i) {
        air.MoveBy(air.GetRecord(i) - air.RecNo()); // to the record behind observation i
        write.addBindValue(air.FieldByName("Day").AsString());
        write.addBindValue(air.GetyHat(i));
        write.addBindValue(air.Gete(i));
        write.addBindValue(air.GetLeverage(i));
        if (!write.exec())
            return false;
    }
    return database.commit();
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QString file = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString("samples.db");
    try {
        TMLRTable air;
        air.SetDatabaseName(file);
        air.SetTableName("Airquality");
        air.ResponseVarY().SetField("Ozone");
        air.ResponseVarY().SetTransformation("Log");
        air.ControlVar(1).SetField1("Temp");
        air.ControlVar(1).SetTransformation("None");
        air.Open();
        if (!air.ReLoad())
            return 1; // a message has said why
        air.Execute();

        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE");
        database.setDatabaseName(file);
        if (!database.open() || !writeResiduals(air, database)) {
            std::fprintf(stderr, "Cannot write to %s: %s\n", qPrintable(file),
                         qPrintable(database.lastError().text()));
            return 1;
        }
        std::printf("Wrote %d residuals\n", air.SampleSize());
    } catch (const EPlatformError &error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.Message()));
        return 1;
    }
}
