// SPDX-License-Identifier: MIT
#include "workbench/Csvimport.h"

#include "app/Csvtable.h"
#include "platform/Errors.h"
#include "workbench/Waiting.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>

namespace nuvo {

namespace {

/// Thrown out of the work when the person has ended it.
struct Ended
{
};

void import(const CsvOptions &csv, const QString &database, const QString &table, Task &task)
{
    CsvReader reader(csv.file, csv.corrections);
    const double size = std::max(1.0, double(QFileInfo(csv.file).size()));
    int pass = 0; // the first one looks at the cells, the second one takes them
    reader.follow([&](qint64 bytes) {
        task.percentage = int(50 * (pass + std::min(1.0, double(bytes) / size)));
        if (task.IsStopped())
            throw Ended();
    });
    const CsvSurvey survey = surveyCsv(reader);
    pass = 1;
    NewTable made(database, table);
    fillTable(made, reader, survey, false);
    if (task.Finish())
        made.commit();
}

} // namespace

bool importInBackground(QWidget *parent, const CsvOptions &csv, const QString &database, const QString &table)
{
    const QString file = QFileInfo(csv.file).fileName();
    return waitFor(parent, QCoreApplication::translate("Openfile", "Open %1").arg(file),
                   QCoreApplication::translate("Openfile", "Reading the file…"),
                   [csv, database, table, file](Task &task) {
                       try {
                           import(csv, database, table, task);
                       } catch (const EPlatformError &error) {
                           if (error.Message().contains(file))
                               throw;
                           throw EPlatformError(file + QLatin1String(": ") + error.Message());
                       }
                   });
}

} // namespace nuvo
