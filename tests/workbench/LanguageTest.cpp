// SPDX-License-Identifier: MIT
#include "workbench/Language.h"

#include "Openedwindow.h"
#include "engine/Regression.h"
#include "platform/Modal.h"
#include "present/figures/Figurespage.h"
#include "present/statistics/Observationspage.h"
#include "present/statistics/Pageview.h"
#include "workbench/Livefit.h"
#include "workbench/Predictpage.h"
#include "workbench/Recordspage.h"
#include "workbench/Sitting.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabBar>
#include <QTableView>
#include <QTextFrame>
#include <QToolButton>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <set>

namespace {

struct Translated
{
    QString source;
    QStringList texts;
    bool finished = true;
};

std::vector<Translated> translationsOf(const char *code)
{
    QFile file(u(TRANSLATIONS "/nuvo_%1.ts").arg(QLatin1String(code)));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    std::vector<Translated> all;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == u"source") {
            all.push_back({xml.readElementText(), {}, true});
        } else if (xml.name() == u"translation") {
            all.back().finished = !xml.attributes().hasAttribute(u("type"));
            const QString text = xml.readElementText(QXmlStreamReader::IncludeChildElements);
            all.back().texts.append(text);
        }
    }
    return all;
}

/// "%1", "%2", …, each once.
std::set<QString> placeholders(const QString &text)
{
    static const QRegularExpression one(u("%[0-9n]"));
    std::set<QString> found;
    for (auto match = one.globalMatch(text); match.hasNext();)
        found.insert(match.next().captured());
    return found;
}

int mnemonics(QString text)
{
    return int(text.remove(u("&&")).count(u'&'));
}

/// Letters that two actions of a menu share.
QString sharedKeys(const QList<QAction *> &actions)
{
    std::set<QKeySequence> keys;
    QString shared;
    for (const QAction *const action : actions) {
        const QKeySequence key = QKeySequence::mnemonic(action->text());
        if (!key.isEmpty() && !keys.insert(key).second)
            shared += action->text() + u' ';
    }
    return shared;
}

QList<QAction *> figureMenu(TFigureView &view)
{
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5), view.mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(&view, &event);
    auto *const menu = view.findChild<QMenu *>(u("FigureMenu"));
    const QList<QAction *> actions = menu->actions();
    menu->close();
    return actions;
}

} // namespace

TEST(Translations, AreWholeAndKeepPlaceholdersAndKeys)
{
    const std::vector<Translated> all = translationsOf("de");
    EXPECT_GT(all.size(), 500U);
    for (const Translated &one : all) {
        EXPECT_TRUE(one.finished) << one.source.toStdString();
        for (const QString &text : one.texts) {
            EXPECT_FALSE(text.trimmed().isEmpty()) << one.source.toStdString();
            EXPECT_EQ(placeholders(text), placeholders(one.source)) << text.toStdString();
            EXPECT_EQ(text.endsWith(u'…'), one.source.endsWith(u'…')) << text.toStdString();
            EXPECT_FALSE(text.contains(u'"')) << "German quotation marks: " << text.toStdString();
            EXPECT_EQ(mnemonics(text), mnemonics(one.source)) << text.toStdString();
        }
    }
}

TEST(Translations, SayOneAndManyInBothLanguages)
{
    const auto fitted = [](int count) {
        return QCoreApplication::translate("nuvo::MainWindow", "Fitted to %1 records.", nullptr, count).arg(count);
    };
    {
        const nuvo::Language english(u("en"));
        EXPECT_EQ(fitted(1), u("Fitted to 1 record."));
        EXPECT_EQ(fitted(2), u("Fitted to 2 records."));
    }
    {
        const nuvo::Language german(u("de"));
        EXPECT_EQ(fitted(1), u("An 1 Datensatz angepasst."));
        EXPECT_EQ(fitted(2), u("An 2 Datensätze angepasst."));
        EXPECT_EQ(QCoreApplication::translate("PageWords", "%1 of %2 records were used, %3 could not be.")
                      .arg(u("4"), u("5"), u("1")),
                  u("4 von 5 Datensätzen wurden verwendet, 1 nicht."));
    }
    EXPECT_EQ(fitted(2), u("Fitted to 2 records.")) << "without a translator";
}

TEST(Translations, GoByTheFirstLanguageThatIsKnown)
{
    EXPECT_EQ(nuvo::Language::firstKnown({u("de-AT"), u("de"), u("en-US")}), u("de"));
    EXPECT_EQ(nuvo::Language::firstKnown({u("fr-FR"), u("fr"), u("de_DE")}), u("de"));
    EXPECT_EQ(nuvo::Language::firstKnown({u("en-GB"), u("de-DE")}), u("en"));
    EXPECT_EQ(nuvo::Language::firstKnown({u("ja"), u("C")}), u("en"));
    EXPECT_EQ(nuvo::Language::firstKnown({}), u("en"));
}

TEST(Translations, AreGoneWithTheLanguage)
{
    const QLocale before;
    {
        const nuvo::Language german(u("de"));
        EXPECT_EQ(QLocale().decimalPoint(), u(","));
        EXPECT_EQ(nuvo::statisticsPage({}).parts.back().text, u("Kein Ergebnis."));
    }
    EXPECT_EQ(QLocale(), before);
    EXPECT_EQ(nuvo::statisticsPage({}).parts.back().text, u("No result."));
}

TEST(GermanWorkbench, SpeaksGermanOnEveryPage)
{
    OpenedWindow opened(u("de"));
    EXPECT_EQ(opened.window->findChild<QAbstractButton *>(u("WelcomeFile"))->text(), u("Datei &öffnen"));
    opened.fitLongley();
    QStringList menus;
    for (const QAction *const action : opened.window->menuBar()->actions())
        menus.append(action->text());
    EXPECT_EQ(menus, (QStringList{u("&Datei"), u("&Bearbeiten"), u("&Modell"), u("&Ansicht"), u("&Hilfe")}));
    QStringList tabs;
    for (int page = 0; page < opened.pages().count(); ++page)
        tabs.append(opened.pages().tabText(page));
    EXPECT_EQ(tabs, (QStringList{u("Daten"), u("Übersicht"), u("Diagnose"), u("Beobachtungen"), u("Bilder"),
                                 u("Auswahl"), u("Vorhersage")}));
    const QString summary = opened.pages().Summary().toPlainText();
    for (const char *const word : {"Lineare Regression von TOTEMP auf GNP, UNEMP", "Schätzwert", "Standardfehler",
                                   "Varianzanalyse", "Quadratsumme", "korrigiertes R²", "16 von 16 Datensätzen"})
        EXPECT_TRUE(summary.contains(u(word))) << word << "\n" << summary.toStdString();
    EXPECT_FALSE(summary.contains(u("Estimate")));
    const QString slope = QLocale(QLocale::German).toString(opened.window->Fit().Regression()->Getb(1), 'g', 4);
    EXPECT_TRUE(summary.contains(slope)) << slope.toStdString();
    EXPECT_EQ(opened.window->findChild<QLabel *>(u("Message"))->text(), u("An 16 Datensätze angepasst."));
    const QAbstractItemModel &observations = *opened.pages().Observations().View().model();
    QStringList headings;
    for (int column = 0; column < observations.columnCount(); ++column)
        headings.append(observations.headerData(column, Qt::Horizontal).toString());
    EXPECT_TRUE(headings.contains(u("Hebelwert"))) << headings.join(u' ').toStdString();
    EXPECT_TRUE(opened.pages().FiguresPage().Figures().front().title.contains(u("TOTEMP gegen GNP")));
    opened.window->CurrentSitting().Undo().undo();
    EXPECT_EQ(opened.window->CurrentSitting().Undo().redoText(), u("Änderung des Modells"));
}

TEST(GermanWorkbench, HasRoomForItsPagesAt1360)
{
    OpenedWindow opened(u("de"));
    opened.window->resize(1360, 820);
    opened.fitLongley();
    QTabBar *const bar = opened.pages().tabBar();
    EXPECT_GE(bar->width(), bar->sizeHint().width());
    for (const QToolButton *const arrow : bar->findChildren<QToolButton *>())
        EXPECT_FALSE(arrow->isVisible());
}

TEST(GermanWorkbench, ShowsAllItsTabsAt1024)
{
    for (const char *const code : {"en", "de"}) {
        OpenedWindow opened((u(code)));
        opened.window->resize(1024, 720);
        opened.begin();
        opened.fitLongley();
        opened.window->resize(1024, 720);
        QApplication::processEvents();
        ASSERT_EQ(opened.window->width(), 1024) << code;
        const QTabBar &bar = *opened.pages().tabBar();
        for (const QToolButton *const arrow : bar.findChildren<QToolButton *>())
            EXPECT_FALSE(arrow->isVisible()) << code;
        for (int page = 0; page < bar.count(); ++page) {
            EXPECT_TRUE(bar.rect().contains(bar.tabRect(page))) << code << page;
            EXPECT_GT(bar.tabRect(page).width(), bar.fontMetrics().averageCharWidth() * 5) << code << page;
            EXPECT_TRUE(bar.tabToolTip(page).startsWith(bar.tabText(page))) << "the whole name";
        }
    }
}

TEST(GermanWorkbench, ShowsEveryFieldOfASmallTableAt1360)
{
    OpenedWindow opened(u("de"));
    opened.window->resize(1360, 820);
    opened.fitLongley();
    opened.pages().setCurrentIndex(0);
    QApplication::processEvents();
    QTableView &view = opened.pages().Records().View();
    EXPECT_LE(view.horizontalHeader()->length(), view.viewport()->width());
    view.setColumnWidth(1, 200);
    opened.pages().Records().ReadAgain();
    EXPECT_EQ(view.columnWidth(1), 200) << "as the person has left it";
}

TEST(GermanWorkbench, HasTheTableOfCoefficientsInOnePieceAt1360)
{
    for (const char *const code : {"en", "de"}) {
        OpenedWindow opened((u(code)));
        opened.window->resize(1360, 820);
        opened.fitLongley();
        opened.window->Editor().AddFields({u("GNPDEFL"), u("ARMED"), u("POP"), u("YEAR")});
        opened.pages().setCurrentIndex(1);
        QApplication::processEvents();
        ASSERT_EQ(opened.window->Fit().Regression()->GetNumVars(), 6);
        const TSummaryPage &summary = opened.pages().Summary();
        EXPECT_EQ(summary.document()->rootFrame()->childFrames().size(), 2) << code << ", with the one of variances";
        EXPECT_LE(summary.document()->size().width(), summary.viewport()->width()) << code;
    }
}

TEST(GermanWorkbench, HasOneDecimalSignOnEveryPageAndReadsWhatItHasCopied)
{
    OpenedWindow opened(u("de"));
    opened.fitLongley();
    opened.window->Editor().AddFields({u("GNPDEFL")});
    nuvo::Pages &pages = opened.pages();
    const auto cell = [](const QTableView &view, const QString &column) {
        const QAbstractItemModel &model = *view.model();
        for (int i = 0; i < model.columnCount(); ++i) {
            if (model.headerData(i, Qt::Horizontal).toString() == column)
                return model.index(1, i).data().toString();
        }
        return QString();
    };
    EXPECT_EQ(cell(pages.Records().View(), u("GNPDEFL")), u("88,5"));
    EXPECT_EQ(cell(pages.Observations().View(), u("GNPDEFL")), u("88,5"));
    pages.setCurrentIndex(6);
    EXPECT_TRUE(pages.Prediction().findChild<QLineEdit *>(u("Value_GNPDEFL"))->text().contains(u',') &&
                !pages.Prediction().findChild<QLineEdit *>(u("Value_GNPDEFL"))->text().contains(u'.'));
    pages.setCurrentIndex(0);
    pages.Copy();
    QFile file(opened.folder.filePath(u("copied.csv")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QApplication::clipboard()->text().toUtf8());
    file.close();
    const double slope = opened.window->Fit().Regression()->Getb(3);
    SetModalRunner([](QDialog &) { return int(QDialog::Accepted); });
    opened.window->OpenFile(file.fileName());
    SetModalRunner({});
    EXPECT_EQ(opened.window->CurrentSitting().State().table, u("copied"));
    EXPECT_EQ(cell(pages.Records().View(), u("GNPDEFL")), u("88,5"));
    opened.window->Editor().MakeResponse(u("TOTEMP"));
    opened.window->Editor().AddFields({u("GNP"), u("UNEMP"), u("GNPDEFL")});
    EXPECT_EQ(opened.window->Fit().Regression()->Getb(3), slope);
}

TEST(GermanWorkbench, HasFilesWithTheNamesThatProgramsKnow)
{
    OpenedWindow opened(u("de"));
    opened.fitLongley();
    opened.pages().Observations().SaveCsv(opened.folder.filePath(u("o.csv")));
    QFile file(opened.folder.filePath(u("o.csv")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readLine(), "record,TOTEMP,GNP,UNEMP,fitted,residual,leverage,standardizedResidual,"
                               "studentizedResidual,cook,dffits,standsOutBy\n");
    EXPECT_FALSE(file.readAll().contains("Residuum"));
}

TEST(Menus, HaveAKeyOrALetterForEveryActionAndNoLetterTwice)
{
    for (const char *const code : {"en", "de"}) {
        OpenedWindow opened(u(code));
        EXPECT_EQ(sharedKeys(opened.window->menuBar()->actions()), QString()) << code;
        for (const QAbstractItemView *const view : opened.window->findChildren<QAbstractItemView *>())
            EXPECT_EQ(sharedKeys(view->actions()), QString()) << code << view->objectName().toStdString();
        for (const QAction *const title : opened.window->menuBar()->actions()) {
            EXPECT_EQ(sharedKeys(title->menu()->actions()), QString()) << code << title->text().toStdString();
            for (const QAction *const action : title->menu()->actions()) {
                if (action->isSeparator())
                    continue;
                EXPECT_TRUE(!action->shortcut().isEmpty() || !QKeySequence::mnemonic(action->text()).isEmpty())
                    << code << action->text().toStdString();
                EXPECT_TRUE(action->menu() != nullptr || !action->statusTip().isEmpty() ||
                            title->text().contains(u("w")) || title->text().contains(u("sicht")))
                    << code << action->text().toStdString();
            }
        }
        opened.fitLongley();
        opened.pages().setCurrentWidget(&opened.pages().FiguresPage());
        EXPECT_EQ(sharedKeys(figureMenu(opened.pages().FiguresPage().View())), QString()) << code;
    }
}
