// SPDX-License-Identifier: MIT
#include "present/Report.h"
#include "present/Reportwindow.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QMimeData>
#include <QPrintDialog>
#include <QScopeGuard>
#include <QTemporaryDir>

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
