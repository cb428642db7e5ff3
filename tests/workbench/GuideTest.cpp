// SPDX-License-Identifier: MIT
#include "workbench/Guide.h"

#include "Openedwindow.h"
#include "workbench/Guidepages.h"

#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <QToolButton>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

const nuvo::GuidePage *pageOf(const QString &name)
{
    for (const nuvo::GuidePage &page : nuvo::guidePages()) {
        if (page.name == name)
            return &page;
    }
    return nullptr;
}

QString shownGuide(const OpenedWindow &opened)
{
    if (auto *const before = opened.window->findChild<nuvo::Guide *>())
        before->close();
    opened.window->activateWindow();
    QApplication::processEvents();
    QTest::keyClick(opened.window.get(), Qt::Key_F1);
    const auto *const guide = opened.window->findChild<nuvo::Guide *>();
    return guide != nullptr && guide->isVisible() ? guide->Place() : u("closed");
}

} // namespace

TEST(Guide, HasItsPagesInTheOrderOfTheFirstOne)
{
    const std::vector<nuvo::GuidePage> &pages = nuvo::guidePages();
    ASSERT_GE(pages.size(), 11U);
    EXPECT_EQ(pages[0].name, u("README.md"));
    EXPECT_EQ(pages[1].name, u("words.md"));
    EXPECT_EQ(pages[1].title(), u("The words"));
}

TEST(Guide, LinksAndPicturesLeadSomewhere)
{
    for (const nuvo::GuidePage &page : nuvo::guidePages()) {
        for (const QString &link : nuvo::guideLinks(page.text)) {
            if (link.startsWith(u("http")))
                continue;
            const QString file = link.section(u'#', 0, 0);
            const QString place = QDir::cleanPath(nuvo::guideFolder() + u'/' + file);
            // Sources are named for developers, who have them.
            const bool isThere =
                file.startsWith(u("../../")) || file == u("../reference.md") || file == u("../designer.md");
            EXPECT_TRUE(isThere || QFile::exists(place)) << page.name.toStdString() << ": " << link.toStdString();
            if (!link.contains(u'#') || file.startsWith(u(".."))) // of the guide's own pages
                continue;
            const nuvo::GuidePage *const target = file.isEmpty() ? &page : pageOf(file);
            ASSERT_NE(target, nullptr) << link.toStdString();
            QTextDocument document;
            document.setMarkdown(target->text);
            EXPECT_GE(nuvo::guidePosition(document, link.section(u'#', 1)), 0) << link.toStdString();
        }
    }
}

TEST(Guide, OpensWhereItIsAboutWhatIsShown)
{
    OpenedWindow opened;
    EXPECT_EQ(shownGuide(opened), u("README.md"));
    opened.fitLongley();
    const char *const places[] = {"first-page.md",
                                  "figures.md",
                                  "figures.md#a-failed-test-the-form-does-not-suit-the-data",
                                  "figures.md#a-leverage-one-record-decides",
                                  "figures.md#a-failed-test-the-form-does-not-suit-the-data",
                                  "selection.md",
                                  "first-page.md#a-prediction"};
    for (int page = 0; page < opened.pages().count(); ++page) {
        opened.pages().setCurrentIndex(page);
        opened.pages().currentWidget()->setFocus();
        const QString place = shownGuide(opened);
        EXPECT_EQ(place, u(places[page]));
        const nuvo::GuidePage *const file = pageOf(place.section(u'#', 0, 0));
        ASSERT_NE(file, nullptr);
        if (place.contains(u'#')) {
            const QString anchor = place.section(u'#', 1);
            const bool has = std::any_of(file->headings.begin(), file->headings.end(),
                                         [&](const nuvo::GuideHeading &one) { return one.anchor == anchor; });
            EXPECT_TRUE(has) << place.toStdString();
        }
    }
    opened.window->Editor().FocusFields();
    EXPECT_EQ(shownGuide(opened), u("words.md"));
}

TEST(Guide, GoesBackAndForwardAndToHeadings)
{
    nuvo::Guide guide;
    guide.show();
    guide.ShowPlace(u("README.md"));
    guide.ShowPlace(u("figures.md#all-the-others"));
    EXPECT_TRUE(guide.Page().toPlainText().contains(u("condition indices")));
    EXPECT_EQ(guide.Page().textCursor().block().text(), u("All the others"));
    auto *const back = guide.findChild<QToolButton *>(u("GuideBack"));
    ASSERT_TRUE(back->isEnabled());
    QTest::mouseClick(back, Qt::LeftButton);
    EXPECT_EQ(guide.Place(), u("README.md"));
    QTest::mouseClick(guide.findChild<QToolButton *>(u("GuideForward")), Qt::LeftButton);
    EXPECT_EQ(guide.Place(), u("figures.md#all-the-others"));
    auto *const contents = guide.findChild<QTreeWidget *>(u("GuideContents"));
    EXPECT_EQ(contents->currentItem()->text(0), u("All the others"));
    contents->setCurrentItem(contents->topLevelItem(1));
    EXPECT_EQ(guide.Place(), u("words.md"));
    Q_EMIT guide.Page().anchorClicked(QUrl(u("qrc:/docs/guide/large.md")));
    EXPECT_EQ(guide.Place(), u("large.md"));
    Q_EMIT guide.Page().anchorClicked(QUrl(u("qrc:/examples/Form.cpp")));
    EXPECT_EQ(guide.Place(), u("large.md"));
    EXPECT_TRUE(guide.findChild<QLabel *>(u("GuideSaid"))->text().contains(u("Form.cpp")));
}

TEST(Guide, FindsTextOnOtherPages)
{
    nuvo::Guide guide;
    guide.show();
    guide.ShowPlace(u("README.md"));
    auto *const search = guide.findChild<QLineEdit *>(u("GuideSearch"));
    search->setText(u("condition indices"));
    QTest::keyClick(search, Qt::Key_Return);
    EXPECT_EQ(guide.Place(), u("figures.md"));
    EXPECT_EQ(guide.Page().textCursor().selectedText(), u("condition indices"));
    search->setText(u("no such words at all"));
    QTest::keyClick(search, Qt::Key_Return);
    EXPECT_TRUE(guide.findChild<QLabel *>(u("GuideSaid"))->isVisible());
    EXPECT_EQ(guide.Place(), u("figures.md"));
}

TEST(Guide, HasNoPictureWiderThanItsPage)
{
    OpenedWindow opened;
    nuvo::Guide guide;
    guide.show();
    guide.ShowPlace(u("workbench.md"));
    const auto widest = [&] {
        QApplication::processEvents();
        double width = 0;
        for (QTextBlock block = guide.Page().document()->begin(); block.isValid(); block = block.next()) {
            for (auto part = block.begin(); !part.atEnd(); ++part) {
                if (part.fragment().charFormat().isImageFormat())
                    width = std::max(width, part.fragment().charFormat().toImageFormat().width());
            }
        }
        return width;
    };
    const double first = widest();
    EXPECT_GT(first, 300);
    EXPECT_LE(first, guide.Page().viewport()->width());
    guide.resize(1400, 900);
    const double wider = widest();
    EXPECT_GT(wider, first);
    EXPECT_LE(wider, guide.Page().viewport()->width());
    EXPECT_FALSE(guide.Page().document()->isUndoAvailable());
}
