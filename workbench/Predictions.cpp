// SPDX-License-Identifier: MIT
#include "workbench/Predictions.h"

#include "platform/Errors.h"
#include "platform/Modal.h"
#include "platform/Recordrows.h"
#include "present/Filedialog.h"
#include "workbench/Csvimport.h"
#include "workbench/Csvpreview.h"
#include "workbench/Language.h"
#include "workbench/Livefit.h"
#include "workbench/Openfile.h"
#include "workbench/Predicttable.h"
#include "workbench/Waiting.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QInputDialog>
#include <QLocale>
#include <QTemporaryDir>

#include <memory>

namespace nuvo {

namespace {

struct Predictions
{
    Q_DECLARE_TR_FUNCTIONS(Predictions)
};

/// "Predictions for 10 records in out.csv; 3 of them have no value: GNP is null in 2, Ln(UNEMP) cannot be …"
QString summary(const TablePredictions &done, const QString &file)
{
    const QLocale locale;
    const QString records = locale.toString(done.records);
    if (done.without == 0)
        return Predictions::tr("Predictions for %1 records in %2.", nullptr, numerus(done.records))
            .arg(records, file);
    QStringList reasons;
    for (const MissingValues &field : done.missing) {
        if (field.nulls > 0)
            reasons.append(Predictions::tr("%1 is null in %2").arg(field.field, locale.toString(field.nulls)));
        if (field.noNumbers > 0)
            reasons.append(
                Predictions::tr("%1 holds no number in %2").arg(field.field, locale.toString(field.noNumbers)));
    }
    if (done.invalid > 0)
        reasons.append(Predictions::tr("a term cannot be worked out in %1").arg(locale.toString(done.invalid)));
    const QString why = reasons.join(QStringLiteral(", "));
    if (done.without == done.records)
        return Predictions::tr("%1 records in %2, and none of them has a value: %3.", nullptr, numerus(done.records))
            .arg(records, file, why);
    // Of more than one record.
    return Predictions::tr("Predictions for %1 records in %2; %3 of them have no value: %4.", nullptr,
                           numerus(done.without))
        .arg(records, file, locale.toString(done.without), why);
}

/// The component of the fit; while every record is read it has none.
const TRegression &fitted(const LiveFit &fit)
{
    if (!fit.HasFit())
        throw EPlatformError(Predictions::tr("Every record is being read: predictions are made when that is done."));
    return *fit.Regression();
}

QString stopped()
{
    return Predictions::tr("The predictions were stopped; no file was written.");
}

/// Of a table, from where it is: what may keep us waiting is asked by a thread.
QString write(QWidget &window, const Predictor &predictor, const ScanSource &table, const QString &proposed)
{
    const QString title = Predictions::tr("Predictions");
    // Before a name is asked for.
    const bool isThere =
        waitFor(&window, title, Predictions::tr("Opening the table…"), [predictor, table](Task &task) {
            RecordRows records(table);
            const Task::Cancelling cancelling(task, [&records] { records.cancel(); });
            records.open();
            checkFields(predictor.fields, records.fields());
        });
    if (!isThere)
        return stopped();
    const QString file = askFileName(&window, title, {Predictions::tr("CSV file (*.csv)")}, proposed);
    if (file.isEmpty())
        return {};
    const auto done = std::make_shared<TablePredictions>();
    const bool isWritten =
        waitFor(&window, title, Predictions::tr("Writing predictions…"),
                [predictor, table, file, done](Task &task) { *done = predictTable(predictor, table, file, task); });
    return isWritten ? summary(*done, file) : stopped();
}

} // namespace

QString predictATable(QWidget &window, const LiveFit &fit, const QStringList &tables, double level)
{
    const Predictor predictor = predictorOf(fitted(fit), fit.State().model, level);
    const ModelState state = fit.State();
    QInputDialog dialog(&window);
    dialog.setObjectName(QStringLiteral("PredictTableDialog"));
    dialog.setWindowTitle(Predictions::tr("Predict a table"));
    dialog.setLabelText(Predictions::tr("Table with the fields of the model:"));
    dialog.setComboBoxItems(tables);
    dialog.setTextValue(state.table);
    if (ShowModal(dialog) != QDialog::Accepted)
        return {};
    ScanSource table;
    table.databaseName = state.database;
    table.table = dialog.textValue();
    return write(window, predictor, table, table.table + QLatin1String("-predictions"));
}

QString predictAFile(QWidget &window, const LiveFit &fit, double level)
{
    fitted(fit); // before a file is asked for
    const QString file = askExistingFile(
        &window, Predictions::tr("File with the fields of the model"),
        {Predictions::tr("CSV file (*.csv *.tsv *.txt)"), Predictions::tr("All files (*)")}, QString());
    if (file.isEmpty())
        return {};
    const Predictor predictor = predictorOf(fitted(fit), fit.State().model, level);
    CsvPreview preview(file, &window);
    if (ShowModal(preview) != QDialog::Accepted)
        return {};
    const QTemporaryDir folder;
    ScanSource table;
    table.databaseName = folder.filePath(QStringLiteral("data.db"));
    table.table = newTableFor(file, table.databaseName);
    if (!importInBackground(&window, {file, preview.Corrections(), {}}, table.databaseName, table.table))
        return stopped();
    const QFileInfo info(file);
    return write(window, predictor, table,
                 info.dir().filePath(info.completeBaseName() + QLatin1String("-predictions")));
}

} // namespace nuvo
