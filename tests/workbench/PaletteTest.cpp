// SPDX-License-Identifier: MIT
// Light and dark, switched while the program runs.

#include "Openedwindow.h"

#include "design/sql/Sqldialog.h"
#include "design/sql/Sqleditor.h"
#include "present/figures/Figurespage.h"
#include "present/statistics/Observationspage.h"
#include "workbench/Choicepage.h"
#include "workbench/Csvpreview.h"
#include "workbench/Sitting.h"

#include <QImage>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>

#include <map>
#include <memory>

namespace {

QPalette darkPalette()
{
    QPalette palette(QColor(0x35, 0x35, 0x35), QColor(0x2b, 0x2b, 0x2b));
    palette.setColor(QPalette::Base, QColor(0x23, 0x23, 0x23));
    palette.setColor(QPalette::Link, QColor(0x5c, 0xa8, 0xff));
    palette.setColor(QPalette::PlaceholderText, QColor(0xa0, 0xa0, 0xa0));
    return palette;
}

/// Everything that can be seen at once.
class Shown
{
public:
    Shown()
    {
        opened_.fitLongley();
        opened_.window->findChild<QAbstractButton *>(u("Choose"))->click();
        opened_.pages().Observations().View().selectRow(3);
        QFile file(opened_.folder.filePath(u("some.csv")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("a,b\n1,2\n3,4\n");
        file.close();
        preview_ = std::make_unique<nuvo::CsvPreview>(file.fileName());
        preview_->show();
        sql_ = std::make_unique<TSqlEditor>();
        sql_->SetDatabase(opened_.window->CurrentSitting().State().database);
        sql_->SetText(u("SELECT NULL AS n, 'word' AS w, 1.5 AS x -- a remark"));
        sql_->show();
        sql_->Try();
        while (sql_->Trying())
            QTest::qWait(5);
        opened_.window->findChild<QMenu *>(u("HelpMenu"))->actions().first()->trigger();
    }

    std::map<std::string, QImage> pictures()
    {
        QApplication::processEvents();
        std::map<std::string, QImage> all;
        const auto take = [&all](const std::string &name, QWidget &widget) {
            QApplication::processEvents();
            all[name] = widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
        };
        take("preview", *preview_);
        take("statement", *sql_);
        take("guide", *opened_.window->findChild<QWidget *>(u("Guide")));
        opened_.pages().FiguresPage().SetIndex(0);
        for (int page = 0; page < opened_.pages().count(); ++page) {
            opened_.pages().setCurrentIndex(page);
            take(opened_.pages().tabText(page).toStdString(), *opened_.window);
        }
        for (int figure = 0; figure < int(opened_.pages().FiguresPage().Figures().size()); figure += 2) {
            opened_.pages().FiguresPage().SetIndex(figure);
            take("figure " + std::to_string(figure), opened_.pages().FiguresPage().View());
        }
        return all;
    }

private:
    OpenedWindow opened_;
    std::unique_ptr<nuvo::CsvPreview> preview_;
    std::unique_ptr<TSqlEditor> sql_;
};

/// The share of pixels that are not nearly the same.
double difference(const QImage &one, const QImage &other)
{
    if (one.size() != other.size())
        return 1;
    qint64 different = 0;
    for (int y = 0; y < one.height(); ++y) {
        const auto *const a = reinterpret_cast<const QRgb *>(one.constScanLine(y));
        const auto *const b = reinterpret_cast<const QRgb *>(other.constScanLine(y));
        for (int x = 0; x < one.width(); ++x) {
            if (a[x] != b[x] && std::abs(qRed(a[x]) - qRed(b[x])) + std::abs(qGreen(a[x]) - qGreen(b[x])) +
                                        std::abs(qBlue(a[x]) - qBlue(b[x])) >
                                    24)
                ++different;
        }
    }
    return double(different) / (double(one.width()) * one.height());
}

} // namespace

TEST(Palette, ThatIsSwitchedWhileTheProgramRunsLooksAsFromTheStart)
{
    constexpr double clockTime = 0.0005; // the summary says when the records were read
    std::map<std::string, QImage> light;
    std::map<std::string, QImage> dark;
    std::map<std::string, QImage> lightAgain;
    {
        Shown shown;
        light = shown.pictures();
        QApplication::setPalette(darkPalette());
        dark = shown.pictures();
        QApplication::setPalette(QPalette());
        lightAgain = shown.pictures();
    }
    QApplication::setPalette(darkPalette());
    std::map<std::string, QImage> fromTheStart = Shown().pictures();
    QApplication::setPalette(QPalette());
    ASSERT_GT(light.size(), 12U);
    for (const auto &[name, picture] : dark) {
        EXPECT_GT(difference(picture, light[name]), 0.3) << name;
        EXPECT_LE(difference(picture, fromTheStart[name]), clockTime) << name;
        EXPECT_LE(difference(lightAgain[name], light[name]), clockTime) << name;
    }
}
