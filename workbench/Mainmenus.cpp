// SPDX-License-Identifier: MIT
#include "workbench/Mainwindow.h"

#include "app/Samples.h"
#include "engine/Regression.h"
#include "platform/Errors.h"
#include "platform/Modal.h"
#include "platform/Table.h"
#include "present/figures/Figurespage.h"
#include "present/statistics/Observationspage.h"
#include "workbench/Ascode.h"
#include "workbench/Ascommand.h"
#include "workbench/Asform.h"
#include "workbench/Choicepage.h"
#include "workbench/Handout.h"
#include "workbench/Leaveout.h"
#include "workbench/Livefit.h"
#include "workbench/Modelstable.h"
#include "workbench/Openfile.h"
#include "workbench/Pages.h"
#include "workbench/Recordspage.h"
#include "workbench/Sitting.h"
#include "workbench/Welcome.h"

#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QSaveFile>
#include <QSettings>
#include <QTableView>
#include <QUndoStack>

namespace nuvo {

namespace {

constexpr int kMostRecent = 8;

QAction *add(QMenu *menu, const QString &text, const QKeySequence &keys, const QString &hint)
{
    QAction *const action = menu->addAction(text);
    action->setShortcut(keys);
    action->setStatusTip(hint);
    action->setToolTip(hint);
    return action;
}

} // namespace

void MainWindow::MakeFileMenu()
{
    QMenu *const menu = menuBar()->addMenu(tr("&File"));
    menu->setObjectName(QStringLiteral("FileMenu"));
    connect(add(menu, tr("&Open…"), QKeySequence::Open, tr("Open a CSV file, an SQLite database or a form")),
            &QAction::triggered, this, &MainWindow::AskAndOpen);
    connect(add(menu, tr("Open Ser&ver…"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_O),
                tr("Open a database on a server; the connection is tried first")),
            &QAction::triggered, this, &MainWindow::AskServer);
    connect(add(menu, tr("Quer&y…"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Q),
                tr("Type an SQL statement and look at what it gives")),
            &QAction::triggered, this, &MainWindow::AskQuery);
    recent_ = menu->addMenu(tr("Open Re&cent"));
    recent_->setObjectName(QStringLiteral("RecentMenu"));
    connect(recent_, &QMenu::aboutToShow, this, &MainWindow::ShowRecent);
    ShowRecent();
    menu->addSeparator();
    connect(add(menu, tr("&Save as Form…"), QKeySequence::Save,
                tr("Save the model as a form that Qt Designer opens and nuvostat runs")),
            &QAction::triggered, this, &MainWindow::SaveForm);
    connect(
        add(menu, tr("Save &Database…"), {}, tr("Save the tables that came from CSV files as an SQLite database")),
        &QAction::triggered, this, &MainWindow::SaveDatabase);
    handout_->AddFileActions(*menu);
    menu->addSeparator();
    connect(add(menu, tr("&Quit"), QKeySequence(Qt::CTRL | Qt::Key_Q),
                tr("Quit; the sitting comes back at the next start")),
            &QAction::triggered, this, &QWidget::close);
}

void MainWindow::MakeEditMenu()
{
    QMenu *const menu = menuBar()->addMenu(tr("&Edit"));
    menu->setObjectName(QStringLiteral("EditMenu"));
    QUndoStack &steps = sitting_->Undo();
    QAction *const undo = add(menu, tr("&Undo"), QKeySequence::Undo, tr("Take the last change back"));
    QAction *const redo = add(menu, tr("&Redo"), QKeySequence::Redo, tr("Make the change that was taken back again"));
    connect(undo, &QAction::triggered, &steps, &QUndoStack::undo);
    connect(redo, &QAction::triggered, &steps, &QUndoStack::redo);
    connect(&steps, &QUndoStack::undoTextChanged, undo,
            [undo](const QString &what) { undo->setText(what.isEmpty() ? tr("&Undo") : tr("&Undo %1").arg(what)); });
    connect(&steps, &QUndoStack::redoTextChanged, redo,
            [redo](const QString &what) { redo->setText(what.isEmpty() ? tr("&Redo") : tr("&Redo %1").arg(what)); });
    connect(&steps, &QUndoStack::canUndoChanged, undo, &QAction::setEnabled);
    connect(&steps, &QUndoStack::canRedoChanged, redo, &QAction::setEnabled);
    undo->setEnabled(false);
    redo->setEnabled(false);
    menu->addSeparator();
    handout_->AddEditActions(*menu);
    connect(add(menu, tr("Copy as Co&mmand"), {}, tr("Copy the nuvostat line that makes this fit")),
            &QAction::triggered, this, &MainWindow::CopyCommand);
    connect(add(menu, tr("Copy as C&++"), {}, tr("Copy the program that makes this fit")), &QAction::triggered, this,
            &MainWindow::CopyProgram);
}

void MainWindow::MakeViewMenu()
{
    QMenu *const model = menuBar()->addMenu(tr("&Model"));
    model->setObjectName(QStringLiteral("ModelMenu"));
    auto *const records = new QActionGroup(this);
    const auto addUse = [&](const QString &text, RecordUse use, const QString &hint) {
        QAction *const action = add(model, text, {}, hint);
        action->setCheckable(true);
        action->setChecked(use == RecordUse::First);
        action->setActionGroup(records);
        connect(action, &QAction::triggered, this, [this, use] {
            ModelState state = sitting_->State();
            state.records = use;
            sitting_->Change(state, tr("Records"));
        });
        connect(sitting_, &Sitting::StateChanged, action,
                [this, action, use] { action->setChecked(sitting_->State().records == use); });
    };
    addUse(tr("&First 2500 Records"), RecordUse::First, tr("Fit to the first 2500 records that can be used"));
    addUse(tr("&Every Record"), RecordUse::All, tr("Read every record, in the background"));
    addUse(tr("Every Record, on the &Server"), RecordUse::Server, tr("Have the database add up every record"));
    model->addSeparator();
    connect(add(model, tr("&Read Again"), QKeySequence::Refresh, tr("Read the records again and fit")),
            &QAction::triggered, this, &MainWindow::ReadAgain);
    QAction *const out = add(model, tr("&Leave Selected Records Out"), QKeySequence(Qt::CTRL | Qt::Key_Delete),
                             tr("Leave the selected records out of everything, by the filter"));
    connect(out, &QAction::triggered, this, &MainWindow::LeaveSelectedOut);
    pages_->Records().View().addAction(out);
    pages_->Observations().View().addAction(out);
    pages_->FiguresPage().View().addAction(out);
    connect(add(model, tr("&Compare Two Models…"), {}, tr("Compare the two models that are selected below")),
            &QAction::triggered, this, &MainWindow::CompareModels);

    QMenu *const view = menuBar()->addMenu(tr("&View"));
    view->setObjectName(QStringLiteral("ViewMenu"));
    for (int page = 0; page < pages_->count(); ++page) {
        connect(add(view, pages_->tabText(page), QKeySequence(Qt::ALT | Qt::Key(Qt::Key_1 + page)), {}),
                &QAction::triggered, this, [this, page] { pages_->setCurrentIndex(page); });
    }
    view->addSeparator();
    for (QDockWidget *const dock : findChildren<QDockWidget *>())
        view->addAction(dock->toggleViewAction());
    findChild<QDockWidget *>(QStringLiteral("TablesDock"))
        ->toggleViewAction()
        ->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_T));
    findChild<QDockWidget *>(QStringLiteral("ModelsDock"))
        ->toggleViewAction()
        ->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_M));
    view->addSeparator();
    connect(add(view, tr("&Next Part of the Window"), Qt::Key_F6, tr("Go on: tables, model, page, models tried")),
            &QAction::triggered, this, [this] { GoToPane(1); });
    connect(add(view, tr("&Previous Part of the Window"), QKeySequence(Qt::SHIFT | Qt::Key_F6), tr("Go back")),
            &QAction::triggered, this, [this] { GoToPane(-1); });
}

void MainWindow::AskAndOpen()
{
    const QString file = QFileDialog::getOpenFileName(
        this, tr("Open"), {},
        tr("Everything that can be opened (*.csv *.tsv *.txt *.db *.sqlite *.sqlite3 *.ui);;All files (*)"));
    if (!file.isEmpty())
        OpenFile(file);
}

void MainWindow::OpenSamples()
{
    Try([this] {
        const QString samples = QDir(folder_).filePath(QStringLiteral("samples"));
        const QString database = QDir(samples).filePath(QStringLiteral("samples.db"));
        if (!QFileInfo::exists(database)) {
            QDir(samples).removeRecursively(); // of an interrupted run
            makeSamples({samples, {}});
        }
        OpenDatabase(database);
    });
}

void MainWindow::OpenNamed(const QString &name)
{
    if (name.contains(u"://"))
        OpenDatabase(name);
    else
        OpenFile(name);
}

void MainWindow::SaveForm()
{
    if (!sitting_->State().isFittable()) {
        Tell(tr("There is no model yet to save."), true);
        return;
    }
    const QString name = handout_->AskName(tr("Save as form"), tr("Form (*.ui)"), tr("model"));
    if (name.isEmpty())
        return;
    Try([&] {
        QSaveFile file(name);
        const QByteArray form =
            formFile(sitting_->State(), QFileInfo(name).absolutePath(), pages_->Choosing().Chosen());
        if (!file.open(QIODevice::WriteOnly) || file.write(form) != form.size() || !file.flush() || !file.commit())
            throw EPlatformError(tr("Cannot write \"%1\": %2.").arg(name, file.errorString()));
        TellWhereRecordsAre(tr("Saved %1.").arg(name));
        Remember(name);
    });
}

bool MainWindow::HasModelToCopy()
{
    const bool isThere = sitting_->State().isFittable();
    if (!isThere)
        Tell(tr("There is no model yet to copy."), true);
    return isThere;
}

void MainWindow::CopyCommand()
{
    if (!HasModelToCopy())
        return;
    const ModelState &state = sitting_->State();
    const CsvOrigin *const origin = IsOwn() ? sitting_->Origin(state.table) : nullptr;
    const QString hindrance = origin != nullptr ? csvHindrance(state, *origin) : QString();
    const bool namesTheFile = origin != nullptr && hindrance.isEmpty();
    QApplication::clipboard()->setText(namesTheFile ? fitCommand(state, *origin) : fitCommand(state));
    if (namesTheFile)
        Tell(tr("Copied."));
    else
        TellWhereRecordsAre(tr("Copied."), hindrance);
}

void MainWindow::CopyProgram()
{
    if (!HasModelToCopy())
        return;
    QApplication::clipboard()->setText(fitProgram(sitting_->State()));
    TellWhereRecordsAre(tr("Copied."));
}

bool MainWindow::IsOwn() const
{
    return sitting_->State().database == QDir(folder_).filePath(QStringLiteral("data.db"));
}

/// What came from a CSV file lies where the sitting keeps it, and goes with it.
void MainWindow::TellWhereRecordsAre(const QString &done, const QString &why)
{
    if (!IsOwn())
        Tell(done);
    else if (why.isEmpty())
        Tell(tr("%1 It names the database of this sitting: File > Save Database first gives it one that stays.")
                 .arg(done));
    else
        Tell(
            tr("%1 It names the database of this sitting, as %2: File > Save Database first gives it one that stays.")
                .arg(done, why));
}

void MainWindow::SaveDatabase()
{
    const QString own = QDir(folder_).filePath(QStringLiteral("data.db"));
    if (!QFileInfo::exists(own)) {
        Tell(tr("No CSV file has been opened in this sitting: there is nothing to save."), true);
        return;
    }
    const QString name = handout_->AskName(tr("Save database"), tr("SQLite database (*.db)"), tr("data"));
    if (name.isEmpty())
        return;
    Try([&] {
        saveCopy(own, name);
        ModelState state = sitting_->State();
        if (state.database == own) {
            state.database = name;
            sitting_->Change(state, tr("Save database"));
        }
        Tell(tr("Saved %1.").arg(name));
        Remember(name);
    });
}

void MainWindow::LeaveSelectedOut()
{
    Try([this] {
        const std::set<qint64> selected = pages_->Records().Selected();
        if (selected.empty())
            throw EPlatformError(tr("Select what to leave out first: records, observations, or points of a figure."));
        const ModelState before = sitting_->State();
        const std::optional<ModelState> without = leavingOut(*this, before, selected);
        ModelState state = sitting_->State();
        if (!without)
            Tell(tr("The reading was stopped."));
        if (!without || state.database != before.database || state.table != before.table ||
            state.filter != before.filter) // meanwhile
            return;
        state.filter = without->filter;
        sitting_->Change(state, tr("Leave records out"));
    });
}

void MainWindow::CompareModels()
{
    const QString text = models_->Comparison();
    if (text.isEmpty()) {
        Tell(tr("Select two models in the list below to compare them."), true);
        return;
    }
    QMessageBox box(QMessageBox::NoIcon, tr("Two models"), text, QMessageBox::Close, this);
    box.setTextFormat(Qt::PlainText);
    ShowModal(box);
}

void MainWindow::Remember(const QString &file)
{
    QSettings settings;
    QStringList files = settings.value(QStringLiteral("recent")).toStringList();
    files.removeAll(file);
    files.prepend(file);
    settings.setValue(QStringLiteral("recent"), files.mid(0, kMostRecent));
    // Not at once: it may be one of its actions that this is about.
    QMetaObject::invokeMethod(this, &MainWindow::ShowRecent, Qt::QueuedConnection);
}

void MainWindow::ShowRecent()
{
    recent_->clear();
    const QStringList files = QSettings().value(QStringLiteral("recent")).toStringList();
    int number = 0;
    for (const QString &file : files) {
        const QString text = QStringLiteral("&%1 ").arg(++number) + QString(file).replace(u'&', QLatin1String("&&"));
        connect(recent_->addAction(text), &QAction::triggered, this, [this, file] { OpenNamed(file); });
    }
    welcome_->SetRecent(files);
    recent_->setEnabled(!files.isEmpty());
}

} // namespace nuvo
