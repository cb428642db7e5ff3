// SPDX-License-Identifier: MIT
#include "present/figures/Figureview.h"

#include "present/Windowtest.h"
#include "present/figures/Figurespage.h"
#include "present/figures/Smallfit.h"
#include "support/Text.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolTip>
#include <QWheelEvent>

#include <gtest/gtest.h>

using nuvo::Figure;
using nuvo::FigureKind;

namespace {

class FigureViews : public testing::Test
{
protected:
    FigureViews()
    {
        view.SetFigure(nuvo::fitFigure(scatteredData(30), FigureKind::ResidualByFitted));
        view.resize(600, 400);
        view.show();
        view.setFocus();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
    }

    QPoint placeOf(int i) const
    {
        const Figure &figure = view.Figure();
        return view.Painter().Place(figure.x[std::size_t(i)], figure.y[std::size_t(i)]).toPoint();
    }
    /// A place within the frame without a point.
    QPoint emptyPlace() const
    {
        const QRectF frame = view.Painter().Frame();
        for (double y = frame.top() + 5; y < frame.bottom(); y += 5) {
            for (double x = frame.left() + 5; x < frame.right(); x += 5) {
                if (view.Painter().PointAt({x, y}, 25) < 0)
                    return QPointF(x, y).toPoint();
            }
        }
        ADD_FAILURE() << "points everywhere";
        return {};
    }
    void wheel(QPoint where, int turned)
    {
        QWheelEvent event(where, view.mapToGlobal(where), {}, {0, turned}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&view, &event);
    }
    double width() const { return view.Section().x.high - view.Section().x.low; }

    TFigureView view;
};

} // namespace

TEST_F(FigureViews, TellRecordAndValuesWhereThePointerIs)
{
    EXPECT_TRUE(view.WordsAt(placeOf(4)).startsWith(u("Record 5\nFitted value: ")))
        << view.WordsAt(placeOf(4)).toStdString();
    EXPECT_EQ(view.WordsAt(emptyPlace()), QString());
    QHelpEvent help(QEvent::ToolTip, placeOf(4), view.mapToGlobal(placeOf(4)));
    QApplication::sendEvent(&view, &help);
    EXPECT_TRUE(QToolTip::text().contains(u("Record 5"))) << QToolTip::text().toStdString();
    QTest::mouseMove(&view, placeOf(4));
    EXPECT_TRUE(QTest::qWaitFor([&] { return view.Current() == 4; }));
    QTest::mouseMove(&view, emptyPlace());
    EXPECT_TRUE(QTest::qWaitFor([&] { return view.Current() == -1; }));
}

TEST_F(FigureViews, AClickSelectsTheObservationAndOneBesideAllNone)
{
    const QSignalSpy picked(&view, &TFigureView::Picked);
    const QSignalSpy changed(&view, &TFigureView::SelectionChanged);
    QTest::mouseClick(&view, Qt::LeftButton, {}, placeOf(9));
    EXPECT_EQ(view.Selected(), std::set<qint64>{10});
    ASSERT_EQ(picked.size(), 1);
    EXPECT_EQ(picked[0][0].toLongLong(), 10);
    QTest::mouseClick(&view, Qt::LeftButton, Qt::ControlModifier, placeOf(3));
    EXPECT_EQ(view.Selected(), (std::set<qint64>{4, 10}));
    QTest::mouseClick(&view, Qt::LeftButton, Qt::ControlModifier, placeOf(9));
    EXPECT_EQ(view.Selected(), std::set<qint64>{4});
    QTest::mouseClick(&view, Qt::LeftButton, {}, emptyPlace());
    EXPECT_TRUE(view.Selected().empty());
    EXPECT_EQ(changed.size(), 4);
}

TEST_F(FigureViews, ASelectionFromOutsideIsDrawnAndSendsNothing)
{
    const QSignalSpy changed(&view, &TFigureView::SelectionChanged);
    const QImage before = view.grab().toImage();
    view.SetSelected({12});
    EXPECT_NE(view.grab().toImage().pixel(placeOf(11)), before.pixel(placeOf(11)));
    view.SetSelected({});
    EXPECT_EQ(view.grab().toImage(), before);
    EXPECT_EQ(changed.size(), 0);
}

TEST_F(FigureViews, ABarSelectsItsObservations)
{
    view.SetFigure(nuvo::fitFigure(scatteredData(30), FigureKind::ResidualDistribution));
    const auto &bars = view.Figure().bars;
    const auto bar = std::find_if(bars.begin(), bars.end(), [](const auto &one) { return one.height >= 3; });
    ASSERT_NE(bar, bars.end());
    const QPointF middle = view.Painter().Place((bar->from + bar->to) / 2, bar->height / 2);
    EXPECT_TRUE(view.WordsAt(middle).startsWith(u("Residual from ")));
    QTest::mouseClick(&view, Qt::LeftButton, {}, middle.toPoint());
    EXPECT_EQ(view.Selected(), std::set<qint64>(bar->records.begin(), bar->records.end()));
    QTest::keyClick(&view, Qt::Key_Home);
    EXPECT_EQ(view.Selected(), std::set<qint64>(bars.front().records.begin(), bars.front().records.end()));
}

TEST_F(FigureViews, TheWheelZoomsAroundThePointer)
{
    const QPoint place = placeOf(7);
    const double before = width();
    wheel(place, 360);
    EXPECT_LT(width(), before / 1.9);
    EXPECT_LE((placeOf(7) - place).manhattanLength(), 1);
    wheel(place, -360);
    EXPECT_NEAR(width(), before, before * 1e-9);
    wheel(place, 120 * 200);
    wheel(place, 120 * 200);
    EXPECT_GT(width(), before * 1e-7);
}

TEST_F(FigureViews, DraggingPansAndADoubleClickShowsAllAgain)
{
    const nuvo::FigureSection whole = view.Section();
    const QPoint start = emptyPlace();
    const QPoint before = placeOf(7);
    view.SetSelected({3});
    QTest::mousePress(&view, Qt::LeftButton, {}, start);
    QTest::mouseMove(&view, start + QPoint(40, 0));
    QTest::mouseMove(&view, start + QPoint(60, -30));
    QTest::mouseRelease(&view, Qt::LeftButton, {}, start + QPoint(60, -30));
    EXPECT_LE((placeOf(7) - before - QPoint(60, -30)).manhattanLength(), 2);
    EXPECT_EQ(view.Selected(), std::set<qint64>{3}) << "a drag is no click";
    QTest::mouseDClick(&view, Qt::LeftButton, {}, start);
    EXPECT_EQ(view.Section(), whole);
}

TEST_F(FigureViews, KeysGoFromPointToPoint)
{
    std::vector<double> xs = view.Figure().x;
    std::sort(xs.begin(), xs.end());
    QTest::keyClick(&view, Qt::Key_Home);
    EXPECT_EQ(view.Figure().x[std::size_t(view.Current())], xs.front());
    for (std::size_t i = 1; i < xs.size(); ++i) {
        QTest::keyClick(&view, Qt::Key_Right);
        EXPECT_EQ(view.Figure().x[std::size_t(view.Current())], xs[i]);
        EXPECT_EQ(view.Selected(), std::set<qint64>{view.Current() + 1});
    }
    QTest::keyClick(&view, Qt::Key_Right);
    EXPECT_EQ(view.Figure().x[std::size_t(view.Current())], xs.back());
    QTest::keyClick(&view, Qt::Key_Left);
    EXPECT_EQ(view.Figure().x[std::size_t(view.Current())], xs[xs.size() - 2]);
    const double height = view.Figure().y[std::size_t(view.Current())];
    QTest::keyClick(&view, Qt::Key_Up);
    EXPECT_GT(view.Figure().y[std::size_t(view.Current())], height);
    EXPECT_EQ(view.accessibleName(), u("Residuals by fitted value"));
    EXPECT_TRUE(view.accessibleDescription().startsWith(u("Record %1, Fitted value: ").arg(view.Current() + 1)));
}

TEST_F(FigureViews, KeysReachEveryPointOfEqualPlaces)
{
    Figure figure = view.Figure();
    figure.x.assign(30, 4);
    figure.xValues = {4, 4};
    view.SetFigure(figure);
    std::set<int> reached;
    for (int i = 0; i < 30; ++i) {
        QTest::keyClick(&view, Qt::Key_Right);
        reached.insert(view.Current());
    }
    EXPECT_EQ(reached.size(), 30U);
}

TEST_F(FigureViews, KeysZoom)
{
    const double before = width();
    QTest::keyClick(&view, Qt::Key_Plus);
    EXPECT_NEAR(width(), before / 1.5, before * 1e-9);
    QTest::keyClick(&view, Qt::Key_Minus);
    QTest::keyClick(&view, Qt::Key_Minus);
    EXPECT_NEAR(width(), before * 1.5, before * 1e-9);
    QTest::keyClick(&view, Qt::Key_0);
    EXPECT_EQ(width(), before);
}

TEST_F(FigureViews, ControlCCopiesThePicture)
{
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    const QMimeData *content = QGuiApplication::clipboard()->mimeData();
    ASSERT_TRUE(content->hasImage());
    EXPECT_EQ(qvariant_cast<QImage>(content->imageData()).size(), view.size() * view.devicePixelRatioF());
    EXPECT_TRUE(content->data(u("image/svg+xml")).contains("<svg"));
}

TEST_F(FigureViews, ControlSAsksForAFileAndSavesWhatIsShown)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u("figure.svg"));
    QTest::keyClick(&view, Qt::Key_Plus);
    const Person person([&](QDialog &dialog) {
        EXPECT_EQ(dynamic_cast<QFileDialog &>(dialog).nameFilters().size(), 3);
        auto *edit = part<QLineEdit>(dialog, "fileNameEdit");
        edit->setText(path);
        QTest::keyClick(edit, Qt::Key_Return);
    });
    QTest::keyClick(&view, Qt::Key_S, Qt::ControlModifier);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray svg = file.readAll();
    EXPECT_TRUE(svg.contains("viewBox=\"0 0 600 400\""));
    nuvo::FigureSheet sheet;
    sheet.size = view.size();
    EXPECT_NE(svg, nuvo::figureSvg(view.Figure(), sheet));
    sheet.section = view.Section();
    EXPECT_EQ(svg, nuvo::figureSvg(view.Figure(), sheet));
}

TEST_F(FigureViews, AFileThatCannotBeWrittenIsAMessage)
{
    const Person person([](QDialog &dialog) {
        part<QLineEdit>(dialog, "fileNameEdit")->setText(u("/nowhere/figure.png"));
        dialog.done(QDialog::Accepted);
    });
    view.SaveAs();
    ASSERT_EQ(person.messages.size(), 1);
    EXPECT_TRUE(person.messages[0].contains(u("/nowhere/figure.png"))) << person.messages[0].toStdString();
}

TEST_F(FigureViews, HaveAContextMenu)
{
    rightClick(&view, emptyPlace());
    auto *menu = part<QMenu>(view, "FigureMenu");
    ASSERT_NE(menu, nullptr);
    QStringList items;
    for (const QAction *action : menu->actions()) {
        if (!action->isSeparator())
            items += action->text().remove(u'&');
    }
    EXPECT_EQ(items.join(u'|'), u("Copy|Save As…|Show All|Zoom In|Zoom Out"));
    menu->close();
}

TEST_F(FigureViews, FollowThePaletteAndTheSize)
{
    QPalette dark;
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    view.setPalette(dark);
    EXPECT_EQ(view.grab().toImage().pixelColor(3, 3), QColor(Qt::black));
    const QRectF frame = view.Painter().Frame();
    view.resize(900, 700);
    EXPECT_GT(view.Painter().Frame().width(), frame.width() + 250);
}

TEST_F(FigureViews, WithoutAFigureDoNothing)
{
    view.SetFigure({});
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Up, Qt::Key_End, Qt::Key_Plus, Qt::Key_0})
        QTest::keyClick(&view, key);
    QTest::mouseClick(&view, Qt::LeftButton, {}, QPoint(300, 200));
    EXPECT_EQ(view.Current(), -1);
    EXPECT_FALSE(view.grab().isNull());
}

TEST_F(FigureViews, MayBeDeletedByWhoeverHearsOfASelection)
{
    auto *other = new TFigureView;
    other->SetFigure(view.Figure());
    other->resize(600, 400);
    QObject::connect(other, &TFigureView::SelectionChanged, other, [other] { delete other; });
    const QPointer<TFigureView> watched = other;
    QTest::keyClick(other, Qt::Key_Home);
    EXPECT_TRUE(watched.isNull());
}

TEST(FiguresPage, ShowsOneFigureAndGoesToTheNextAndBack)
{
    TFiguresPage page;
    page.SetFigures(nuvo::fitFigures(scatteredData(20)));
    page.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&page));
    auto *chooser = part<QComboBox>(page, "FigureChooser");
    EXPECT_EQ(chooser->count(), 13);
    EXPECT_EQ(page.Index(), 0);
    EXPECT_FALSE(part<QToolButton>(page, "PreviousFigure")->isEnabled());
    click(page, "NextFigure");
    EXPECT_EQ(page.View().Figure().title, u("y by x2"));
    page.View().setFocus();
    QTest::keyClick(&page.View(), Qt::Key_PageDown);
    EXPECT_EQ(page.View().Figure().title, u("Residuals by fitted value"));
    QTest::keyClick(&page.View(), Qt::Key_PageUp);
    EXPECT_EQ(page.Index(), 1);
    page.SetIndex(12);
    EXPECT_FALSE(part<QToolButton>(page, "NextFigure")->isEnabled());
    EXPECT_EQ(page.View().Figure().kind, FigureKind::ResidualDistribution);
    page.SetIndex(13);
    EXPECT_EQ(page.Index(), 12);
}

TEST(FiguresPage, KeepsSelectionAndKindWhenFiguresChange)
{
    TFiguresPage page;
    page.SetFigures(nuvo::fitFigures(scatteredData(20)));
    page.SetSelected({4});
    page.SetIndex(8);
    EXPECT_EQ(page.Selected(), std::set<qint64>{4});
    const FigureKind kind = page.View().Figure().kind;
    page.SetFigures(nuvo::fitFigures(scatteredData(25, {QStringLiteral("a")})));
    EXPECT_EQ(page.View().Figure().kind, kind);
    page.SetFigures({});
    EXPECT_EQ(page.Index(), -1);
    EXPECT_NE(page.View().Figure().note, QString());
}

TEST(FiguresPage, SavesAllFiguresIntoAFolder)
{
    const QTemporaryDir folder;
    TFiguresPage page;
    page.SetFigures(nuvo::fitFigures(scatteredData(20)));
    const Person person([&](QDialog &dialog) {
        EXPECT_EQ(dynamic_cast<QFileDialog &>(dialog).fileMode(), QFileDialog::Directory);
        part<QLineEdit>(dialog, "fileNameEdit")->setText(folder.path());
        dialog.done(QDialog::Accepted);
    });
    const QList<QAction *> formats = part<QMenu>(page, "SaveFiguresMenu")->actions();
    ASSERT_EQ(formats.size(), 3);
    formats[1]->trigger();
    EXPECT_EQ(QDir(folder.path()).entryList({u("*.svg")}, QDir::Files).size(), 13);
}
