// SPDX-License-Identifier: MIT
#include "workbench/Mainwindow.h"

#include "design/model/Modeleditor.h"
#include "design/sql/Sqldialog.h"
#include "engine/Regression.h"
#include "platform/Connectiontry.h"
#include "platform/Databasename.h"
#include "platform/Dataset.h"
#include "platform/Errors.h"
#include "platform/Modal.h"
#include "platform/Passwords.h"
#include "platform/Table.h"
#include "present/Connectiondlg.h"
#include "workbench/Asking.h"
#include "workbench/Livefit.h"
#include "workbench/Nearrecords.h"
#include "workbench/Pages.h"
#include "workbench/Recordspage.h"
#include "workbench/Sitting.h"
#include "workbench/Tablefinder.h"

#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QScopedValueRollback>

// How databases, tables and statements are opened: what may keep us waiting is asked by a thread.

namespace nuvo {

void MainWindow::FollowRecords()
{
    connect(near_, &NearRecords::Started, this, [this] {
        fetchedWith_ = passwordOf((wanted_ ? wanted_->first : sitting_->State()).database);
        Tell(tr("Reading the records…"));
        progress_->setRange(0, 0);
        progress_->show();
        stop_->show();
    });
    connect(near_, &NearRecords::Progressed, this, [this](qint64 records) {
        if (records > 0)
            Tell(tr("Reading the records: %1 so far…").arg(QLocale().toString(records)));
    });
    connect(near_, &NearRecords::Ended, this, [this] {
        progress_->hide();
        stop_->hide();
        Try([this] { RecordsEnded(); });
    });
}

void MainWindow::Open(const ModelState &state, const QString &what)
{
    ModelState next = state;
    QStringList names = state.isQuery() ? parametersOf(state) : QStringList();
    names.sort();
    if (names != QStringList(state.params.keys())) {
        const auto values = askParameters(this, names, state.params);
        if (!values)
            return;
        next.params = *values;
    }
    if (near_->IsHere(next)) {
        sitting_->Change(next, what);
        return;
    }
    wanted_ = {next, what};
    near_->Fetch(next);
}

/// The records are at hand now, or the reason why not.
void MainWindow::RecordsEnded()
{
    const std::optional<std::pair<ModelState, QString>> wanted = std::exchange(wanted_, std::nullopt);
    const ModelState state = wanted ? wanted->first : sitting_->State();
    if (near_->WantsPassword() && AskPassword(state.database, fetchedWith_, near_->Why())) {
        if (wanted)
            Open(wanted->first, wanted->second);
        else
            Follow();
    } else if (near_->WasStopped()) {
        Tell(tr("The reading was stopped."));
    } else if (!near_->Why().isEmpty()) {
        Tell(near_->Why(), true);
    } else if (wanted) {
        sitting_->Change(wanted->first, wanted->second);
    } else {
        ShowRecords();
    }
}

/// Of the present state: at once, or as soon as they are at hand.
void MainWindow::ShowRecords()
{
    const ModelState &state = sitting_->State();
    if (!near_->IsHere(state)) {
        fieldsOf_.clear();
        fit_->Await(state);
        pages_->Records().SetState(state, {}, false);
        near_->Fetch(state);
        return;
    }
    pages_->Records().SetState(state, near_->Table(state), near_->IsSmall(state));
    fit_->Fit(state, near_->Here(state), near_->Every(state));
    const QString source = state.database + u'\n' + state.table + u'\n' + state.statement();
    if (source == std::exchange(fieldsOf_, source))
        return;
    TRegression *const regression = fit_->Regression();
    if (regression != nullptr && regression->DataSet().Active()) {
        editor_->SetFields(modelFields(regression->DataSet()));
    } else {
        ModelFields none;
        none.why = fit_->Why();
        editor_->SetFields(none);
        fieldsOf_.clear();
    }
}

void MainWindow::ShowTables()
{
    const ModelState &state = sitting_->State();
    const QSignalBlocker quiet(tables_);
    if (state.database != tablesOf_) {
        finder_->SetNames({});
        tablesOf_.clear();
    }
    if (tablesOf_.isEmpty() && isServerName(state.database)) {
        ListServer(state.database);
    } else if (tablesOf_.isEmpty() && !state.database.isEmpty()) {
        try {
            TTable table;
            table.SetDatabaseName(state.database);
            finder_->SetNames(table.TableNames());
            tablesOf_ = state.database;
        } catch (const EPlatformError &) {
            // Nothing of the state before is to stand beside the error.
            fieldsOf_.clear();
            fit_->Await(state);
            pages_->Records().SetState(state, {}, false);
            throw;
        }
    }
    ShowTableNames({}, {});
}

/// Fills the list where it was asked for, and marks the table of the state.
void MainWindow::ShowTableNames(const QStringList &names, const QString &database)
{
    const QSignalBlocker quiet(tables_);
    if (!database.isEmpty()) {
        finder_->SetNames(names);
        tablesOf_ = database;
    }
    const QList<QListWidgetItem *> found =
        tables_->findItems(sitting_->State().table, Qt::MatchExactly | Qt::MatchCaseSensitive);
    tables_->setCurrentItem(found.value(0));
}

QStringList MainWindow::TableNames() const
{
    QStringList names;
    for (int row = 0; row < tables_->count(); ++row)
        names.append(tables_->item(row)->text());
    return names;
}

void MainWindow::ListServer(const QString &database)
{
    if (std::exchange(listing_, database) == database)
        return;
    const QString used = passwordOf(database);
    tryConnection(database, used, this, [this, database, used](const ConnectionAnswer &answer) {
        if (listing_ != database)
            return;
        listing_.clear();
        if (sitting_->State().database != database)
            return;
        Try([&] {
            if (answer.error.isEmpty())
                ShowTableNames(answer.tables, database);
            else if (answer.passwordWanted && AskPassword(database, used, answer.error))
                Follow();
            else
                Tell(answer.error, true);
        });
    });
}

void MainWindow::OpenServer(const QString &database)
{
    Tell(tr("Opening %1…").arg(withoutPasswords(database)));
    listing_.clear();
    const QString used = passwordOf(database);
    tryConnection(database, used, this, [this, database, used](const ConnectionAnswer &answer) {
        Try([&] {
            if (answer.passwordWanted && AskPassword(database, used, answer.error)) {
                OpenServer(database);
            } else if (!answer.error.isEmpty()) {
                Tell(answer.error, true);
            } else {
                ShowTableNames(answer.tables, database);
                ModelState state;
                state.database = database;
                state.table = answer.tables.size() == 1 ? answer.tables.first() : QString();
                Remember(database);
                Open(state, tr("Open a database"));
            }
        });
    });
}

void MainWindow::OpenDatabase(const QString &name)
{
    const QString database = keepOdbcPassword(name);
    if (isServerName(database)) {
        OpenServer(database);
        return;
    }
    Try([&] {
        TTable table;
        table.SetDatabaseName(database);
        const QStringList names = table.TableNames(); // or an error
        ModelState state;
        state.database = database;
        state.table = names.size() == 1 ? names.first() : QString();
        sitting_->Change(state, tr("Open a database"));
        Remember(database);
    });
}

void MainWindow::OpenTable(const QString &name)
{
    ModelState state = sitting_->State();
    if (state.table == name)
        return;
    state.table = name;
    state.sql.clear();
    state.params.clear();
    state.filter.clear();
    state.model = {};
    Open(state, tr("Open a table"));
}

bool MainWindow::AskPassword(const QString &database, const QString &used, const QString &why)
{
    // Tables and records are asked for at the same time, the person once.
    if (passwordOf(database) != used)
        return true;
    if (asking_)
        return false;
    const QScopedValueRollback<bool> asking(asking_, true);
    const std::optional<QString> password = askPassword(this, database, why);
    if (password)
        setPassword(database, *password);
    return password.has_value();
}

void MainWindow::AskServer()
{
    Try([this] {
        const QString now = sitting_->State().database;
        ConnectionDialog dialog(this);
        dialog.KeepPassword();
        dialog.SetDatabaseName(isServerName(now) ? now : QStringLiteral("postgresql:///"));
        if (ShowModal(dialog) != QDialog::Accepted)
            return;
        if (!dialog.Password().isEmpty())
            setPassword(dialog.DatabaseName(), dialog.Password());
        OpenDatabase(dialog.DatabaseName());
    });
}

void MainWindow::AskQuery()
{
    const ModelState &now = sitting_->State();
    if (now.database.isEmpty()) {
        Tell(tr("Open a database first: a statement reads its tables."), true);
        return;
    }
    Try([&] {
        QVariantMap params;
        for (auto param = now.params.begin(); param != now.params.end(); ++param)
            params.insert(param.key().toLower(), param.value());
        QStringList lines = now.isQuery() ? now.sql.split(u'\n') : QStringList();
        TSqlDialog dialog(this);
        if (!dialog.OpenForm(tr("Query"), now.database, params, lines) || lines.isEmpty())
            return;
        ModelState state = now;
        state.sql = lines.join(u'\n');
        state.table.clear();
        state.filter.clear();
        state.params.clear();
        const QStringList names = parametersOf(state);
        for (const QString &name : names)
            state.params.insert(name, now.params.value(name));
        if (!names.isEmpty()) {
            const auto values = askParameters(this, names, state.params);
            if (!values)
                return;
            state.params = *values;
        }
        Open(state, tr("Query"));
    });
}

void MainWindow::ReadAgain()
{
    near_->Forget();
    tablesOf_.clear();
    Try([this] {
        ShowTables();
        if (fit_->Regression() == nullptr || !near_->IsHere(sitting_->State())) {
            ShowRecords();
            return;
        }
        pages_->Records().ReadAgain();
        fit_->FitAgain();
    });
}

} // namespace nuvo
