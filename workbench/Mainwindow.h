// SPDX-License-Identifier: MIT
#pragma once

#include "workbench/Modelstate.h"

#include <QMainWindow>

#include <exception>
#include <optional>
#include <utility>

class QLabel;
class QListWidget;
class QProgressBar;
class QPushButton;
class QSplitter;
class QStackedWidget;
class TModelEditor;

namespace nuvo {

class Guide;
class Handout;
class LiveFit;
class ModelsTable;
class NearRecords;
class Pages;
class Sitting;
class TableFinder;
class Welcome;

/// The workbench: tables on the left, the model in the middle, what is to be seen of it on the right, the models that
/// were tried below. Every change is fitted and shown at once; with every record, in the background.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// \param folder where the sitting lives that is taken up again, and is saved as it goes.
    explicit MainWindow(const QString &folder, QWidget *parent = nullptr);
    ~MainWindow() override;

    /// Opens a file by what it is: an SQLite database, a form, a CSV file, which becomes a table of the sitting.
    /// What cannot be opened is told in the window.
    void OpenFile(const QString &file);
    /// The same for files and servers one after the other, as soon as the application runs: what is closed before it
    /// does would not end it.
    void OpenSoon(const QStringList &names);
    void OpenDatabase(const QString &database);
    void OpenTable(const QString &table);
    /// Makes a state the present one as soon as its records are at hand; what keeps them away is told, and the
    /// sitting stays as it is.
    void Open(const ModelState &state, const QString &what);

    /// Shows what stays true until the end: beside whatever else there is to say.
    void Warn(const QString &text);

    Sitting &CurrentSitting() const { return *sitting_; }
    LiveFit &Fit() const { return *fit_; }
    NearRecords &Near() const { return *near_; }
    Pages &ShownPages() const { return *pages_; }
    TModelEditor &Editor() const { return *editor_; }

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void MakeWidgets();
    void RestoreLayout();
    /// Where nothing is open there is nothing to show in them.
    void ShowDocks(bool shown);
    void SizeParts();
    void MakeFileMenu();
    void MakeEditMenu();
    void MakeViewMenu();
    void MakeHelpMenu();
    void Follow();
    void FollowRecords();
    void ShowRecords();
    void RecordsEnded();
    void ShowEnd();
    void ShowTables();
    void ListServer(const QString &database);
    void ShowTableNames(const QStringList &names, const QString &database);
    /// That are listed.
    QStringList TableNames() const;
    void OpenServer(const QString &database);
    /// Whether there is another one than was used.
    bool AskPassword(const QString &database, const QString &used, const QString &why);
    void ReadAgain();
    void AskQuery();
    void ShowTitle();
    /// Runs a handler; what goes wrong is told.
    template <class Handler>
    void Try(const Handler &handler)
    {
        try {
            handler();
        } catch (const std::exception &error) {
            Tell(QString::fromUtf8(error.what()), true);
        }
    }
    void Tell(const QString &text, bool isError = false);
    /// Whether it was not given up.
    bool OpenCsv(const QString &file);
    void AskAndOpen();
    void AskServer();
    void OpenSamples();
    /// A file, or the address of a server.
    void OpenNamed(const QString &name);
    void SaveForm();
    void CopyCommand();
    void CopyProgram();
    /// Whether there is a model; else that is told.
    bool HasModelToCopy();
    /// Whether the records are where the sitting keeps what came from CSV files.
    bool IsOwn() const;
    /// \param why the file itself is not named, as half a sentence; may be empty
    void TellWhereRecordsAre(const QString &done, const QString &why = {});
    void SaveDatabase();
    void LeaveSelectedOut();
    void CompareModels();
    void ShowGuide();
    void ShowKeys();
    void ShowAbout();
    /// On to the next part of the window, or back: tables, model, page, models tried.
    void GoToPane(int step);
    void Remember(const QString &file);
    void ShowRecent();
    void Save();

    const QString folder_;
    Sitting *sitting_;
    LiveFit *fit_;
    NearRecords *near_;
    QListWidget *tables_;
    TableFinder *finder_;
    TModelEditor *editor_;
    Pages *pages_;
    ModelsTable *models_;
    Handout *handout_;
    QStackedWidget *centre_;
    QSplitter *middle_;
    Welcome *welcome_;
    QLabel *sign_; ///< that the message is an error
    QLabel *message_;
    QProgressBar *progress_;
    QPushButton *stop_;
    QMenu *recent_ = nullptr;
    Guide *guide_ = nullptr; ///< once it was asked for
    bool wasShown_ = false;
    bool docksShown_ = true;
    QByteArray layout_;                                    ///< of docks that are not shown
    QString tablesOf_;                                     ///< the database that the list of tables is of
    QString fieldsOf_;                                     ///< what the editor's fields are of
    QString listing_;                                      ///< the server that is asked for its tables
    QString fetchedWith_;                                  ///< the password that records are fetched with
    QString warning_;                                      ///< that stands beside whatever else there is to say
    QString unsaved_;                                      ///< why the sitting could not be saved; empty where it was
    std::pair<QString, bool> said_;                        ///< what was told last, and whether it is an error
    bool asking_ = false;                                  ///< for a password
    std::optional<std::pair<ModelState, QString>> wanted_; ///< a change that waits for its records
};

} // namespace nuvo
