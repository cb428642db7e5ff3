// SPDX-License-Identifier: MIT
#include "select/choice/Choiceform.h"

#include "present/figures/Figureview.h"
#include "present/statistics/Pageview.h"
#include "select/choice/Chosen.h"
#include "select/choice/Modelspage.h"
#include "select/choice/Stepspage.h"

#include <QAbstractButton>
#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMimeData>
#include <QPdfWriter>
#include <QPrinter>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTabWidget>

namespace {

/// Shows the choice of a method to somebody who does that and closes the window; with `more` further dialogs.
template <class... More>
QStringList showTo(TCorvane &method, const std::function<void(TChoiceForm &)> &act, More... more)
{
    return showForm<TChoiceForm>([&] { method.ShowChoice(); }, act, more...);
}

void press(const TChoiceForm &form, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier)
{
    QTest::keyClick(form.focusWidget(), key, modifiers);
}

QString label(const TChoiceForm &form, const char *name)
{
    return part<QLabel>(form, name)->text();
}

QStringList titles(const TChoiceForm &form)
{
    const auto *pages = part<QTabWidget>(form, "ChoicePages");
    QStringList list;
    for (int page = 0; page < pages->count(); ++page)
        list += pages->tabText(page);
    return list;
}

std::function<void(QDialog &)> nameFile(const QString &file)
{
    return [file](QDialog &dialog) {
        auto *edit = part<QLineEdit>(dialog, "fileNameEdit");
        edit->setText(file);
        QTest::keyClick(edit, Qt::Key_Return);
    };
}

QByteArray contentOf(const QString &file)
{
    QFile saved(file);
    EXPECT_TRUE(saved.open(QIODevice::ReadOnly)) << file.toStdString();
    return saved.readAll();
}

QStringList cementNames()
{
    return {u("a"), u("b"), u("c"), u("d")};
}

} // namespace

TEST(ChoiceWindow, OfAllSubsetsHasModelsFigureAndReport)
{
    Chosen<TOptimizeMLR> chosen;
    showTo(chosen.method, [](TChoiceForm &form) {
        EXPECT_LE(form.height(), 640);
        EXPECT_EQ(titles(form).join(u'|'), u("Models|Figure|Report"));
        EXPECT_EQ(form.windowTitle(), u("Choice of a model: Data"));
        EXPECT_EQ(label(form, "ChoiceHead"),
                  u("Optimal subset by Cp: y on 4 variables, 13 observations.\nIn use: a, b."));
        EXPECT_TRUE(label(form, "ChoiceWarnings").contains(u("p-values after a selection are too small")));
        EXPECT_EQ(form.Models().View().model()->rowCount(), 10);
        EXPECT_EQ(form.FigureView().Figure().title, u("Cp by number of terms"));
        EXPECT_EQ(form.FigureView().Figure().x.size(), 10U);
        EXPECT_TRUE(form.Report().toPlainText().contains(u("The model that is left")));
        EXPECT_TRUE(form.Models().View().hasFocus());
        EXPECT_FALSE(form.Steps().isVisible());
    });
}

TEST(ChoiceWindow, OfASearchByPartialFHasStepsAndReport)
{
    Chosen<TFwdSelectMLR> chosen(13, cementNames(), cementValue, [](TFwdSelectMLR &method) { method.SetP(0.05); });
    showTo(chosen.method, [](TChoiceForm &form) {
        EXPECT_EQ(titles(form).join(u'|'), u("Steps|Report"));
        EXPECT_EQ(label(form, "ChoiceHead").section(u'\n', 0, 0),
                  u("Forward selection: y on 4 variables, 13 observations."));
        EXPECT_GT(form.Steps().Steps().model()->rowCount(), 2);
        EXPECT_FALSE(form.Models().isVisible());
        EXPECT_FALSE(form.FigureView().isVisible());
    });
}

TEST(ChoiceWindow, PutsAnotherModelOnTheComponent)
{
    Chosen<TOptimizeMLR> chosen;
    ASSERT_EQ(chosen.model(), u("a b"));
    showTo(chosen.method, [&chosen](TChoiceForm &form) {
        QTableView &view = form.Models().View();
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, middleOf(view, 6, "Terms"));
        const QString wanted = cell(view, 6, "Terms");
        click(form, "UseModel");
        EXPECT_EQ(chosen.model(), wanted.split(u(", ")).join(u' '));
        EXPECT_TRUE(chosen.fitted.table.ResultsCurrent());
        EXPECT_EQ(label(form, "ChoiceHead").section(u'\n', 1), u("In use: %1.").arg(wanted));
        EXPECT_EQ(cell(view, 6, "Note"), u("in use"));
        EXPECT_EQ(cell(view, 3, "Note"), u("best by Cp"));
        EXPECT_EQ(form.Models().Selected(), 7);
        EXPECT_TRUE(form.Report().toPlainText().contains(u("number 7 of the list")));
    });
    EXPECT_EQ(chosen.method.Choice()->applied, 7);
}

TEST(ChoiceWindow, PutsTheModelAfterAStepOnTheComponent)
{
    Chosen<TFwdSelectMLR> chosen(13, cementNames(), cementValue,
                                 [](TFwdSelectMLR &method) { method.SetFDefault(4); });
    ASSERT_EQ(chosen.model(), u("a b d"));
    showTo(chosen.method, [&chosen](TChoiceForm &form) {
        form.Steps().SetSelected(2);
        press(form, Qt::Key_Return, {});
        EXPECT_EQ(chosen.model(), u("a d"));
        EXPECT_EQ(cell(form.Steps().Steps(), 1, "Note"), u("in use"));
    });
}

TEST(ChoiceWindow, SaysWhatKeepsAModelFromTheComponent)
{
    Chosen<TOptimizeMLR> chosen;
    const QStringList messages = showTo(chosen.method, [&chosen](TChoiceForm &form) {
        chosen.fitted.table.ControlVar(2).SetField1(u("c")); // not the variable of the choice any more
        form.Models().SetSelected(1);
        click(form, "UseModel");
        EXPECT_EQ(form.Models().Selected(), 1);
        EXPECT_EQ(cell(form.Models().View(), 3, "Note"), u("best by Cp, in use"));
    });
    EXPECT_EQ(messages.size(), 1) << messages.join(u'|').toStdString();
}

TEST(ChoiceWindow, AModelIsTheSameInTableAndFigure)
{
    Chosen<TOptimizeMLR> chosen;
    showTo(chosen.method, [](TChoiceForm &form) {
        EXPECT_EQ(form.FigureView().Selected(), (std::set<qint64>{4}));
        QTableView &view = form.Models().View();
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, middleOf(view, 8, "Terms"));
        EXPECT_EQ(form.FigureView().Selected(), (std::set<qint64>{9}));
        form.SetPageIndex(1);
        QTest::keyClick(&form.FigureView(), Qt::Key_Home);
        ASSERT_EQ(form.FigureView().Selected().size(), 1U);
        EXPECT_EQ(form.Models().Selected(), *form.FigureView().Selected().begin());
        const QString words = nuvo::pointInWords(form.FigureView().Figure(), 3);
        EXPECT_TRUE(words.contains(u("a, b"))) << words.toStdString();
    });
}

TEST(ChoiceWindow, TellsInWordsWhatNullsTookAway)
{
    Chosen<TBackElimMLR> chosen(20, controlNames(3), [](int i, int j) {
        return j == 2 && i % 5 == 0 ? std::numeric_limits<double>::quiet_NaN() : scattered(i, j);
    });
    showTo(chosen.method, [](TChoiceForm &form) {
        EXPECT_TRUE(label(form, "ChoiceWarnings").startsWith(u("Nulls and impossible values took 4 of 20 records")));
        EXPECT_TRUE(label(form, "ChoiceWarnings").contains(u("x2 4 null")));
        EXPECT_TRUE(part<QLabel>(form, "ChoiceWarnings")->isVisible());
        press(form, Qt::Key_2, Qt::AltModifier);
        EXPECT_FALSE(part<QLabel>(form, "ChoiceWarnings")->isVisible()) << "the report has them itself";
        EXPECT_TRUE(form.Report().toPlainText().contains(u("took 4 of 20 records")));
    });
}

TEST(ChoiceWindow, HasTheDecimalSignOfTheLocaleAndItsFilesAPoint)
{
    const QLocale before;
    const auto restore = qScopeGuard([&before] { QLocale::setDefault(before); });
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    static const QRegularExpression comma(u("[0-9],[0-9]"));
    static const QRegularExpression point(u("[0-9]\\.[0-9]"));
    const auto hasCommas = [](const QString &text, const char *what) {
        EXPECT_TRUE(text.contains(comma)) << what << ": " << text.toStdString();
        EXPECT_FALSE(text.contains(point)) << what << ": " << text.toStdString();
    };
    const auto hasPoints = [](const QString &text, const char *what) {
        EXPECT_TRUE(text.contains(point)) << what << ": " << text.toStdString();
        EXPECT_FALSE(text.contains(comma)) << what << ": " << text.toStdString();
    };
    const QTemporaryDir folder;
    const QString csv = folder.filePath(u("choice.csv"));
    const QString txt = folder.filePath(u("choice.txt"));
    Chosen<TOptimizeMLR> chosen;
    showTo(chosen.method, [&](TChoiceForm &form) {
        QTableView &view = form.Models().View();
        hasCommas(cell(view, 0, "R²"), "a cell");
        hasCommas(view.model()->index(0, 4).data(Qt::ToolTipRole).toString(), "its hint");
        hasCommas(form.Models().SelectionText(), "what is copied");
        hasCommas(form.Report().toPlainText(), "the report in the window");
        form.Save(csv);
        form.Save(txt);
    });
    EXPECT_TRUE(QString::fromUtf8(contentOf(csv)).contains(point));
    hasPoints(QString::fromUtf8(contentOf(txt)), "a text file");
    hasPoints(chosen.method.Report(), "the report of the run");
    Chosen<TFwdSelectMLR> forward(13, cementNames(), cementValue, [](TFwdSelectMLR &method) { method.SetP(0.05); });
    showTo(forward.method, [&](TChoiceForm &form) {
        hasCommas(cell(form.Steps().Steps(), 0, "F"), "a step");
        hasCommas(cell(form.Steps().Candidates(), 0, "p"), "a candidate");
        hasCommas(label(form, "StepTitle"), "the step in words");
    });
}

TEST(ChoiceWindow, KeysTurnThePages)
{
    Chosen<TOptimizeMLR> chosen;
    showTo(chosen.method, [](TChoiceForm &form) {
        for (int page = 2; page >= 0; --page) {
            press(form, Qt::Key(Qt::Key_1 + page), Qt::AltModifier);
            EXPECT_EQ(form.PageIndex(), page);
        }
        for (const int page : {1, 2, 0}) {
            press(form, Qt::Key_Tab);
            EXPECT_EQ(form.PageIndex(), page);
        }
        press(form, Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_EQ(form.PageIndex(), 2);
    });
}

TEST(ChoiceWindow, CtrlCCopiesWhatThePageHas)
{
    Chosen<TOptimizeMLR> chosen;
    showTo(chosen.method, [](TChoiceForm &form) {
        const QClipboard *clipboard = QGuiApplication::clipboard();
        press(form, Qt::Key_C);
        EXPECT_TRUE(clipboard->text().startsWith(u("No.\tSize\tTerms")));
        press(form, Qt::Key_2, Qt::AltModifier);
        press(form, Qt::Key_C);
        EXPECT_TRUE(clipboard->mimeData()->hasImage());
        press(form, Qt::Key_3, Qt::AltModifier);
        press(form, Qt::Key_C);
        EXPECT_TRUE(clipboard->text().contains(u("The model that is left")));
        press(form, Qt::Key_1, Qt::AltModifier);
        click(form, "CopyChoice");
        EXPECT_TRUE(clipboard->text().startsWith(u("No.\tSize\tTerms")));
    });
}

TEST(ChoiceWindow, CtrlSSavesTheTableOrTheReport)
{
    const QTemporaryDir directory;
    Chosen<TOptimizeMLR> chosen;
    showTo(
        chosen.method,
        [](TChoiceForm &form) {
            for (int times = 0; times < 3; ++times) {
                form.activateWindow();
                ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
                press(form, Qt::Key_S);
            }
            click(form, "SaveChoice");
        },
        nameFile(directory.filePath(u("models.csv"))), nameFile(directory.filePath(u("report.txt"))),
        nameFile(directory.filePath(u("report.pdf"))), nameFile(directory.filePath(u("report.html"))));
    EXPECT_TRUE(contentOf(directory.filePath(u("models.csv"))).startsWith("No.,Size,Terms,"));
    const QByteArray report = contentOf(directory.filePath(u("report.txt")));
    EXPECT_TRUE(report.contains("Choice of a model: Data")) << report.toStdString();
    EXPECT_TRUE(report.contains("The model that is left"));
    EXPECT_TRUE(contentOf(directory.filePath(u("report.pdf"))).startsWith("%PDF"));
    EXPECT_TRUE(contentOf(directory.filePath(u("report.html"))).contains("<table"));
}

TEST(ChoiceWindow, AFileThatCannotBeWrittenIsAMessage)
{
    Chosen<TOptimizeMLR> chosen;
    const QTemporaryDir directory;
    const QString file = directory.filePath(u("gone/models.csv"));
    showTo(chosen.method, [&file](TChoiceForm &form) {
        const QString error = errorOf([&] { form.Save(file); });
        EXPECT_TRUE(error.contains(file)) << error.toStdString();
    });
}

TEST(ChoiceWindow, PrintsTheReportAsADocument)
{
    Chosen<TOptimizeMLR> chosen;
    TChoiceForm form;
    form.SetChoice(chosen.choice());
    QBuffer pages;
    pages.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&pages);
        form.PrintDocument(writer);
    }
    EXPECT_TRUE(pages.data().startsWith("%PDF"));
    EXPECT_TRUE(pages.data().contains("/Font")); // letters, not a picture of them
}

TEST(ChoiceWindow, WithoutAPrinterPrintsToAFile)
{
    if (QPrinter(QPrinter::HighResolution).outputFormat() == QPrinter::NativeFormat)
        GTEST_SKIP() << "there is a printer";
    Chosen<TOptimizeMLR> chosen;
    const QTemporaryDir directory;
    const QString pdf = directory.filePath(u("printed.pdf"));
    showTo(
        chosen.method, [](TChoiceForm &form) { press(form, Qt::Key_P); }, nameFile(pdf));
    EXPECT_TRUE(contentOf(pdf).startsWith("%PDF"));
}

TEST(ChoiceWindow, F1TellsTheKeysAndEscapeCloses)
{
    Chosen<TOptimizeMLR> chosen;
    const QStringList messages = showTo(chosen.method, [](TChoiceForm &form) {
        press(form, Qt::Key_F1, {});
        press(form, Qt::Key_Escape, {});
        EXPECT_FALSE(form.isVisible());
    });
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages[0].contains(u("Ctrl+P")));
}

TEST(ChoiceWindow, FollowsTheColoursOfTheApplication)
{
    const QPalette before = QApplication::palette();
    QPalette dark(QColor(0x30, 0x30, 0x30), QColor(0x2b, 0x2b, 0x2b));
    dark.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x1e));
    dark.setColor(QPalette::Text, Qt::white);
    Chosen<TOptimizeMLR> chosen;
    showTo(chosen.method, [&dark](TChoiceForm &form) {
        QTableView &view = form.Models().View();
        form.Models().SetSelected(0);
        const auto ground = [&view](int row) {
            const QRect place = view.visualRect(view.model()->index(row, 2));
            return view.viewport()->grab().toImage().pixelColor(place.right() - 3, place.top() + 2);
        };
        const QColor light = ground(3);
        EXPECT_NE(light, ground(4)) << "the model in use is marked";
        QApplication::setPalette(dark);
        QApplication::processEvents();
        EXPECT_EQ(ground(4), QColor(0x1e, 0x1e, 0x1e));
        EXPECT_NE(ground(3), ground(4));
        EXPECT_LT(ground(3).lightness(), 128);
    });
    QApplication::setPalette(before);
}

TEST(ChoiceWindow, CanBeNarrowWithTenVariablesOfLongNames)
{
    QStringList names;
    for (int j = 1; j <= 10; ++j)
        names += u("a_name_as_long_as_they_come_in_%1_of_some_databases").arg(j);
    Chosen<TOptimizeMLR> chosen(60, names, scattered);
    showTo(chosen.method, [](TChoiceForm &form) {
        EXPECT_LE(form.minimumSizeHint().width(), 560);
        form.resize(560, 480);
        EXPECT_EQ(form.size(), QSize(560, 480));
        EXPECT_GT(form.Models().View().height(), 120);
        QTableView &view = form.Models().View();
        EXPECT_LT(view.columnWidth(columnOf(view, "Terms")), 400);
        EXPECT_EQ(cell(view, 0, "Terms").size(), 19) << "shortened in its middle";
        EXPECT_TRUE(cell(view, view.model()->rowCount() - 1, "Terms", Qt::ToolTipRole).contains(u("in_10_of")));
    });
}

TEST(ChoiceWindow, ShowsNamesThatLookLikeMarkupAsTheyAre)
{
    Chosen<TOptimizeMLR> chosen(20, {u("<b>x</b>"), u("line\nbreak")}, scattered);
    showTo(chosen.method, [](TChoiceForm &form) {
        QTableView &view = form.Models().View();
        EXPECT_TRUE(column(view, "Terms").join(u'|').contains(u("<b>x</b>")));
        EXPECT_TRUE(cell(view, 0, "Terms", Qt::ToolTipRole).contains(u("&lt;b&gt;")) ||
                    cell(view, 1, "Terms", Qt::ToolTipRole).contains(u("&lt;b&gt;")));
        EXPECT_FALSE(column(view, "Terms").join(u'|').contains(u'\n'));
        EXPECT_EQ(label(form, "ChoiceHead").count(u'\n'), 1);
    });
}

TEST(ChoiceWindow, EverythingThatCanHaveTheFocusHasAName)
{
    Chosen<TOptimizeMLR> chosen;
    showTo(chosen.method, [](TChoiceForm &form) {
        for (const QWidget *widget : form.findChildren<QWidget *>()) {
            const bool known =
                widget->inherits("QTextBrowser") || widget->inherits("QTableView") || widget->inherits("QTabWidget");
            if (known) {
                EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->metaObject()->className();
            }
            const auto *button = qobject_cast<const QAbstractButton *>(widget);
            if (button != nullptr && !button->objectName().isEmpty() && !button->objectName().startsWith(u("qt_"))) {
                EXPECT_FALSE(button->text().isEmpty() && button->accessibleName().isEmpty())
                    << button->objectName().toStdString();
            }
        }
    });
}

TEST(ChoiceWindow, OfNoModelShowsTheReportThatSaysWhy)
{
    // Every record has a null in one of the two.
    Chosen<TFwdSelectMLR> chosen(20, controlNames(2), [](int i, int j) {
        return j == 1 + i % 2 ? std::numeric_limits<double>::quiet_NaN() : scattered(i, j);
    });
    ASSERT_EQ(chosen.choice().end, nuvo::Choice::End::NoRecords);
    showTo(chosen.method, [](TChoiceForm &form) {
        EXPECT_TRUE(label(form, "ChoiceHead").contains(u("No model was chosen")));
        EXPECT_EQ(form.PageIndex(), 1);
        EXPECT_TRUE(form.Report().toPlainText().contains(u("no record can be used")));
        for (int page = 0; page < 2; ++page) {
            form.SetPageIndex(page);
            EXPECT_FALSE(form.grab().isNull());
            press(form, Qt::Key_C);
        }
    });
}

TEST(ChoiceWindow, WithoutAChoiceAMessageSaysSo)
{
    Fitted fitted = scatteredFit(20, 2);
    TOptimizeMLR written;
    written.SetTable(&fitted.table);
    const Person nobody;
    written.ShowChoice();
    ASSERT_EQ(nobody.messages.size(), 1);
    EXPECT_TRUE(nobody.messages[0].startsWith(u("There is no choice to show")));
}

TEST(ChoiceWindow, OutlivesItsMethodAndItsRegression)
{
    auto chosen = std::make_unique<Chosen<TOptimizeMLR>>();
    const Person person([&](QDialog &dialog) {
        chosen.reset();
        auto &form = dynamic_cast<TChoiceForm &>(dialog);
        EXPECT_EQ(form.Models().View().model()->rowCount(), 10);
        form.Models().SetSelected(1);
        click(form, "UseModel");
        form.Copy();
        dialog.close();
    });
    chosen->method.ShowChoice();
    ASSERT_EQ(person.messages.size(), 1);
    EXPECT_TRUE(person.messages[0].contains(u("no component any more")));
}

TEST(ChoiceWindow, ThereIsOneAtATimeAndWithoutAnybodyInFrontItDoesNotWait)
{
    Chosen<TOptimizeMLR> chosen;
    showTo(chosen.method, [&chosen](TChoiceForm &) {
        chosen.method.ShowChoice(); // nobody meets a second dialog
    });
    chosen.method.ShowChoice();
}

TEST(ChoiceWindow, TurnsFromStepsToModelsAndBack)
{
    const Chosen<TOptimizeMLR> subsets;
    const Chosen<TBackElimMLR> steps;
    TChoiceForm form;
    form.SetChoice(steps.choice());
    form.show();
    EXPECT_EQ(titles(form).join(u'|'), u("Steps|Report"));
    form.SetChoice(subsets.choice());
    EXPECT_EQ(titles(form).join(u'|'), u("Models|Figure|Report"));
    EXPECT_TRUE(form.Models().isVisible());
    EXPECT_FALSE(form.Steps().isVisible());
    form.SetChoice(steps.choice());
    EXPECT_TRUE(form.Steps().isVisible());
    EXPECT_FALSE(form.Models().isVisible());
    EXPECT_FALSE(form.FigureView().isVisible());
}
