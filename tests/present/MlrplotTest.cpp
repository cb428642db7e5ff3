// SPDX-License-Identifier: MIT
#include "present/Mlrplot.h"

#include "present/Fitted.h"
#include "present/Plotfile.h"
#include "present/Windowtest.h"
#include "present/controls/Hint.h"
#include "present/controls/Imagebox.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QTemporaryDir>

namespace {

TMLRPlotForm &plotForm(QDialog &dialog)
{
    return dynamic_cast<TMLRPlotForm &>(dialog);
}

QString text(const QDialog &window, const char *label)
{
    return part<QLabel>(window, label)->text();
}

bool hasDots(const TMLRPlotForm &form)
{
    const QImage &image = form.Canvas().Image();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == form.Canvas().DotColor().rgb())
                return true;
        }
    }
    return false;
}

/// Shows the plots of a fit to somebody who does that and closes the window.
void showPlots(Fitted &fitted, const std::function<void(TMLRPlotForm &)> &act)
{
    const Person person([&](QDialog &dialog) {
        act(plotForm(dialog));
        dialog.close();
    });
    fitted.table.ShowPlots();
}

void chooseScatter(const TMLRPlotForm &form, const char *item)
{
    click(form, "ScatterButton");
    choose(form, "ScatterPopup", item);
}

} // namespace

TEST(PlotWindow, HasItsCaptionItsSizeAndItsControlsInTheirPlaces)
{
    Fitted fitted = scatteredFit(12, 2);
    showPlots(fitted, [](TMLRPlotForm &form) {
        EXPECT_EQ(form.windowTitle(), QStringLiteral("Multiple Regression Plot Form"));
        EXPECT_EQ(form.size(), QSize(394, 282));
        EXPECT_EQ(form.minimumSize(), form.maximumSize());
        const struct
        {
            const char *name;
            int left;
            const char *hint;
        } buttons[] = {{"ScatterButton", 14, "Draw Scatter Plot"},
                       {"ResidualvsInputBtn", 56, "Draw Residual vs. Input Order"},
                       {"ResidualvsIndepVarBtn", 97, "Draw Residual vs. Independent Variable"},
                       {"ResidualvsDepVarBtn", 139, "Draw Residual vs. Dependent Variable"},
                       {"ResidualvsFittedBtn", 181, "Draw Residual vs. Fitted Variable"},
                       {"ECDFPlotBtn", 222, "Draw Empirical Cumulative Distribution Function Plot"},
                       {"ResetButton", 264, "Clear Plot"},
                       {"ColorBtn", 305, "Set Plot Colors"},
                       {"CloseButton", 347, "Close Plot Form"}};
        for (const auto &[name, left, hint] : buttons) {
            const auto *button = part<QToolButton>(form, name);
            EXPECT_EQ(button->x(), left) << name;
            EXPECT_EQ(button->size(), QSize(33, 34)) << name;
            EXPECT_EQ(button->toolTip(), QLatin1String(hint));
            EXPECT_EQ(button->statusTip(), QString());
            EXPECT_TRUE(button->isEnabled());
        }
        EXPECT_EQ(part(form, "Panel1")->geometry(), QRect(0, 0, 394, 45));
        EXPECT_EQ(part(form, "Panel2")->geometry(), QRect(3, 48, 387, 212));
        EXPECT_EQ(part(form, "PlotImage")->geometry(), QRect(50, 11, 327, 185));
        EXPECT_EQ(part(form, "yMaxLabel")->geometry(), QRect(2, 8, 47, 14));
        EXPECT_EQ(part(form, "yMinLabel")->geometry(), QRect(3, 182, 46, 14));
        EXPECT_EQ(part(form, "xMinLabel")->geometry(), QRect(51, 196, 101, 14));
        EXPECT_EQ(part(form, "xMaxLabel")->geometry(), QRect(295, 196, 83, 14));
        EXPECT_EQ(part(form, "StatusBar")->geometry(), QRect(0, 263, 394, 19));
        EXPECT_EQ(part<QToolButton>(form, "ColorBtn")->text(), QStringLiteral("Color"));
    });
}

TEST(PlotWindow, OpensWithTheRangesOfTheFirstControlAndAnEmptyCanvas)
{
    Fitted fitted = scatteredFit(12, 2);
    showPlots(fitted, [&fitted](TMLRPlotForm &form) {
        EXPECT_EQ(text(form, "xMinLabel"), nuvo::axisText(fitted.table.GetxMin(1), 2));
        EXPECT_EQ(text(form, "xMaxLabel"), nuvo::axisText(fitted.table.GetxMax(1), 2));
        EXPECT_EQ(text(form, "yMinLabel"), nuvo::axisText(fitted.table.GetyMin(), 2));
        EXPECT_EQ(text(form, "yMaxLabel"), nuvo::axisText(fitted.table.GetyMax(), 2));
        EXPECT_FALSE(hasDots(form));
        EXPECT_EQ(form.Last(), 0);
    });
}

TEST(PlotWindow, EachButtonDrawsItsPlot)
{
    Fitted fitted = scatteredFit(12, 2);
    showPlots(fitted, [](TMLRPlotForm &form) {
        const struct
        {
            const char *button;
            const char *caption;
            int last;
        } cases[] = {{"ResidualvsInputBtn", "Plot of Residual vs. Input Order", 1},
                     {"ResidualvsDepVarBtn", "Plot of Residual vs. Dep Variable (y)", 2},
                     {"ResidualvsFittedBtn", "Plot of Residual vs. Fitted y", 3},
                     {"ECDFPlotBtn", "Empirical Cumulative Distribution Function Plot", 4}};
        for (const auto &[button, caption, last] : cases) {
            click(form, button);
            EXPECT_EQ(form.windowTitle(), QLatin1String(caption));
            EXPECT_EQ(form.Last(), last);
            EXPECT_TRUE(hasDots(form)) << caption;
            EXPECT_TRUE(text(form, "StatusBar").isEmpty());
            EXPECT_TRUE(part<TImage>(form, "PlotImage")->Image() == form.Canvas().Image());
            EXPECT_TRUE(part(form, "PlotImage")->accessibleDescription().startsWith(QLatin1String(caption)));
        }
        EXPECT_EQ(text(form, "xMinLabel"), QStringLiteral("0"));
        EXPECT_EQ(text(form, "xMaxLabel"), QStringLiteral("1"));
        EXPECT_EQ(text(form, "yMinLabel"), QStringLiteral("-3.00"));
        EXPECT_EQ(text(form, "yMaxLabel"), QStringLiteral("3.00"));
        click(form, "ResetButton");
        EXPECT_EQ(form.windowTitle(), QStringLiteral("Multiple Regression Plot Form"));
        EXPECT_FALSE(hasDots(form));
        EXPECT_EQ(text(form, "xMinLabel") + text(form, "yMaxLabel"), QString());
        EXPECT_EQ(form.Last(), 0);
    });
}

TEST(PlotWindow, OfThreeControlsOnlyThreeItemsOfBothPopupsAreEnabled)
{
    Fitted fitted = scatteredFit(12, 3);
    showPlots(fitted, [](TMLRPlotForm &form) {
        for (const auto &[button, popup] :
             {std::pair("ScatterButton", "ScatterPopup"), std::pair("ResidualvsIndepVarBtn", "ResidualPopup")}) {
            click(form, button);
            const QMenu *menu = part<QMenu>(form, popup);
            ASSERT_TRUE(menu->isVisible());
            const QList<QAction *> items = menu->actions();
            ASSERT_EQ(items.size(), 10);
            for (int j = 1; j <= 10; ++j) {
                EXPECT_EQ(items[j - 1]->isEnabled(), j <= 3) << popup << j;
                EXPECT_EQ(items[j - 1]->text(), j < 10 ? QStringLiteral("X&%1").arg(j) : QStringLiteral("X1&0"));
            }
            QTest::keyClick(part<QMenu>(form, popup), Qt::Key_Escape);
            EXPECT_FALSE(menu->isVisible());
        }
    });
}

TEST(PlotWindow, PopupsOpenBelowTheMiddleOfTheirButtonAndClearThePlot)
{
    Fitted fitted = scatteredFit(12, 3);
    showPlots(fitted, [](TMLRPlotForm &form) {
        form.move(40, 30);
        for (const auto &[button, popup, hint] :
             {std::tuple("ScatterButton", "ScatterPopup", "Scatter Plots"),
              std::tuple("ResidualvsIndepVarBtn", "ResidualPopup", "Independent Variable Residual Analysis"),
              std::tuple("ColorBtn", "ColorPopup", "")}) {
            click(form, "ECDFPlotBtn");
            ASSERT_TRUE(hasDots(form));
            click(form, button);
            QMenu *menu = part<QMenu>(form, popup);
            EXPECT_EQ(menu->pos(), part(form, button)->mapToGlobal(QPoint(16, 34))) << popup;
            EXPECT_EQ(text(form, "StatusBar"), QLatin1String(hint));
            EXPECT_EQ(hasDots(form), menu->objectName() == QLatin1String("ColorPopup"));
            QTest::keyClick(menu, Qt::Key_Escape);
        }
    });
}

TEST(PlotWindow, TheItemsDrawTheirControlVariable)
{
    Fitted fitted = scatteredFit(12, 10);
    showPlots(fitted, [](TMLRPlotForm &form) {
        chooseScatter(form, "X021");
        EXPECT_EQ(form.windowTitle(), QStringLiteral("Scatter Plot of y vs. x2"));
        EXPECT_EQ(form.Last(), 21);
        EXPECT_TRUE(hasDots(form));
        chooseScatter(form, "X101");
        EXPECT_EQ(form.windowTitle(), QStringLiteral("Scatter Plot of y vs. x10"));
        EXPECT_EQ(form.Last(), 101);
        click(form, "ResidualvsIndepVarBtn");
        choose(form, "ResidualPopup", "X102");
        EXPECT_EQ(form.windowTitle(), QStringLiteral("Plot of Residual vs. Independent Variable (x10)"));
        EXPECT_EQ(form.Last(), 102);
        // By keyboard: space on the button, the underlined digit in the menu.
        part(form, "ResidualvsIndepVarBtn")->setFocus();
        QTest::keyClick(part(form, "ResidualvsIndepVarBtn"), Qt::Key_Space);
        QTest::keyClick(part<QMenu>(form, "ResidualPopup"), Qt::Key_4);
        EXPECT_EQ(form.Last(), 42);
    });
}

TEST(PlotWindow, TheStatusBarShowsTheHintOfTheItemPointedAt)
{
    Fitted fitted = scatteredFit(12, 10);
    showPlots(fitted, [](TMLRPlotForm &form) {
        const auto hintOf = [&form](const char *menuName, const char *item) {
            QMenu *menu = part<QMenu>(form, menuName);
            const auto *submenu = form.findChild<QMenu *>(QLatin1String(item));
            QAction *action = submenu != nullptr ? submenu->menuAction() : part<QAction>(form, item);
            QTest::mouseMove(menu, menu->actionGeometry(action).center());
            return text(form, "StatusBar");
        };
        click(form, "ScatterButton");
        EXPECT_EQ(hintOf("ScatterPopup", "X011"),
                  QStringLiteral("Scatter Plot of dependent variable Y vs. independent variable X1"));
        EXPECT_EQ(hintOf("ScatterPopup", "X101"),
                  QStringLiteral("Scatter Plot of dependent variable Y vs. independent variable X10"));
        QTest::keyClick(part<QMenu>(form, "ScatterPopup"), Qt::Key_Escape);
        click(form, "ResidualvsIndepVarBtn");
        EXPECT_EQ(hintOf("ResidualPopup", "X092"),
                  QStringLiteral("Plot residual (Y - fitted Y) vs. independent variable X9"));
        // The tenth speaks of X1: so it is wanted.
        EXPECT_EQ(hintOf("ResidualPopup", "X102"),
                  QStringLiteral("Plot residual (Y - fitted Y) vs. independent variable X1"));
        QTest::keyClick(part<QMenu>(form, "ResidualPopup"), Qt::Key_Escape);
        click(form, "ColorBtn");
        EXPECT_EQ(hintOf("ColorPopup", "Plots1"), QStringLiteral("Set color of plot scatter dots"));
        EXPECT_EQ(hintOf("ColorPopup", "Background1"), QStringLiteral("Set plot background colors"));
    });
}

TEST(PlotWindow, ColorsRedrawTheSamePlot)
{
    Fitted fitted = scatteredFit(12, 2);
    showPlots(fitted, [](TMLRPlotForm &form) {
        chooseScatter(form, "X021");
        const struct
        {
            const char *item;
            QColor color;
        } dots[] = {{"mnuBlack", QColor(0, 0, 0)},
                    {"mnuGray", QColor(0x80, 0x80, 0x80)},
                    {"mnuBlue", QColor(0, 0, 0x80)},
                    {"mnuGreen", QColor(0, 0x80, 0)},
                    {"mnuMaroon", QColor(0x80, 0, 0)}};
        for (const auto &[item, color] : dots) {
            click(form, "ColorBtn");
            choose(form, "ColorPopup", item);
            EXPECT_EQ(form.Canvas().DotColor(), color) << item;
            EXPECT_TRUE(hasDots(form)) << item;
            EXPECT_EQ(form.Last(), 21);
            EXPECT_EQ(form.windowTitle(), QStringLiteral("Scatter Plot of y vs. x2"));
            EXPECT_EQ(part(form, "ColorBtn")->palette().color(QPalette::ButtonText), color);
        }
        const struct
        {
            const char *item;
            QColor color;
        } grounds[] = {{"Yellow1", QColor(0xff, 0xff, 0)},
                       {"Aqua1", QColor(0, 0xff, 0xff)},
                       {"Teal1", QColor(0, 0x80, 0x80)},
                       {"White1", QColor(0xff, 0xff, 0xff)}};
        for (const auto &[item, color] : grounds) {
            click(form, "ColorBtn");
            choose(form, "ColorPopup", item);
            EXPECT_EQ(form.Canvas().Image().pixelColor(0, 0), color) << item;
            EXPECT_TRUE(hasDots(form)) << item;
            EXPECT_EQ(form.Last(), 21);
        }
    });
}

TEST(PlotWindow, AfterAResetColorsDrawNoDots)
{
    Fitted fitted = scatteredFit(12, 2);
    showPlots(fitted, [](TMLRPlotForm &form) {
        chooseScatter(form, "X011");
        click(form, "ResetButton");
        click(form, "ColorBtn");
        choose(form, "ColorPopup", "Aqua1");
        EXPECT_EQ(form.Canvas().Image().pixelColor(100, 100), QColor(0, 0xff, 0xff));
        EXPECT_TRUE(part<TImage>(form, "PlotImage")->Image() == form.Canvas().Image());
        EXPECT_FALSE(hasDots(form));
        click(form, "ColorBtn");
        choose(form, "ColorPopup", "mnuGreen");
        EXPECT_FALSE(hasDots(form));
        EXPECT_EQ(part(form, "ColorBtn")->palette().color(QPalette::ButtonText), QColor(0, 0x80, 0));
        click(form, "ECDFPlotBtn");
        EXPECT_TRUE(hasDots(form));
    });
}

TEST(PlotWindow, APlotWithoutARangeSaysWhyInTheStatusBar)
{
    // An exact fit of a constant that is no constant to the loader: the residuals are all zero.
    Fitted fitted(6, controlNames(1), [](int i, int j) { return j == 0 ? 2.0 * i : i; });
    ASSERT_TRUE(fitted.table.Computed());
    for (int i = 1; i <= 6; ++i)
        ASSERT_EQ(fitted.table.Gete(i), 0);
    showPlots(fitted, [](TMLRPlotForm &form) {
        click(form, "ResidualvsInputBtn");
        EXPECT_EQ(text(form, "StatusBar"), QStringLiteral("Nothing is drawn: the residual does not vary."));
        EXPECT_FALSE(hasDots(form));
        click(form, "ResidualvsIndepVarBtn");
        choose(form, "ResidualPopup", "X012");
        EXPECT_EQ(text(form, "StatusBar"), QStringLiteral("Nothing is drawn: the residual does not vary."));
        EXPECT_TRUE(part(form, "PlotImage")->accessibleDescription().endsWith(QLatin1String("does not vary.")));
        chooseScatter(form, "X011");
        EXPECT_TRUE(hasDots(form));
        EXPECT_FALSE(text(form, "StatusBar").startsWith(QLatin1String("Nothing")));
    });
}

TEST(PlotWindow, FitsWithoutFiguresLeaveItUsable)
{
    const auto everything = [](TMLRPlotForm &form) {
        for (const char *button : {"ResidualvsInputBtn", "ResidualvsDepVarBtn", "ResidualvsFittedBtn", "ECDFPlotBtn"})
            click(form, button);
        chooseScatter(form, "X011");
        click(form, "ColorBtn");
        choose(form, "ColorPopup", "mnuBlack");
        click(form, "ResetButton");
    };
    Fitted exact = scatteredFit(3, 2); // n = m + 1
    showPlots(exact, everything);
    Fitted one = scatteredFit(1, 1);
    showPlots(one, everything);
    Fitted none = scatteredFit(0, 1);
    showPlots(none, everything);
    Fitted noControl = scatteredFit(8, 0);
    showPlots(noControl, [](TMLRPlotForm &form) {
        click(form, "ECDFPlotBtn");
        EXPECT_TRUE(hasDots(form));
    });
    TMLRTable never;
    const Person person([&](QDialog &dialog) {
        click(dialog, "ECDFPlotBtn");
        EXPECT_EQ(text(dialog, "StatusBar"), QStringLiteral("Nothing is drawn: no observation has been loaded."));
        dialog.close();
    });
    never.ShowPlots();
}

TEST(PlotWindow, LongFiguresAtTheAxesAreNotCut)
{
    Fitted fitted(30, controlNames(2),
                  [](int i, int j) { return (j == 0 ? -123456789.0 : -1234567.0) * scattered(i, j); });
    showPlots(fitted, [](TMLRPlotForm &form) {
        for (const char *button :
             {"ResidualvsInputBtn", "ResidualvsDepVarBtn", "ResidualvsFittedBtn", "ECDFPlotBtn"}) {
            click(form, button);
            for (const char *name : {"xMinLabel", "xMaxLabel", "yMinLabel", "yMaxLabel"}) {
                const auto *label = part<QLabel>(form, name);
                EXPECT_GE(label->width(), label->fontMetrics().horizontalAdvance(label->text())) << name;
            }
        }
        const QWidget *image = part(form, "PlotImage");
        EXPECT_EQ(image->size(), QSize(327, 185));
        EXPECT_GT(image->x(), part(form, "yMaxLabel")->geometry().right());
        EXPECT_LE(image->geometry().right(), part(form, "Panel2")->width());
    });
}

TEST(PlotWindow, TheQueryShowsItsOwnPlots)
{
    Fitted fitted = scatteredFit(12, 2);
    Fitted::run(fitted.query, fitted.query);
    const Person person([&](QDialog &dialog) {
        EXPECT_EQ(fitted.query.FPlotForm, &dialog);
        chooseScatter(plotForm(dialog), "X011");
        EXPECT_TRUE(hasDots(plotForm(dialog)));
        click(dialog, "CloseButton");
    });
    fitted.query.ShowPlots();
    EXPECT_TRUE(fitted.query.FPlotForm.isNull());
}

TEST(PlotWindow, EscapeAndTheCloseButtonCloseIt)
{
    Fitted fitted = scatteredFit(12, 2);
    const Person person([](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
                        [](QDialog &dialog) { click(dialog, "CloseButton"); },
                        [](QDialog &dialog) { QTest::keyClick(part(dialog, "CloseButton"), Qt::Key_Space); });
    for (int i = 0; i < 3; ++i) {
        fitted.table.ShowPlots();
        EXPECT_TRUE(fitted.table.FPlotForm.isNull());
    }
}

TEST(PlotWindow, TabGoesThroughTheButtonsFromLeftToRightToThePlot)
{
    Fitted fitted = scatteredFit(12, 2);
    showPlots(fitted, [](TMLRPlotForm &form) {
        form.activateWindow();
        part(form, "ScatterButton")->setFocus();
        for (const char *next :
             {"ResidualvsInputBtn", "ResidualvsIndepVarBtn", "ResidualvsDepVarBtn", "ResidualvsFittedBtn",
              "ECDFPlotBtn", "ResetButton", "ColorBtn", "CloseButton", "PlotImage", "ScatterButton"}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            EXPECT_EQ(QApplication::focusWidget()->objectName(), QLatin1String(next));
        }
    });
}

TEST(PlotWindow, EveryControlHasANameForScreenReaders)
{
    Fitted fitted = scatteredFit(12, 2);
    showPlots(fitted, [](TMLRPlotForm &form) {
        for (const QToolButton *button : form.findChildren<QToolButton *>())
            EXPECT_FALSE(button->accessibleName().isEmpty()) << button->objectName().toStdString();
        EXPECT_EQ(part(form, "PlotImage")->accessibleName(), QStringLiteral("Plot"));
        EXPECT_EQ(part(form, "PlotImage")->accessibleDescription(), QStringLiteral("No plot is drawn."));
    });
}

TEST(PlotWindow, ClosingTwoHundredTimesLeavesNothing)
{
    Fitted fitted = scatteredFit(12, 2);
    for (int i = 0; i < 200; ++i) {
        showPlots(fitted, [](TMLRPlotForm &form) { click(form, "ECDFPlotBtn"); });
        ASSERT_TRUE(fitted.table.FPlotForm.isNull());
    }
    for (const QWidget *widget : QApplication::topLevelWidgets())
        EXPECT_EQ(qobject_cast<const TMLRPlotForm *>(widget), nullptr);
}

TEST(PlotWindow, TheFitMayGoWhileItIsOpen)
{
    auto fitted = std::make_unique<Fitted>(12, controlNames(2), scattered);
    const Person person([&](QDialog &dialog) {
        fitted.reset();
        click(dialog, "ECDFPlotBtn");
        EXPECT_TRUE(hasDots(plotForm(dialog)));
        dialog.close();
    });
    fitted->table.ShowPlots();
}

TEST(PlotWindow, ThereIsOneAtATime)
{
    Fitted fitted = scatteredFit(12, 2);
    showPlots(fitted, [&fitted](TMLRPlotForm &form) {
        fitted.table.ShowPlots(); // nobody meets a second dialog
        EXPECT_EQ(fitted.table.FPlotForm, &form);
    });
}

TEST(PlotWindow, WithoutAnybodyInFrontItDoesNotWait)
{
    Fitted fitted = scatteredFit(12, 2);
    fitted.table.ShowPlots();
    EXPECT_TRUE(fitted.table.FPlotForm.isNull());
}

TEST(PlotWindow, SavePlotWritesThePictureThatWasAskedFor)
{
    Fitted fitted = scatteredFit(12, 2);
    const QTemporaryDir directory;
    const QString png = directory.filePath(QStringLiteral("ecdf.png"));
    const QString svg = directory.filePath(QStringLiteral("ecdf.svg"));
    const auto nameIt = [](const QString &file) {
        return [file](QDialog &dialog) {
            auto *edit = part<QLineEdit>(dialog, "fileNameEdit");
            edit->setText(file);
            QTest::keyClick(edit, Qt::Key_Return);
        };
    };
    const auto save = [](QDialog &dialog) {
        QWidget *image = part(dialog, "PlotImage");
        rightClick(image, image->rect().center());
        choose(dialog, "CanvasPopup", "SavePlot1");
    };
    const Person person(
        [&](QDialog &dialog) {
            QWidget *image = part(dialog, "PlotImage");
            rightClick(image, image->rect().center());
            EXPECT_FALSE(part<QAction>(dialog, "SavePlot1")->isEnabled()) << "there is no plot yet";
            QTest::keyClick(part<QMenu>(dialog, "CanvasPopup"), Qt::Key_Escape);
            click(dialog, "ECDFPlotBtn");
            save(dialog);
            save(dialog);
            rightClick(image, image->rect().center());
            choose(dialog, "CanvasPopup", "CopyPlot1");
            dialog.close();
        },
        nameIt(png),
        [](QDialog &dialog) {
            dynamic_cast<QInputDialog &>(dialog).setIntValue(1000);
            QTest::keyClick(&dialog, Qt::Key_Return);
        },
        nameIt(svg));
    fitted.table.ShowPlots();
    EXPECT_EQ(QImage(png).width(), 1000);
    QFile drawing(svg);
    ASSERT_TRUE(drawing.open(QIODevice::ReadOnly));
    const QByteArray content = drawing.readAll();
    EXPECT_EQ(content.count("<circle"), 12);
    EXPECT_TRUE(content.contains("Empirical Cumulative Distribution Function Plot"));
    EXPECT_EQ(QApplication::clipboard()->image().width(), 800);
    EXPECT_TRUE(person.messages.isEmpty());
}

TEST(PlotWindow, AFileThatCannotBeWrittenIsAMessage)
{
    Fitted fitted = scatteredFit(12, 2);
    const QTemporaryDir directory;
    const QString file = directory.filePath(QStringLiteral("no/such/place.svg"));
    const Person person(
        [&](QDialog &dialog) {
            click(dialog, "ECDFPlotBtn");
            QWidget *image = part(dialog, "PlotImage");
            rightClick(image, image->rect().center());
            choose(dialog, "CanvasPopup", "SavePlot1");
            EXPECT_TRUE(dialog.isVisible());
            dialog.close();
        },
        [&](QDialog &dialog) {
            auto *edit = part<QLineEdit>(dialog, "fileNameEdit");
            edit->setText(file);
            dialog.done(QDialog::Accepted);
        });
    fitted.table.ShowPlots();
    ASSERT_EQ(person.messages.size(), 1);
    EXPECT_EQ(person.messages[0], QStringLiteral("Cannot write \"%1\": No such file or directory.").arg(file));
}

TEST(PlotFiles, EveryPlotGoesIntoADirectoryMadeForIt)
{
    Fitted fitted = scatteredFit(12, 2);
    const QTemporaryDir directory;
    const QString target = directory.filePath(QStringLiteral("a/b"));
    nuvo::savePlots(fitted.table, target);
    EXPECT_EQ(QDir(target).entryList(QDir::Files, QDir::Name).join(u' '),
              QStringLiteral("ecdf.png residual-fitted.png residual-order.png residual-response.png residual-x1.png "
                             "residual-x2.png scatter-x1.png scatter-x2.png"));
    nuvo::PlotCanvas canvas;
    canvas.DrawDots(nuvo::makePlot(nuvo::plotData(fitted.table), nuvo::scatterPlot(2)));
    const QImage saved(target + QLatin1String("/scatter-x2.png"));
    EXPECT_TRUE(saved.convertToFormat(QImage::Format_RGB32) == canvas.Image());
}

TEST(PlotFiles, ADirectoryThatCannotBeMadeAndAnUnknownEndingAreErrors)
{
    Fitted fitted = scatteredFit(12, 2);
    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("file")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_ANY_THROW(nuvo::savePlots(fitted.table, file.fileName() + QLatin1String("/below")));
    const QString gif = directory.filePath(QStringLiteral("plot.gif"));
    EXPECT_ANY_THROW(nuvo::savePlot({}, gif, 800));
    EXPECT_FALSE(QFile::exists(gif));
}
