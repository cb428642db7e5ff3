#include "present/Mlroutpt.h"

#include "platform/Headerbar.h"
#include "present/Fitted.h"
#include "present/Mlrplot.h"
#include "present/Report.h"
#include "present/Windowtest.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPdfWriter>
#include <QPlainTextEdit>
#include <QPrintDialog>
#include <QPushButton>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTimer>

namespace {

TRegressionOutputForm &reportForm(QDialog &dialog)
{
    return dynamic_cast<TRegressionOutputForm &>(dialog);
}

QString text(const QWidget &window, const char *label)
{
    return part<QLabel>(window, label)->text();
}

QString memo(const QWidget &window, const char *name = "Matrix")
{
    return part<QPlainTextEdit>(window, name)->toPlainText();
}

/// Shows the report of a fit to somebody who does that, meets further dialogs with `more`, and closes the window.
template <class... More>
QStringList showReport(Fitted &fitted, const std::function<void(TRegressionOutputForm &)> &act, More... more)
{
    const Person person(
        [&](QDialog &dialog) {
            act(reportForm(dialog));
            dialog.close();
        },
        more...);
    fitted.table.Output();
    return person.messages;
}

void chooseMatrix(const QWidget &form, const char *item)
{
    click(form, "bbtnShowMatrix");
    choose(form, "MatrixPopup", item);
}

void choosePrint(const QWidget &form, const char *item)
{
    click(form, "bbtnPrintForm");
    choose(form, "PrintPopup", item);
}

void chooseReport(QWidget &form, const char *item)
{
    rightClick(part(form, "Panel2"), QPoint(5, 5));
    choose(form, "ReportPopup", item);
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
    QFile stream(file);
    EXPECT_TRUE(stream.open(QIODevice::ReadOnly)) << file.toStdString();
    return stream.readAll();
}

const char *const kLabels[] = {"labDepVarName", "labIndepVarNames", "labDataCount", "labDOF",
                               "labMean",       "labStdDev",        "labCoeffs",    "labStdErrCoeff",
                               "labtValue",     "labSumSquare",     "labSSR",       "labSSE",
                               "labSST",        "labsSquared",      "labRsqr",      "labFStat"};

int fontPixels(const QWidget &form, const char *name)
{
    return part(form, name)->font().pixelSize();
}

/// Room that a label's lines take.
QSize room(const QLabel &label)
{
    QString lines = label.text();
    while (lines.endsWith(u'\n'))
        lines.chop(1);
    return label.fontMetrics().size(0, lines);
}

/// No text is cut and none runs into another.
void expectNothingIsCut(const QWidget &form)
{
    const QWidget *contents = part(form, "Panel1Contents");
    std::vector<std::pair<const char *, QRect>> taken;
    for (const char *name : kLabels) {
        const auto *label = part<QLabel>(form, name);
        const QRect place(label->pos(), room(*label));
        EXPECT_GE(label->width(), place.width()) << name;
        EXPECT_GE(label->height(), place.height()) << name;
        EXPECT_TRUE(contents->rect().contains(place)) << name;
        for (const auto &[other, rect] : taken)
            EXPECT_FALSE(rect.intersects(place)) << name << " runs into " << other;
        taken.emplace_back(name, place);
    }
    const QRect matrix = part(form, "Matrix")->geometry();
    for (const auto &[other, rect] : taken)
        EXPECT_FALSE(rect.intersects(matrix)) << "the matrix runs into " << other;
    EXPECT_TRUE(contents->rect().contains(matrix));
    const auto *footer = part<QLabel>(form, "Panel2");
    EXPECT_GE(footer->height(), footer->heightForWidth(footer->width()));
    EXPECT_EQ(footer->geometry().bottom(), form.height() - 1);
    const auto *header = part<THeader>(form, "Header1");
    EXPECT_GE(header->height(), header->NeededHeight(header->width()));
}

} // namespace

TEST(ReportWindow, HasItsControlsInTheirPlaces)
{
    Fitted fitted = scatteredFit(20, 3);
    showReport(fitted, [](TRegressionOutputForm &form) {
        EXPECT_EQ(form.windowTitle(), QStringLiteral("Multiple Regression Analysis Report"));
        EXPECT_EQ(form.size(), QSize(486, 451));
        EXPECT_EQ(form.minimumSize(), form.maximumSize());
        EXPECT_TRUE(form.font().bold());
        EXPECT_EQ(form.font().pixelSize(), 11);
        const struct
        {
            const char *name;
            QRect place;
        } places[] = {{"TopPanel", {0, 0, 486, 25}},
                      {"Header1", {0, 0, 486, 25}},
                      {"Panel1", {5, 30, 475, 370}},
                      {"labDepVarName", {4, 0, 210, 31}},
                      {"labIndepVarNames", {213, 0, 240, 125}},
                      {"labDataCount", {2, 29, 210, 15}},
                      {"labDOF", {2, 45, 210, 68}},
                      {"labMean", {2, 106, 98, 147}},
                      {"labStdDev", {104, 106, 98, 147}},
                      {"labCoeffs", {213, 130, 95, 129}},
                      {"labStdErrCoeff", {309, 130, 98, 137}},
                      {"labSumSquare", {4, 251, 134, 14}},
                      {"labSSR", {16, 266, 196, 14}},
                      {"labSSE", {16, 280, 196, 14}},
                      {"labSST", {16, 295, 196, 14}},
                      {"labsSquared", {4, 315, 208, 14}},
                      {"labRsqr", {4, 335, 208, 14}},
                      {"labFStat", {4, 350, 208, 17}},
                      {"Matrix", {228, 266, 231, 97}},
                      {"bbtnPrintForm", {39, 402, 87, 28}},
                      {"bbtnPlots", {146, 402, 87, 28}},
                      {"bbtnShowMatrix", {252, 402, 87, 28}},
                      {"bbtnClose", {359, 402, 87, 28}},
                      {"Panel2", {0, 434, 486, 17}}};
        for (const auto &[name, place] : places)
            EXPECT_EQ(part(form, name)->geometry(), place) << name;
        EXPECT_EQ(part(form, "Label1")->pos(), QPoint(10, 312));
        EXPECT_EQ(part(form, "labSquared1")->y(), 328);
        EXPECT_EQ(part(form, "Label1")->font().pixelSize(), 8);
        EXPECT_EQ(text(form, "labSumSquare"), QStringLiteral("Sum of Squares"));
        EXPECT_EQ(part<QPushButton>(form, "bbtnPrintForm")->text(), QStringLiteral("&Print"));
        EXPECT_EQ(part<QPushButton>(form, "bbtnPlots")->text(), QStringLiteral("&Plots"));
        EXPECT_EQ(part<QPushButton>(form, "bbtnShowMatrix")->text(), QStringLiteral("&Matrix"));
        EXPECT_TRUE(part<QPlainTextEdit>(form, "Matrix")->isReadOnly());
        EXPECT_EQ(part(form, "Panel2")->palette().color(QPalette::WindowText), QColor(0x80, 0, 0));
    });
}

TEST(ReportWindow, JoinsCaptionsAndBlocks)
{
    Fitted fitted = scatteredFit(20, 3);
    fitted.table.SetDescription(QStringLiteral("A problem"));
    const nuvo::ReportBlocks blocks = nuvo::reportBlocks(fitted.table);
    const nuvo::WindowTexts window = nuvo::windowTexts(blocks);
    showReport(fitted, [&](TRegressionOutputForm &form) {
        const struct
        {
            const char *label;
            const char *caption;
            QString block;
        } texts[] = {{"labDepVarName", "Dependent Variable: ", blocks.DepVar},
                     {"labIndepVarNames", "Independent Variables: ", blocks.IndepVars},
                     {"labDataCount", "Number of observations: ", blocks.DataCount},
                     {"labDOF", "Degrees of Freedom: ", blocks.DOF},
                     {"labCoeffs", "Coefficients: ", blocks.Coeffs},
                     {"labFStat", "F Statistic", blocks.FStat},
                     {"labtValue", "t* Values", blocks.TValues},
                     {"labSSR", "Regression SSR : ", blocks.SSR},
                     {"labSSE", "Residual      SSE : ", blocks.SSE},
                     {"labSST", "Total            SST : ", window.SST},
                     {"labRsqr", "R  : ", window.RSquared},
                     {"labsSquared", "s   : ", blocks.SSquared},
                     {"labMean", "Mean: ", blocks.Means},
                     {"labStdDev", "Std. Dev. (Data): ", blocks.StdDevs},
                     {"labStdErrCoeff", "Std. Err. (Coeff): ", blocks.StdErrs}};
        for (const auto &[label, caption, block] : texts)
            EXPECT_EQ(text(form, label), DisplayLines(QLatin1String(caption) + block)) << label;
        EXPECT_EQ(memo(form), blocks.CovarianceLines.join(u'\n'));
        const QStringList sections = part<THeader>(form, "Header1")->Sections();
        ASSERT_EQ(sections.size(), 3);
        EXPECT_EQ(sections[0], QStringLiteral("Data: Data"));
        EXPECT_EQ(sections[1], QStringLiteral("A problem"));
        EXPECT_FALSE(sections[2].isEmpty());
        EXPECT_EQ(text(form, "TopPanel"), sections.join(QStringLiteral("  ")));
        EXPECT_EQ(form.VisibleMatrix(), QStringLiteral("Covariance"));
        EXPECT_EQ(form.MatrixSize(), 6);
    });
}

TEST(ReportWindow, WorksOutSstAndRSquaredFromTheRoundedTexts)
{
    TRegressionOutputForm form;
    nuvo::ReportBlocks blocks;
    blocks.SSE = QStringLiteral("0.004");
    blocks.SSR = QStringLiteral("0.001");
    form.Fill(nullptr, QString(), blocks);
    EXPECT_EQ(text(form, "labSST"), QStringLiteral("Total            SST : 0.005"));
    EXPECT_EQ(text(form, "labRsqr"), QStringLiteral("R  : 0.200"));
    EXPECT_EQ(part<THeader>(form, "Header1")->Sections()[0], QStringLiteral("Data: "));
}

TEST(ReportWindow, AQueryIsHeadedByTheFirstLineOfItsStatement)
{
    Fitted fitted = scatteredFit(20, 2);
    Fitted::run(fitted.query, fitted.query);
    const Person person([](QDialog &dialog) {
        EXPECT_EQ(part<THeader>(dialog, "Header1")->Sections()[0], QStringLiteral("Data: SELECT * FROM Data"));
        dialog.close();
    });
    fitted.query.Output();
}

TEST(ReportWindow, AnEmptyMessageKeepsTheFooterAndAnotherReplacesItInTheZoomToo)
{
    Fitted fitted = scatteredFit(20, 2);
    QString designFooter;
    showReport(fitted, [&](TRegressionOutputForm &form) { designFooter = text(form, "Panel2"); });
    EXPECT_FALSE(designFooter.isEmpty());

    const QString message(100, u'm');
    fitted.table.SetReportMessage(message);
    showReport(
        fitted,
        [&](TRegressionOutputForm &form) {
            EXPECT_EQ(text(form, "Panel2"), message);
            chooseMatrix(form, "Zoom1");
        },
        [](QDialog &zoom) {
            EXPECT_EQ(text(zoom, "Panel2"), QString(78, u'm') + QLatin1String("..."));
            click(zoom, "BitBtn1");
        });
    fitted.table.SetReportMessage(QStringLiteral("short"));
    showReport(
        fitted, [&](TRegressionOutputForm &form) { chooseMatrix(form, "Zoom1"); },
        [](QDialog &zoom) {
            EXPECT_EQ(text(zoom, "Panel2"), QStringLiteral("short..."));
            click(zoom, "BitBtn1");
        });
}

TEST(ReportWindow, FourControlsHave8PointLettersAndFive7)
{
    Fitted four = scatteredFit(30, 4);
    showReport(four, [](TRegressionOutputForm &form) {
        EXPECT_EQ(form.MatrixSize(), 7);
        for (const char *label : kLabels)
            EXPECT_EQ(fontPixels(form, label), 11) << label;
        EXPECT_EQ(fontPixels(form, "Matrix"), 11);
    });
    Fitted five = scatteredFit(30, 5);
    showReport(five, [](TRegressionOutputForm &form) {
        EXPECT_EQ(form.MatrixSize(), 8);
        for (const char *label : kLabels)
            EXPECT_EQ(fontPixels(form, label), 9) << label;
        EXPECT_EQ(fontPixels(form, "Matrix"), 9);
    });
}

TEST(ReportWindow, CovarianceAfterCorrelationLeavesTheCorrelationLinesAndZoomsTheCovariance)
{
    Fitted fitted = scatteredFit(20, 2);
    const nuvo::ReportBlocks blocks = nuvo::reportBlocks(fitted.table);
    const QString correlation = blocks.CorrelationLines.join(u'\n');
    showReport(
        fitted,
        [&](TRegressionOutputForm &form) {
            EXPECT_EQ(memo(form), blocks.CovarianceLines.join(u'\n'));
            chooseMatrix(form, "Correlation1");
            EXPECT_EQ(memo(form), correlation);
            EXPECT_EQ(form.VisibleMatrix(), QStringLiteral("Correlation"));
            chooseMatrix(form, "Zoom1");
            chooseMatrix(form, "Covariance1");
            EXPECT_EQ(memo(form), correlation);
            EXPECT_EQ(form.VisibleMatrix(), QStringLiteral("Covariance"));
            chooseMatrix(form, "Zoom1");
        },
        [&](QDialog &zoom) {
            EXPECT_EQ(part<THeader>(zoom, "Header1")->Sections()[0], QStringLiteral("Correlation Matrix"));
            EXPECT_EQ(memo(zoom, "Memo1").section(u'\n', 1), correlation.section(u'\n', 1));
            zoom.accept();
        },
        [&](QDialog &zoom) {
            EXPECT_EQ(part<THeader>(zoom, "Header1")->Sections()[0], QStringLiteral("Covariance Matrix"));
            EXPECT_EQ(memo(zoom, "Memo1").section(u'\n', 1), blocks.CovarianceLines.join(u'\n').section(u'\n', 1));
            zoom.accept();
        });
}

TEST(ReportWindow, StandsInTheMiddleOfTheScreenAndSoDoesTheMatrix)
{
    QWidget behind; // in a corner, and in front of nothing
    behind.setGeometry(0, 0, 60, 40);
    behind.show();
    behind.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&behind));
    const auto inTheMiddle = [](const QWidget &window) {
        const QRect screen = window.screen()->availableGeometry();
        return (QRect(window.pos(), window.size()).center() - screen.center()).manhattanLength() <= 2;
    };
    Fitted fitted = scatteredFit(20, 2);
    showReport(
        fitted,
        [&](TRegressionOutputForm &form) {
            EXPECT_EQ(form.parentWidget(), &behind);
            EXPECT_TRUE(inTheMiddle(form));
            form.move(0, 0);
            chooseMatrix(form, "Zoom1");
        },
        [&](QDialog &matrix) {
            EXPECT_TRUE(inTheMiddle(matrix));
            matrix.close();
        });
}

TEST(ReportWindow, MenusOpenAboveTheMiddleOfTheirButtonAndOnTheRightMouseButton)
{
    Fitted fitted = scatteredFit(20, 2);
    showReport(fitted, [](TRegressionOutputForm &form) {
        form.move(30, 20);
        for (const auto &[button, menuName] :
             {std::pair("bbtnShowMatrix", "MatrixPopup"), std::pair("bbtnPrintForm", "PrintPopup")}) {
            click(form, button);
            QMenu *menu = part<QMenu>(form, menuName);
            EXPECT_EQ(menu->pos(), form.mapToGlobal(part(form, button)->pos() + QPoint(43, -28))) << menuName;
            QTest::keyClick(menu, Qt::Key_Escape);
        }
        for (const auto &[control, menuName] :
             {std::pair("bbtnPlots", "PrintPopup"), std::pair("bbtnPrintForm", "PrintPopup"),
              std::pair("Matrix", "MatrixPopup"), std::pair("labMean", "ReportPopup")}) {
            QWidget *widget = part(form, control);
            if (auto *area = qobject_cast<QAbstractScrollArea *>(widget))
                widget = area->viewport();
            rightClick(widget, QPoint(5, 5));
            QMenu *menu = part<QMenu>(form, menuName);
            EXPECT_TRUE(menu->isVisible()) << control;
            QTest::keyClick(menu, Qt::Key_Escape);
        }
    });
}

TEST(ReportWindow, MenusHaveTheirItemsAndLetters)
{
    Fitted fitted = scatteredFit(20, 2);
    showReport(fitted, [](TRegressionOutputForm &form) {
        const auto items = [&form](const char *menu) {
            QStringList texts;
            for (const QAction *action : part<QMenu>(form, menu)->actions())
                texts += action->isSeparator() ? QStringLiteral("-") : action->text();
            return texts.join(u'|');
        };
        EXPECT_EQ(items("MatrixPopup"), QStringLiteral("Co&variance|Cor&relation|-|&Zoom..."));
        EXPECT_EQ(items("PrintPopup"), QStringLiteral("S&caling|&Setup...|-|&Print"));
        EXPECT_EQ(items("Size1"), QStringLiteral("&None|&Proportional|To &Fit"));
        click(form, "bbtnShowMatrix");
        QTest::keyClick(part<QMenu>(form, "MatrixPopup"), Qt::Key_R);
        EXPECT_EQ(form.VisibleMatrix(), QStringLiteral("Correlation"));
    });
}

TEST(ReportWindow, ScalingIsChosenInTheMenu)
{
    Fitted fitted = scatteredFit(20, 2);
    showReport(fitted, [](TRegressionOutputForm &form) {
        EXPECT_EQ(form.PrintScale(), TPrintScale::poProportional);
        choosePrint(form, "NoScaling1");
        EXPECT_EQ(form.PrintScale(), TPrintScale::poNone);
        choosePrint(form, "ToFit1");
        EXPECT_EQ(form.PrintScale(), TPrintScale::poPrintToFit);
        choosePrint(form, "Proportional1");
        EXPECT_EQ(form.PrintScale(), TPrintScale::poProportional);
    });
}

TEST(ReportWindow, SetupShowsThePrinterDialog)
{
    Fitted fitted = scatteredFit(20, 2);
    showReport(
        fitted, [](TRegressionOutputForm &form) { choosePrint(form, "Setup1"); },
        [](QDialog &setup) {
            EXPECT_NE(qobject_cast<QPrintDialog *>(&setup), nullptr);
            QTest::keyClick(&setup, Qt::Key_Escape);
        });
}

TEST(ReportWindow, PrintsItsImageToAFileWhereThereIsNoPrinterAndIsAsBefore)
{
    Fitted fitted = scatteredFit(20, 2);
    const QTemporaryDir directory;
    const QString file = directory.filePath(QStringLiteral("report.pdf"));
    const QStringList messages = showReport(
        fitted,
        [](TRegressionOutputForm &form) {
            const QImage before = form.grab().toImage();
            choosePrint(form, "Print1");
            EXPECT_TRUE(form.grab().toImage() == before);
            for (const char *button : {"bbtnPrintForm", "bbtnShowMatrix", "bbtnClose", "bbtnPlots", "Header1"})
                EXPECT_TRUE(part(form, button)->isVisible()) << button;
            EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        },
        nameFile(file));
    EXPECT_TRUE(contentOf(file).startsWith("%PDF-"));
    EXPECT_TRUE(messages.isEmpty());
}

TEST(ReportWindow, ThePrintedImageIsWhiteWithoutButtonsAndWithTheHeaderAsALine)
{
    Fitted fitted = scatteredFit(20, 2);
    showReport(fitted, [](TRegressionOutputForm &form) {
        const QImage image = form.PrintImage();
        const double ratio = image.devicePixelRatio();
        EXPECT_EQ(image.size() / ratio, form.size());
        const auto dark = [&](QRect place) {
            int count = 0;
            for (int y = int(place.top() * ratio); y < int((place.bottom() + 1) * ratio); ++y) {
                for (int x = int(place.left() * ratio); x < int((place.right() + 1) * ratio); ++x)
                    count += image.pixel(x, y) != qRgb(255, 255, 255);
            }
            return count;
        };
        EXPECT_GT(dark(QRect(0, 4, 200, 17)), 100) << "the header's line";
        EXPECT_EQ(dark(QRect(0, 402, 486, 28)), 0) << "where the buttons are";
        EXPECT_GT(dark(QRect(0, 434, 486, 17)), 100) << "the footer";
    });
}

TEST(ReportWindow, AFileThatCannotBeWrittenIsAMessageAndTheWindowStays)
{
    Fitted fitted = scatteredFit(20, 2);
    const QTemporaryDir directory;
    const QString nowhere = directory.filePath(QStringLiteral("no/report.pdf"));
    const auto insist = [&](QDialog &dialog) {
        part<QLineEdit>(dialog, "fileNameEdit")->setText(nowhere);
        dialog.done(QDialog::Accepted);
    };
    const QStringList messages = showReport(
        fitted,
        [](TRegressionOutputForm &form) {
            choosePrint(form, "Print1");
            EXPECT_TRUE(part(form, "bbtnClose")->isVisible());
            EXPECT_EQ(QApplication::overrideCursor(), nullptr);
            chooseReport(form, "SaveReport1");
            EXPECT_TRUE(form.isVisible());
        },
        insist, insist);
    ASSERT_EQ(messages.size(), 2);
    for (const QString &message : messages)
        EXPECT_EQ(message, QStringLiteral("Cannot write \"%1\": No such file or directory.").arg(nowhere));
    EXPECT_TRUE(QDir(directory.path()).isEmpty());
}

TEST(ReportWindow, ScalingPlacesTheImageOnThePage)
{
    QImage image(100, 50, QImage::Format_RGB32);
    image.fill(Qt::black);
    // A page of 1000 x 1000 dots, 192 to an inch: two for a pixel of the screen.
    const auto drawnSize = [&](TPrintScale scale) {
        QImage page(1000, 1000, QImage::Format_RGB32);
        page.setDotsPerMeterX(7559);
        page.setDotsPerMeterY(7559);
        page.fill(Qt::white);
        nuvo::printImage(image, scale, page);
        int width = 0;
        int height = 0;
        while (width < 1000 && page.pixel(width, 0) == qRgb(0, 0, 0))
            ++width;
        while (height < 1000 && page.pixel(0, height) == qRgb(0, 0, 0))
            ++height;
        return QSize(width, height);
    };
    EXPECT_EQ(drawnSize(TPrintScale::poNone), QSize(100, 50));
    EXPECT_EQ(drawnSize(TPrintScale::poProportional), QSize(200, 100));
    EXPECT_EQ(drawnSize(TPrintScale::poPrintToFit), QSize(1000, 500));
}

TEST(ReportWindow, PlotsOpenFromItsButton)
{
    Fitted fitted = scatteredFit(20, 2);
    showReport(
        fitted, [](TRegressionOutputForm &form) { click(form, "bbtnPlots"); },
        [&fitted](QDialog &plots) {
            EXPECT_EQ(fitted.table.FPlotForm, &plots);
            QTest::keyClick(&plots, Qt::Key_Escape);
        });
}

TEST(ReportWindow, EscapeReturnAndTheButtonCloseIt)
{
    Fitted fitted = scatteredFit(20, 2);
    const Person person([](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
                        [](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Return); },
                        [](QDialog &dialog) { click(dialog, "bbtnClose"); });
    for (int i = 0; i < 3; ++i)
        fitted.table.Output();
}

TEST(ReportWindow, TabGoesThroughTheButtonsToTheMatrix)
{
    Fitted fitted = scatteredFit(20, 2);
    showReport(fitted, [](TRegressionOutputForm &form) {
        form.activateWindow();
        part(form, "bbtnPrintForm")->setFocus();
        for (const char *next : {"bbtnPlots", "bbtnShowMatrix", "bbtnClose", "Matrix", "bbtnPrintForm"}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            EXPECT_EQ(QApplication::focusWidget()->objectName(), QLatin1String(next));
        }
        for (const char *name : {"bbtnPrintForm", "bbtnPlots", "bbtnShowMatrix", "bbtnClose", "Matrix", "Header1"})
            EXPECT_FALSE(part(form, name)->accessibleName().isEmpty()) << name;
    });
}

TEST(ReportWindow, EveryControlHasANameForScreenReaders)
{
    Fitted fitted = scatteredFit(20, 2);
    showReport(fitted, [](TRegressionOutputForm &form) {
        for (const char *name : {"bbtnPrintForm", "bbtnPlots", "bbtnShowMatrix", "bbtnClose"}) {
            EXPECT_FALSE(part(form, name)->accessibleName().isEmpty()) << name;
            EXPECT_FALSE(part(form, name)->accessibleName().contains(u'&')) << name;
            EXPECT_FALSE(part(form, name)->accessibleDescription().isEmpty()) << name;
        }
        EXPECT_EQ(part(form, "Matrix")->accessibleName(), QStringLiteral("Covariance or correlation matrix"));
        EXPECT_TRUE(part(form, "Header1")->accessibleName().startsWith(QLatin1String("Data: Data; ")));
        for (const char *two : {"Label1", "labSquared1"})
            EXPECT_EQ(part(form, two)->accessibleName(), QStringLiteral("squared"));
    });
}

TEST(ReportWindow, IsDarkOnLightWhateverTheDesktopsColors)
{
    const QPalette before = QApplication::palette();
    const auto restore = qScopeGuard([&before] { QApplication::setPalette(before); });
    QApplication::setPalette(QPalette(QColor(30, 30, 30)));
    ASSERT_GT(QApplication::palette().color(QPalette::WindowText).lightness(), 200);
    const auto readable = [](const QWidget &window) {
        for (const QWidget *widget : window.findChildren<QWidget *>()) {
            if (qobject_cast<const QMenu *>(widget) != nullptr || widget->isWindow())
                continue;
            const QPalette &palette = widget->palette();
            EXPECT_LT(palette.color(widget->foregroundRole()).lightness() + 100,
                      palette.color(widget->backgroundRole()).lightness())
                << widget->objectName().toStdString();
        }
    };
    Fitted fitted = scatteredFit(20, 2);
    showReport(
        fitted,
        [&](TRegressionOutputForm &form) {
            readable(form);
            chooseMatrix(form, "Zoom1");
            click(form, "bbtnPlots");
        },
        [&](QDialog &matrix) {
            readable(matrix);
            matrix.close();
        },
        [&](QDialog &plots) {
            readable(plots);
            plots.close();
        });
}

TEST(ReportWindow, TheLargestFitIsShown)
{
    Fitted fitted = scatteredFit(2501, 10);
    showReport(
        fitted,
        [](TRegressionOutputForm &form) {
            EXPECT_EQ(text(form, "labDataCount"), QStringLiteral("Number of observations: 2500"));
            expectNothingIsCut(form);
            click(form, "bbtnPlots");
        },
        [](QDialog &dialog) {
            click(dialog, "ECDFPlotBtn");
            EXPECT_EQ(dynamic_cast<TMLRPlotForm &>(dialog).CurrentPlot().dots.size(), 2500U);
            EXPECT_TRUE(
                part(dialog, "PlotImage")
                    ->accessibleDescription()
                    .startsWith(QLatin1String("Empirical Cumulative Distribution Function Plot: 2500 dots, ")));
            dialog.close();
        });
}

TEST(ReportWindow, NothingIsCutWithLongNamesAndAnyNumberOfControls)
{
    for (const int m : {0, 4, 5, 10}) {
        QStringList names;
        for (int j = 1; j <= m; ++j)
            names += QStringLiteral("AVERAGE_TEMPERATURE_OF_STATION_%1").arg(j);
        for (const double factor : {1.0, 123456.0}) {
            Fitted fitted(
                30, names, [&](int i, int j) { return scattered(i, j) * factor; },
                QStringLiteral("TOTAL_CONSUMPTION_OF_ENERGY"));
            fitted.table.SetDescription(QStringLiteral("What the households of a district consume in a month, "
                                                       "against temperatures measured around it by some stations"));
            fitted.table.SetReportMessage(QStringLiteral("A message that is longer than the footer is wide, so "
                                                         "that it has to break into two lines at one of its blanks"));
            showReport(fitted, [](TRegressionOutputForm &form) { expectNothingIsCut(form); });
        }
    }
}

TEST(ReportWindow, LineEndsOfTheMessageCountInTheZoomsFooter)
{
    Fitted fitted = scatteredFit(20, 2);
    fitted.table.SetReportMessage(QString(75, u'm') + QLatin1String("\n\rxyz"));
    showReport(
        fitted,
        [&](TRegressionOutputForm &form) {
            EXPECT_EQ(text(form, "Panel2"), QString(75, u'm') + QLatin1String("\nxyz"));
            chooseMatrix(form, "Zoom1");
        },
        [](QDialog &zoom) {
            EXPECT_EQ(text(zoom, "Panel2"), QString(75, u'm') + QLatin1String("\nx..."));
            click(zoom, "BitBtn1");
        });
}

TEST(ReportWindow, AWindowWiderThanTheScreenScrolls)
{
    Fitted fitted(20, {QString(300, u'W')}, scattered);
    showReport(fitted, [](TRegressionOutputForm &form) {
        EXPECT_LE(form.width(), form.screen()->availableSize().width());
        EXPECT_GT(part(form, "Panel1Contents")->width(), form.width());
        const auto *label = part<QLabel>(form, "labIndepVarNames");
        EXPECT_GE(label->width(), room(*label).width());
    });
}

TEST(ReportWindow, FitsWithoutFiguresAreShown)
{
    Fitted exact = scatteredFit(3, 2); // n = m + 1
    showReport(exact, [](TRegressionOutputForm &form) { expectNothingIsCut(form); });
    Fitted one = scatteredFit(1, 1);
    showReport(one, [](TRegressionOutputForm &form) { expectNothingIsCut(form); });
    const Person person([](QDialog &dialog) {
        EXPECT_EQ(text(dialog, "labDataCount"), QStringLiteral("Number of observations: 0"));
        dialog.close();
    });
    TMLRTable never;
    never.Output();
}

TEST(ReportWindow, TheFitMayGoWhileItIsOpen)
{
    auto fitted = std::make_unique<Fitted>(12, controlNames(2), scattered);
    const Person person([&](QDialog &dialog) {
        fitted.reset();
        click(dialog, "bbtnPlots"); // no plots to open any more
        chooseMatrix(dialog, "Correlation1");
        dialog.close();
    });
    fitted->table.Output();
}

TEST(ReportWindow, ClosingTwoHundredTimesLeavesNothing)
{
    Fitted fitted = scatteredFit(12, 2);
    for (int i = 0; i < 200; ++i)
        showReport(fitted, [](TRegressionOutputForm &form) { EXPECT_TRUE(form.isVisible()); });
    for (const QWidget *widget : QApplication::topLevelWidgets())
        EXPECT_EQ(qobject_cast<const TRegressionOutputForm *>(widget), nullptr);
}

TEST(ReportWindow, OpeningTwoHundredTimesWithItsPlotsAndMatrixLeavesNothing)
{
    Fitted fitted = scatteredFit(12, 2);
    const qsizetype before = QApplication::topLevelWidgets().size();
    for (int i = 0; i < 200; ++i) {
        showReport(
            fitted,
            [](TRegressionOutputForm &form) {
                click(form, "bbtnPlots");
                chooseMatrix(form, "Zoom1");
            },
            [](QDialog &plots) {
                click(plots, "ResidualvsInputBtn");
                plots.close();
            },
            [](QDialog &matrix) { matrix.close(); });
        ASSERT_TRUE(fitted.table.FPlotForm.isNull());
    }
    EXPECT_EQ(QApplication::topLevelWidgets().size(), before);
}

TEST(ReportWindow, TheApplicationMayQuitWhileReportAndPlotsAreOpen)
{
    Fitted fitted = scatteredFit(12, 2);
    bool bothWereOpen = false;
    // Real event loops, one in the other.
    SetModalRunner([&](QDialog &dialog) {
        if (qobject_cast<TRegressionOutputForm *>(&dialog) != nullptr)
            QTimer::singleShot(0, &dialog, [&dialog] { click(dialog, "bbtnPlots"); });
        else
            QTimer::singleShot(0, qApp, [&] {
                bothWereOpen =
                    fitted.table.FPlotForm->isVisible() && fitted.table.FPlotForm->parentWidget()->isVisible();
                QApplication::quit();
            });
        return dialog.exec();
    });
    const auto usual = qScopeGuard([] { SetModalRunner({}); });
    bool back = false;
    QTimer::singleShot(0, qApp, [&] {
        fitted.table.Output();
        back = true;
    });
    QApplication::exec();
    EXPECT_TRUE(bothWereOpen);
    EXPECT_TRUE(back);
    EXPECT_TRUE(fitted.table.FPlotForm.isNull());
    for (const QWidget *widget : QApplication::topLevelWidgets())
        EXPECT_FALSE(widget->isVisible()) << widget->objectName().toStdString();
}

TEST(ReportWindow, FiguresHaveTheSystemsDecimalSignAndSavedTextThePoint)
{
    const QLocale before;
    const auto restore = qScopeGuard([&before] { QLocale::setDefault(before); });
    QLocale::setDefault(QLocale(QLocale::German));
    Fitted fitted = scatteredFit(20, 2);
    const QTemporaryDir directory;
    const QString file = directory.filePath(QStringLiteral("r.txt"));
    const nuvo::ReportBlocks comma = nuvo::reportBlocks(fitted.table, u',');
    const nuvo::ReportBlocks point = nuvo::reportBlocks(fitted.table);
    ASSERT_NE(comma.SSE, point.SSE);
    showReport(
        fitted,
        [&](TRegressionOutputForm &form) {
            EXPECT_EQ(text(form, "labSSE"), QStringLiteral("Residual      SSE : ") + comma.SSE);
            EXPECT_EQ(text(form, "labRsqr"), QStringLiteral("R  : ") + nuvo::windowTexts(comma, u',').RSquared);
            EXPECT_TRUE(text(form, "labRsqr").contains(u','));
            EXPECT_TRUE(memo(form).contains(QLatin1String(",")));
            EXPECT_FALSE(memo(form).contains(QLatin1String("."))) << memo(form).toStdString();
            chooseReport(form, "SaveReport1");
            click(form, "bbtnPlots");
        },
        nameFile(file),
        [](QDialog &plots) {
            click(plots, "ECDFPlotBtn");
            EXPECT_EQ(text(plots, "yMaxLabel"), QStringLiteral("3,00"));
            EXPECT_TRUE(part(plots, "PlotImage")->accessibleDescription().contains(QLatin1String("-3,00")));
            plots.close();
        });
    const QString saved = QString::fromUtf8(contentOf(file));
    EXPECT_TRUE(saved.contains(QStringLiteral("SSE : ") + point.SSE));
    EXPECT_FALSE(saved.contains(comma.SSE));
}

TEST(ReportWindow, ThereIsOneAtATimeAndWithoutAnybodyItDoesNotWait)
{
    Fitted fitted = scatteredFit(12, 2);
    showReport(fitted, [&fitted](TRegressionOutputForm &) { fitted.table.Output(); });
    fitted.table.Output();
}

TEST(ReportFiles, SaveReportWritesADocumentOfEachKind)
{
    Fitted fitted = scatteredFit(20, 2);
    fitted.table.SetDescription(QStringLiteral("A <problem> & more"));
    fitted.table.SetReportMessage(QStringLiteral("Checked\n\rtwice"));
    const QTemporaryDir directory;
    const auto file = [&](const char *name) { return directory.filePath(QLatin1String(name)); };
    QSize size;
    const QStringList messages = showReport(
        fitted,
        [&size](TRegressionOutputForm &form) {
            size = form.size();
            for (int i = 0; i < 4; ++i)
                chooseReport(form, "SaveReport1");
            chooseReport(form, "CopyReport1");
        },
        nameFile(file("r.pdf")), nameFile(file("r.html")), nameFile(file("r.txt")), nameFile(file("r.png")));
    EXPECT_TRUE(messages.isEmpty());

    const QByteArray pdf = contentOf(file("r.pdf"));
    EXPECT_TRUE(pdf.startsWith("%PDF-"));
    EXPECT_TRUE(pdf.contains("/ToUnicode")) << "text, not a picture of it";
    EXPECT_FALSE(pdf.contains("/Subtype /Image"));
    EXPECT_EQ(pdf.count("/Type /Page\n"), 1) << "a small report takes one page";

    const QString html = QString::fromUtf8(contentOf(file("r.html")));
    const QString plain = QString::fromUtf8(contentOf(file("r.txt")));
    EXPECT_TRUE(html.contains(QLatin1String("A &lt;problem&gt; &amp; more")));
    EXPECT_TRUE(plain.contains(QLatin1String("A <problem> & more")));
    EXPECT_FALSE(plain.contains(u'\r'));
    const nuvo::ReportBlocks blocks = nuvo::reportBlocks(fitted.table);
    const auto inBoth = [&](const QString &figure) {
        EXPECT_TRUE(html.contains(figure)) << figure.toStdString();
        EXPECT_TRUE(plain.contains(figure)) << figure.toStdString();
    };
    for (const QString &figure :
         {blocks.FStat, blocks.SSE, blocks.Coeffs.section(QLatin1String(": "), -1).trimmed(), QStringLiteral("twice"),
          QStringLiteral("Records: 20 in the dataset, 20 read, 20 used, 0 skipped.")})
        inBoth(figure);
    for (const QStringList &lines : {blocks.CovarianceLines, blocks.CorrelationLines}) {
        for (const QString &figure : lines.last().split(u' ', Qt::SkipEmptyParts))
            inBoth(figure);
    }
    EXPECT_EQ(QImage(file("r.png")).size(), size);
    EXPECT_EQ(QApplication::clipboard()->text(), plain);
    EXPECT_TRUE(QApplication::clipboard()->mimeData()->hasHtml());
}

TEST(ReportFiles, AreWrittenWithoutAWindow)
{
    Fitted fitted = scatteredFit(20, 2);
    const QTemporaryDir directory;
    for (const char *name : {"r.pdf", "r.HTML", "r.htm", "r.txt", "r.png"}) {
        const QString file = directory.filePath(QLatin1String(name));
        nuvo::saveReport(fitted.table, file);
        EXPECT_GT(QFileInfo(file).size(), 500) << name;
    }
    const QString other = directory.filePath(QStringLiteral("r.doc"));
    EXPECT_ANY_THROW(nuvo::saveReport(fitted.table, other));
    EXPECT_FALSE(QFile::exists(other));
    const QString nowhere = directory.filePath(QStringLiteral("no/r.pdf"));
    EXPECT_ANY_THROW(nuvo::saveReport(fitted.table, nowhere));
}
