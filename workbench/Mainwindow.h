// SPDX-License-Identifier: MIT
#pragma once

#include <QMainWindow>

#include <exception>

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
class Pages;
class Sitting;
class Welcome;
struct ModelState;

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
    void OpenDatabase(const QString &database);
    void OpenTable(const QString &table);

    Sitting &CurrentSitting() const { return *sitting_; }
    LiveFit &Fit() const { return *fit_; }
    Pages &ShownPages() const { return *pages_; }
    TModelEditor &Editor() const { return *editor_; }

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void MakeWidgets();
    void RestoreLayout();
    void MakeFileMenu();
    void MakeEditMenu();
    void MakeViewMenu();
    void MakeHelpMenu();
    void Follow();
    void ShowEnd();
    void ShowTables();
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
    void OpenRecent(const QString &name);
    void SaveForm();
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
    QListWidget *tables_;
    TModelEditor *editor_;
    Pages *pages_;
    ModelsTable *models_;
    Handout *handout_;
    QStackedWidget *centre_;
    QSplitter *middle_;
    Welcome *welcome_;
    QLabel *message_;
    QProgressBar *progress_;
    QPushButton *stop_;
    QMenu *recent_ = nullptr;
    Guide *guide_ = nullptr; ///< once it was asked for
    bool wasShown_ = false;
    QString tablesOf_; ///< the database that the list of tables is of
    QString fieldsOf_; ///< what the editor's fields are of
};

} // namespace nuvo
