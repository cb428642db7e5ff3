// SPDX-License-Identifier: MIT
#pragma once

#include "present/Fitted.h"
#include "present/Mlroutpt.h"
#include "present/Windowtest.h"
#include "present/controls/Headerbar.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

// The report window as a person meets it.

inline TRegressionOutputForm &reportForm(QDialog &dialog)
{
    return dynamic_cast<TRegressionOutputForm &>(dialog);
}

inline QString text(const QWidget &window, const char *label)
{
    return part<QLabel>(window, label)->text();
}

inline QString memo(const QWidget &window, const char *name = "Matrix")
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

inline void chooseMatrix(const QWidget &form, const char *item)
{
    click(form, "bbtnShowMatrix");
    choose(form, "MatrixPopup", item);
}

inline void choosePrint(const QWidget &form, const char *item)
{
    click(form, "bbtnPrintForm");
    choose(form, "PrintPopup", item);
}

inline void chooseReport(QWidget &form, const char *item)
{
    rightClick(part(form, "Panel2"), QPoint(5, 5));
    choose(form, "ReportPopup", item);
}

inline std::function<void(QDialog &)> nameFile(const QString &file)
{
    return [file](QDialog &dialog) {
        auto *edit = part<QLineEdit>(dialog, "fileNameEdit");
        edit->setText(file);
        QTest::keyClick(edit, Qt::Key_Return);
    };
}

inline QByteArray contentOf(const QString &file)
{
    QFile stream(file);
    EXPECT_TRUE(stream.open(QIODevice::ReadOnly)) << file.toStdString();
    return stream.readAll();
}

inline constexpr const char *kLabels[] = {"labDepVarName", "labIndepVarNames", "labDataCount", "labDOF",
                                          "labMean",       "labStdDev",        "labCoeffs",    "labStdErrCoeff",
                                          "labtValue",     "labSumSquare",     "labSSR",       "labSSE",
                                          "labSST",        "labsSquared",      "labRsqr",      "labFStat"};

inline int fontPixels(const QWidget &form, const char *name)
{
    return part(form, name)->font().pixelSize();
}

/// Room that a label's lines take.
inline QSize room(const QLabel &label)
{
    QString lines = label.text();
    while (lines.endsWith(u'\n'))
        lines.chop(1);
    return label.fontMetrics().size(0, lines);
}

/// No text is cut and none runs into another.
inline void expectNothingIsCut(const QWidget &form)
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
