// SPDX-License-Identifier: MIT
#include "workbench/Mainwindow.h"

#include "design/model/Modeleditor.h"
#include "engine/Regression.h"
#include "platform/Dataset.h"
#include "platform/Errors.h"
#include "platform/Modal.h"
#include "platform/Table.h"
#include "workbench/Asform.h"
#include "workbench/Choicepage.h"
#include "workbench/Csvimport.h"
#include "workbench/Csvpreview.h"
#include "workbench/Handout.h"
#include "workbench/Keptmodels.h"
#include "workbench/Language.h"
#include "workbench/Livefit.h"
#include "workbench/Modelstable.h"
#include "workbench/Nearrecords.h"
#include "workbench/Openfile.h"
#include "workbench/Pages.h"
#include "workbench/Predictions.h"
#include "workbench/Predictpage.h"
#include "workbench/Recordspage.h"
#include "workbench/Sitting.h"
#include "workbench/Tablefinder.h"
#include "workbench/Welcome.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDir>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QScopeGuard>
#include <QSettings>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QStyle>

#include <algorithm>

namespace nuvo {

MainWindow::MainWindow(const QString &folder, QWidget *parent)
    : QMainWindow(parent), folder_(folder), sitting_(new Sitting(this)), fit_(new LiveFit(this)),
      near_(new NearRecords(folder, this)), tables_(new QListWidget(this)), finder_(new TableFinder(*tables_, this)),
      editor_(new TModelEditor(this)), pages_(new Pages(this)), models_(new ModelsTable(*sitting_, this)),
      handout_(new Handout(*sitting_, *pages_, *models_, *this)), centre_(new QStackedWidget(this)),
      middle_(new QSplitter(Qt::Horizontal, this)), welcome_(new Welcome(this)), sign_(new QLabel(this)),
      message_(new QLabel(this)), progress_(new QProgressBar(this)), stop_(new QPushButton(tr("Stop"), this))
{
    setObjectName(QStringLiteral("Workbench"));
    setAcceptDrops(true);
    MakeWidgets();
    MakeFileMenu();
    MakeEditMenu();
    MakeViewMenu();
    MakeHelpMenu();
    connect(sitting_, &Sitting::StateChanged, this, &MainWindow::Follow);
    connect(sitting_, &Sitting::ModelsChanged, this, &MainWindow::Save);
    connect(editor_, &TModelEditor::ModelChanged, this, [this] {
        ModelState state = sitting_->State();
        state.model = editor_->Model();
        sitting_->Change(state, tr("Change of the model"));
    });
    connect(&pages_->Records(), &RecordsPage::FilterTyped, this, [this](const QString &filter) {
        ModelState state = sitting_->State();
        state.filter = filter;
        sitting_->Change(state, tr("Filter"));
    });
    connect(&pages_->Choosing(), &ChoicePage::ModelTaken, this, [this](const RegressionModel &model) {
        ModelState state = sitting_->State();
        state.model = model;
        sitting_->Change(state, tr("Take a chosen model"));
    });
    const auto tell = [this](const QString &said) {
        if (!said.isEmpty())
            Tell(said);
    };
    connect(&pages_->Prediction(), &PredictPage::TableWanted, this,
            [=, this](double level) { Try([&] { tell(predictATable(*this, *fit_, TableNames(), level)); }); });
    connect(&pages_->Prediction(), &PredictPage::FileWanted, this,
            [=, this](double level) { Try([&] { tell(predictAFile(*this, *fit_, level)); }); });
    connect(handout_, &Handout::Said, this, &MainWindow::Tell);
    connect(fit_, &LiveFit::Started, this, [this] {
        Tell(fit_->State().records == RecordUse::First ? tr("Reading the records…") : tr("Reading every record…"));
        progress_->setRange(0, 100);
        progress_->setValue(0);
        progress_->show();
        stop_->show();
    });
    connect(fit_, &LiveFit::Progressed, progress_, &QProgressBar::setValue);
    connect(fit_, &LiveFit::Ended, this, &MainWindow::ShowEnd);
    FollowRecords();
    connect(tables_, &QListWidget::itemActivated, this,
            [this](const QListWidgetItem *item) { OpenTable(item->text()); });
    connect(tables_, &QListWidget::itemClicked, this,
            [this](const QListWidgetItem *item) { OpenTable(item->text()); });

    editor_->SetAdvice(
        tr("File > Query can make a number of it, such as CASE WHEN %1 = 'yes' THEN 1 ELSE 0 END AS yes."));
    qApp->installEventFilter(this);
    RestoreLayout();
    const QString saved = QDir(folder_).filePath(QStringLiteral("sitting.json"));
    try {
        if (QFileInfo::exists(saved))
            sitting_->Load(saved);
        else
            Follow();
    } catch (const EPlatformError &error) {
        // The next change is saved under the same name.
        const QString aside = QDir(folder_).filePath(QStringLiteral("sitting-damaged.json"));
        QFile::remove(aside);
        QFile::rename(saved, aside);
        Follow();
        Tell(tr("%1 It was put aside as %2.").arg(error.Message(), aside), true);
    }
}

MainWindow::~MainWindow()
{
    // The pages ask the fit, and the grid its dataset, as long as they live.
    delete pages_;
}

void MainWindow::MakeWidgets()
{
    tables_->setObjectName(QStringLiteral("Tables"));
    tables_->setAccessibleName(tr("Tables"));
    auto *const tables = new QDockWidget(tr("Tables"), this);
    tables->setObjectName(QStringLiteral("TablesDock"));
    tables->setWidget(finder_->WithList());
    addDockWidget(Qt::LeftDockWidgetArea, tables);

    auto *const models = new QDockWidget(tr("Models tried"), this);
    models->setObjectName(QStringLiteral("ModelsDock"));
    models->setWidget(models_);
    addDockWidget(Qt::BottomDockWidgetArea, models);

    middle_->setObjectName(QStringLiteral("Middle"));
    middle_->setChildrenCollapsible(false);
    // One above the other they leave the pages more room, and the window fits on a small screen.
    editor_->findChild<QSplitter *>(QStringLiteral("Halves"))->setOrientation(Qt::Vertical);
    middle_->addWidget(editor_);
    middle_->addWidget(pages_);
    middle_->setStretchFactor(0, 0);
    middle_->setStretchFactor(1, 1);
    centre_->addWidget(welcome_);
    centre_->addWidget(middle_);
    setCentralWidget(centre_);
    connect(welcome_, &Welcome::FileWanted, this, &MainWindow::AskAndOpen);
    connect(welcome_, &Welcome::ServerWanted, this, &MainWindow::AskServer);
    connect(welcome_, &Welcome::SamplesWanted, this, &MainWindow::OpenSamples);
    connect(welcome_, &Welcome::GuideWanted, this, &MainWindow::ShowGuide);
    connect(welcome_, &Welcome::RecentWanted, this, &MainWindow::OpenNamed);

    message_->setObjectName(QStringLiteral("Message"));
    message_->setTextFormat(Qt::PlainText);
    message_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    message_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    progress_->setObjectName(QStringLiteral("Progress"));
    progress_->setMaximumWidth(200);
    progress_->hide();
    stop_->setObjectName(QStringLiteral("Stop"));
    stop_->setToolTip(tr("Stop reading (Escape)"));
    stop_->setShortcut(Qt::Key_Escape);
    stop_->hide();
    connect(stop_, &QPushButton::clicked, fit_, &LiveFit::Stop);
    connect(stop_, &QPushButton::clicked, near_, &NearRecords::Stop);
    sign_->setObjectName(QStringLiteral("MessageSign"));
    sign_->hide();
    statusBar()->addWidget(sign_);
    statusBar()->addWidget(message_, 1);
    statusBar()->addPermanentWidget(progress_);
    statusBar()->addPermanentWidget(stop_);
}

void MainWindow::Tell(const QString &text, bool isError)
{
    said_ = {text, isError};
    const QString all = QStringList{text, isError ? QString() : unsaved_, warning_}.join(u' ').trimmed();
    message_->setText(isError ? tr("Error: %1").arg(all) : all);
    message_->setToolTip(all);
    sign_->setVisible(isError);
    if (isError) {
        const int side = message_->fontMetrics().height();
        sign_->setPixmap(
            style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(QSize(side, side), devicePixelRatioF()));
    }
}

void MainWindow::Warn(const QString &text)
{
    warning_ = text;
    Tell({});
}

void MainWindow::Follow()
{
    wanted_.reset();
    near_->Abandon();
    const ModelState &state = sitting_->State();
    Try([&] {
        if (!(editor_->Model() == state.model))
            editor_->SetModel(state.model);
        ShowTables();
        ShowRecords();
    });
    ShowTitle();
    Save();
}

void MainWindow::ShowEnd()
{
    progress_->hide();
    stop_->hide();
    Try([&] {
        pages_->ShowFit(*fit_);
        TRegression *const regression = fit_->Regression();
        if (near_->IsPart(fit_->State()) && regression != nullptr && fit_->State().isFittable() &&
            !regression->MoreRecords() && !fit_->WasStopped()) {
            near_->Fetch(fit_->State()); // the first ones were too few that can be used
        } else if (!fit_->Why().isEmpty()) {
            Tell(fit_->Why(), true);
        } else if (fit_->HasFit()) {
            sitting_->Keep(keptModel(fit_->State(), *regression));
            const qint64 records = regression->RecordsUsed();
            const QString number = QLocale().toString(records);
            Tell(regression->MoreRecords()
                     ? tr("Fitted to the first %1 records that can be used; Model > Every Record uses them all.")
                           .arg(number)
                     : tr("Fitted to %1 records.", nullptr, numerus(records)).arg(number));
        } else if (fit_->State().hasData()) {
            Tell(tr("Drag a field to Y and others to X1, X2, …; each change is fitted at once."));
        } else if (!fit_->State().database.isEmpty()) {
            Tell(tr("Choose a table on the left."));
        } else {
            Tell(tr("Drop a CSV file or an SQLite database here, or choose File > Open."));
        }
    });
}

void MainWindow::ShowTitle()
{
    const ModelState &state = sitting_->State();
    centre_->setCurrentIndex(state.database.isEmpty() ? 0 : 1);
    ShowDocks(!state.database.isEmpty());
    const QString what = state.isQuery() ? tr("Query") : state.table;
    setWindowTitle(state.database.isEmpty()
                       ? tr("Nuvo Workbench")
                       : tr("%1, %2 - Nuvo Workbench").arg(what, QFileInfo(state.database).fileName()));
}

void MainWindow::OpenFile(const QString &name)
{
    Try([&] {
        const QString file = QFileInfo(name).absoluteFilePath();
        switch (kindOf(file)) {
        case FileKind::Database:
            OpenDatabase(file);
            return;
        case FileKind::Form: {
            const OpenedForm form = openForm(file);
            Open(form.state, tr("Open a form"));
            if (form.choice)
                pages_->Choosing().SetSettings(*form.choice);
            break;
        }
        case FileKind::Csv:
            if (!OpenCsv(file))
                return;
        }
        Remember(file);
    });
}

void MainWindow::OpenSoon(const QStringList &names)
{
    QMetaObject::invokeMethod(
        this,
        [this, names] {
            for (const QString &name : names) {
                if (isVisible()) // it may have been closed meanwhile
                    OpenNamed(name);
            }
        },
        Qt::QueuedConnection);
}

bool MainWindow::OpenCsv(const QString &file)
{
    CsvPreview preview(file, this);
    if (ShowModal(preview) != QDialog::Accepted)
        return false;
    ModelState state;
    state.database = QDir(folder_).filePath(QStringLiteral("data.db"));
    // Who reads a file of SQLite keeps others from writing into it.
    const bool wasReading = fit_->IsReading();
    fit_->Stop();
    auto readOn = qScopeGuard([&] {
        if (wasReading)
            fit_->FitAgain();
    });
    state.table = newTableFor(file, state.database);
    const CsvOrigin origin = originOf(state.table, file, preview.Corrections());
    if (!importInBackground(this, {file, preview.Corrections(), {}}, state.database, state.table))
        return false;
    readOn.dismiss();
    tablesOf_.clear(); // it has got one more
    sitting_->SetOrigin(origin);
    sitting_->Change(state, tr("Open a CSV file"));
    return true;
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    for (const QUrl &url : event->mimeData()->urls()) {
        if (url.isLocalFile())
            OpenFile(url.toLocalFile());
    }
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    QSettings settings;
    settings.setValue(QStringLiteral("geometry"), saveGeometry());
    settings.setValue(QStringLiteral("layout"), docksShown_ ? saveState() : layout_);
    settings.setValue(QStringLiteral("middle"), middle_->saveState());
    settings.setValue(QStringLiteral("editor"),
                      editor_->findChild<QSplitter *>(QStringLiteral("Halves"))->saveState());
    // What is asked, or under way, in front of the window is given up; a progress may not have been shown yet.
    for (QDialog *const dialog : findChildren<QDialog *>()) {
        if (dialog->isModal())
            dialog->reject();
    }
    fit_->Stop();
    near_->Abandon();
    Save();
    event->accept();
}

void MainWindow::Save()
{
    try {
        sitting_->Save(QDir(folder_).filePath(QStringLiteral("sitting.json")));
    } catch (const EPlatformError &error) {
        Tell(error.Message(), true);
        unsaved_ = tr("The sitting is not saved: %1").arg(error.Message());
        return;
    }
    if (unsaved_.isEmpty())
        return;
    // What stands there says otherwise.
    const auto [text, isError] = said_;
    const bool wasThat = isError && unsaved_.endsWith(text);
    unsaved_.clear();
    if (wasThat)
        Tell(tr("The sitting is saved again."));
    else
        Tell(text, isError);
}

} // namespace nuvo
