// SPDX-License-Identifier: MIT
#include "present/controls/Tablecopy.h"
#include "present/figures/Figurespage.h"
#include "present/statistics/Observationspage.h"
#include "present/statistics/Pageview.h"
#include "workbench/Choicepage.h"
#include "workbench/Modelstable.h"
#include "workbench/Predictpage.h"
#include "workbench/Recordspage.h"
#include "workbench/Workbenchtest.h"

#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDir>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QTableView>
#include <QTimer>

namespace {

/// The words of a PDF file, without its layout.
QString wordsOf(const QString &pdf)
{
    QProcess program;
    program.start(u("pdftotext"), {pdf, u("-")});
    EXPECT_TRUE(program.waitForFinished(30000)) << "the package poppler-utils";
    return QString::fromUtf8(program.readAllStandardOutput()).simplified();
}

class Handout : public Workbench
{
protected:
    QStringList asked; ///< proposed names, questions

    void SetUp() override
    {
        Workbench::SetUp();
        drop(csv("trial.csv", 50));
        defineXY();
        ASSERT_TRUE(window->Fit().HasFit());
    }
    /// Types a name over the proposed one in a real file dialog; a question is answered with that button.
    void typeName(const QString &name, QMessageBox::StandardButton button = QMessageBox::Yes)
    {
        answer = [this, name, button](QDialog &dialog) {
            auto *const edit = dialog.findChild<QLineEdit *>(u("fileNameEdit"));
            EXPECT_NE(edit, nullptr) << dialog.windowTitle().toStdString();
            asked.append(edit->text());
            edit->setText(name);
            QTimer answering;
            QObject::connect(&answering, &QTimer::timeout, &dialog, [this, button] {
                if (auto *const box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                    asked.append(box->text());
                    box->button(button)->click();
                }
            });
            answering.start(20);
            dialog.show();
            dialog.accept();
            const int result = dialog.result();
            dialog.hide();
            return result;
        };
    }
    const QMimeData &clipboard() const { return *QApplication::clipboard()->mimeData(); }
};

} // namespace

TEST_F(Handout, PrintsTheReportWithItsFigures)
{
    const QString file = folder.filePath(u("printed.pdf"));
    answer = [&](QDialog &dialog) {
        auto *const print = qobject_cast<QPrintDialog *>(&dialog);
        EXPECT_NE(print, nullptr);
        EXPECT_TRUE(print->printer()->outputFileName().isEmpty() ||
                    print->printer()->outputFileName().endsWith(u("/trial-report.pdf")))
            << print->printer()->outputFileName().toStdString();
        print->printer()->setOutputFileName(file);
        return int(QDialog::Accepted);
    };
    entry("FileMenu", "Print…").trigger();
    const QString words = wordsOf(file);
    EXPECT_TRUE(words.contains(u("Linear regression of y on x"))) << words.toStdString();
    EXPECT_TRUE(words.contains(u("Analysis of variance")));
    for (const nuvo::Figure &figure : window->ShownPages().FiguresPage().Figures()) {
        if (figure.note.isEmpty()) {
            EXPECT_TRUE(words.contains(figure.title.simplified())) << figure.title.toStdString();
        }
    }
    EXPECT_TRUE(message().contains(file)) << message().toStdString();
}

TEST_F(Handout, SaysWhatCannotBePrinted)
{
    answer = [&](QDialog &dialog) {
        qobject_cast<QPrintDialog *>(&dialog)->printer()->setOutputFileName(u("/proc/none/x.pdf"));
        return int(QDialog::Accepted);
    };
    entry("FileMenu", "Print…").trigger();
    EXPECT_TRUE(message().contains(u("/proc/none/x.pdf"))) << message().toStdString();
    window->OpenTable(u("trial"));
    window->Editor().Remove(0);
    entry("FileMenu", "Print…").trigger();
    EXPECT_TRUE(message().contains(u("no fit"))) << message().toStdString();
}

TEST_F(Handout, ShowsTheSheetsBefore)
{
    bool shown = false;
    answer = [&](QDialog &dialog) {
        auto *const preview = qobject_cast<QPrintPreviewDialog *>(&dialog);
        EXPECT_NE(preview, nullptr);
        QImage sheet(600, 400, QImage::Format_RGB32);
        dialog.resize(600, 400);
        dialog.show();
        QTest::qWait(50);
        dialog.render(&sheet);
        int dark = 0;
        for (int y = 0; y < sheet.height(); ++y) {
            for (int x = 0; x < sheet.width(); ++x)
                dark += qGray(sheet.pixel(x, y)) < 100 ? 1 : 0;
        }
        EXPECT_GT(dark, 100);
        shown = true;
        return int(QDialog::Rejected);
    };
    entry("FileMenu", "Print Preview…").trigger();
    EXPECT_TRUE(shown);
}

TEST_F(Handout, SavesTheReportByTheEndingAndAsksBeforeItReplacesAFile)
{
    for (const char *name : {"a.pdf", "a.html", "a.txt", "a.md"}) {
        const QString file = folder.filePath(u(name));
        typeName(file);
        entry("FileMenu", "Save Report…").trigger();
        EXPECT_EQ(message(), u("Saved %1.").arg(file));
        EXPECT_GT(QFileInfo(file).size(), 1000) << name;
    }
    EXPECT_EQ(asked.first(), u("trial-report"));
    EXPECT_FALSE(asked.join(u' ').contains(u("replace"))) << asked.join(u' ').toStdString();

    QFile there(folder.filePath(u("mine.txt")));
    ASSERT_TRUE(there.open(QIODevice::WriteOnly));
    there.write("mine");
    there.close();
    typeName(there.fileName(), QMessageBox::No);
    asked.clear();
    entry("FileMenu", "Save Report…").trigger();
    EXPECT_EQ(asked.size(), 2) << asked.join(u' ').toStdString();
    EXPECT_EQ(there.size(), 4);
    typeName(there.fileName());
    entry("FileMenu", "Save Report…").trigger();
    EXPECT_GT(QFileInfo(there).size(), 1000);
}

TEST_F(Handout, ProposesTheFolderThatWasUsedLast)
{
    QDir(folder.path()).mkdir(u("out"));
    typeName(folder.filePath(u("out/first.txt")));
    entry("FileMenu", "Save Report…").trigger();
    answer = [&](QDialog &dialog) {
        EXPECT_EQ(qobject_cast<QFileDialog *>(&dialog)->directory().path(), folder.filePath(u("out")));
        return int(QDialog::Rejected);
    };
    entry("FileMenu", "Save Figure…").trigger();
}

TEST_F(Handout, SavesTheFigureThatIsShown)
{
    window->ShownPages().FiguresPage().SetIndex(1);
    for (const char *name : {"f.png", "f.svg", "f.pdf"}) {
        typeName(folder.filePath(u(name)));
        entry("FileMenu", "Save Figure…").trigger();
        EXPECT_GT(QFileInfo(folder.filePath(u(name))).size(), 1000) << name;
    }
    const nuvo::Figure &figure = window->ShownPages().FiguresPage().View().Figure();
    EXPECT_EQ(asked.first(), u("trial-") + nuvo::figureFileName(figure));
}

TEST_F(Handout, AsksBeforeAllFiguresReplaceOthers)
{
    answer = [&](QDialog &dialog) {
        qobject_cast<QFileDialog *>(&dialog)->setDirectory(folder.path());
        dialog.findChild<QLineEdit *>(u("fileNameEdit"))->setText(folder.path());
        return int(QDialog::Accepted);
    };
    QStringList questions;
    int answered = mrYes;
    const TMessageHandler before = SetMessageHandler([&](const QString &text, TMsgDlgType, unsigned, int) {
        questions.append(text);
        return answered;
    });
    QAction &png = *entry("FileMenu", "Save All Figures").menu()->actions().first();
    png.trigger();
    EXPECT_EQ(questions, QStringList());
    const QStringList pictures = QDir(folder.path()).entryList({u("*.png")});
    ASSERT_GT(pictures.size(), 3);
    QFile one(folder.filePath(pictures.first()));
    ASSERT_TRUE(one.resize(0));
    answered = mrNo;
    png.trigger();
    EXPECT_EQ(questions.size(), 1) << questions.join(u' ').toStdString();
    EXPECT_EQ(one.size(), 0);
    answered = mrYes;
    png.trigger();
    EXPECT_GT(QFileInfo(one).size(), 0);
    SetMessageHandler(before);
}

TEST_F(Handout, CopiesTheTableOfEveryPageAsTextAndHtmlOrAsMarkdown)
{
    nuvo::Pages &pages = window->ShownPages();
    QTest::mouseClick(pages.Choosing().findChild<QPushButton *>(u("Choose")), Qt::LeftButton);
    const struct
    {
        QWidget *page;
        const char *heading;
        int rows; // 0: some
    } tables[] = {{&pages.Records(), "y\tx\tz\tnote\n", 50},
                  {&pages.Summary(), "Term\tEstimate\t", 2},
                  {&pages.Observations(), "Record\ty\tx\t", 50},
                  {&pages.Choosing(), "No.\tSize\tTerms\t", 1},
                  {&pages.Prediction(), "x\ty\tStandard error\t", 1}};
    for (const auto &[page, heading, rows] : tables) {
        pages.setCurrentWidget(page);
        page->setFocus();
        entry("EditMenu", "Copy Table").trigger();
        const QString text = clipboard().text();
        EXPECT_TRUE(text.startsWith(u(heading))) << text.left(200).toStdString();
        EXPECT_EQ(text.count(u'\n'), rows + 1) << heading;
        EXPECT_TRUE(clipboard().html().contains(u("<table>"))) << heading;
        EXPECT_EQ(clipboard().html().count(u("<tr>")), rows + 1) << heading;
        entry("EditMenu", "Copy Table as Markdown").trigger();
        EXPECT_TRUE(clipboard().text().startsWith(u("| "))) << clipboard().text().toStdString();
        EXPECT_EQ(clipboard().text().count(u'\n'), rows + 2) << heading;
    }
    auto *const models = window->findChild<nuvo::ModelsTable *>();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    models->setFocus();
    entry("EditMenu", "Copy Table").trigger();
    EXPECT_TRUE(clipboard().text().startsWith(u("Model\tRecords\tR²\t"))) << clipboard().text().toStdString();
    EXPECT_TRUE(clipboard().text().contains(u("y on x\t50\t"))) << clipboard().text().toStdString();
    pages.setCurrentWidget(&pages.FiguresPage());
    pages.FiguresPage().setFocus();
    entry("EditMenu", "Copy Table").trigger();
    EXPECT_TRUE(message().contains(u("no table"))) << message().toStdString();
}

TEST_F(Handout, CopiesTheSelectedRowsOfATable)
{
    nuvo::Pages &pages = window->ShownPages();
    pages.setCurrentWidget(&pages.Records());
    pages.Records().View().selectRow(6);
    entry("EditMenu", "Copy Table").trigger();
    EXPECT_EQ(clipboard().text().section(u'\n', 1, 1).section(u'\t', 1, 1), u("7"));
    EXPECT_EQ(clipboard().text().count(u'\n'), 2);
}

TEST_F(Workbench, CopiesNothingFromTablesThatAreEmpty)
{
    QGuiApplication::clipboard()->setText(u("kept"));
    int empty = 0;
    for (const QAbstractItemView *view : window->findChildren<QAbstractItemView *>()) {
        if (view->model() == nullptr || view->model()->columnCount() > 0)
            continue;
        for (QAction *action : view->actions()) {
            if (action->menu() == nullptr) {
                ++empty;
                action->trigger();
            }
        }
    }
    EXPECT_GE(empty, 2) << "no view is empty";
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u("kept"));
}

TEST_F(Handout, CopiesTheTableOfATextThatTheMouseIsOn)
{
    TSummaryPage &page = window->ShownPages().Summary();
    window->ShownPages().setCurrentWidget(&page);
    page.resize(900, 900);
    QTextCursor cursor = page.document()->find(u("Residual"));
    page.setTextCursor(cursor);
    page.ensureCursorVisible();
    const QPoint at = page.cursorRect(cursor).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, page.viewport()->mapToGlobal(at));
    QApplication::sendEvent(page.viewport(), &event);
    auto *const menu = page.findChild<QMenu *>(u("PageMenu"));
    ASSERT_NE(menu, nullptr);
    for (QAction *const action : menu->actions()) {
        if (action->text() == nuvo::copyTableText())
            action->trigger();
    }
    menu->close();
    EXPECT_TRUE(clipboard().text().startsWith(u("Source\t"))) << clipboard().text().toStdString();
}
