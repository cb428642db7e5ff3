// SPDX-License-Identifier: MIT
#include "workbench/Predictions.h"

#include "platform/Modal.h"
#include "platform/Table.h"
#include "present/Filedialog.h"
#include "workbench/Csvimport.h"
#include "workbench/Csvpreview.h"
#include "workbench/Language.h"
#include "workbench/Livefit.h"
#include "workbench/Openfile.h"
#include "workbench/Predicttable.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QInputDialog>
#include <QLocale>
#include <QProgressDialog>
#include <QTemporaryDir>

namespace nuvo {

namespace {

struct Predictions
{
    Q_DECLARE_TR_FUNCTIONS(Predictions)
};

/// "Predictions for 10 records in out.csv; 3 of them have no value: GNP is null in 2, Ln(UNEMP) cannot be …"
QString summary(const TablePredictions &done, const QString &file)
{
    if (done.stopped)
        return Predictions::tr("The predictions were stopped; no file was written.");
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
    return Predictions::tr("Predictions for %1 records in %2; %3 of them have no value: %4.", nullptr,
                           numerus(done.without))
        .arg(records, file, locale.toString(done.without), reasons.join(QStringLiteral(", ")));
}

QString write(QWidget &window, const LiveFit &fit, TTable &table, const QString &proposed, double level)
{
    checkFields(fit.State().model, table); // before a name is asked for
    const QString file =
        askFileName(&window, Predictions::tr("Predictions"), {Predictions::tr("CSV file (*.csv)")}, proposed);
    if (file.isEmpty())
        return {};
    table.Open();
    QProgressDialog progress(Predictions::tr("Writing predictions…"), Predictions::tr("Stop"), 0, 0, &window);
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(500);
    const TablePredictions done =
        predictTable(*fit.Regression(), fit.State().model, table, file, level, [&progress](qint64 records) {
            progress.setLabelText(Predictions::tr("%1 records").arg(QLocale().toString(records)));
            progress.setValue(0);
            QApplication::processEvents();
            return !progress.wasCanceled();
        });
    return summary(done, file);
}

} // namespace

QString predictATable(QWidget &window, const LiveFit &fit, double level)
{
    TTable table;
    table.SetDatabaseName(fit.State().database);
    const QStringList names = table.TableNames();
    QInputDialog dialog(&window);
    dialog.setObjectName(QStringLiteral("PredictTableDialog"));
    dialog.setWindowTitle(Predictions::tr("Predict a table"));
    dialog.setLabelText(Predictions::tr("Table with the fields of the model:"));
    dialog.setComboBoxItems(names);
    dialog.setTextValue(fit.State().table);
    if (ShowModal(dialog) != QDialog::Accepted)
        return {};
    table.SetTableName(dialog.textValue());
    return write(window, fit, table, dialog.textValue() + QLatin1String("-predictions"), level);
}

QString predictAFile(QWidget &window, const LiveFit &fit, double level)
{
    const QString file = askExistingFile(
        &window, Predictions::tr("File with the fields of the model"),
        {Predictions::tr("CSV file (*.csv *.tsv *.txt)"), Predictions::tr("All files (*)")}, QString());
    if (file.isEmpty())
        return {};
    CsvPreview preview(file, &window);
    if (ShowModal(preview) != QDialog::Accepted)
        return {};
    const QTemporaryDir folder;
    const QString database = folder.filePath(QStringLiteral("data.db"));
    const QString name = newTableFor(file, database);
    if (!importInBackground(&window, {file, preview.Corrections(), {}}, database, name))
        return Predictions::tr("The predictions were stopped; no file was written.");
    TTable table;
    table.SetDatabaseName(database);
    table.SetTableName(name);
    const QFileInfo info(file);
    return write(window, fit, table, info.dir().filePath(info.completeBaseName() + QLatin1String("-predictions")),
                 level);
}

} // namespace nuvo
