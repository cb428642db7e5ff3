// SPDX-License-Identifier: MIT
#include "platform/Dataset.h"
#include "present/Forms.h"
#include "present/Mlroutpt.h"
#include "ui_Mlroutpt.h"

#include <QScrollBar>

#include <algorithm>

// Where the report window has its texts.

namespace {

/// A description wider than this breaks into lines instead of widening the window.
constexpr int HeaderLimit = 700;
/// Between columns that were moved.
constexpr int PanelGap = 8;
/// Between columns that stand where their design has them.
constexpr int LeastGap = 2;

/// Room that a label's text takes; the line ends that close a block do not count.
QSize needed(const QLabel &label)
{
    QString text = label.text();
    while (text.endsWith(u'\n'))
        text.chop(1);
    return label.fontMetrics().size(0, text);
}

/// Where a label of the form was placed.
QRect designed(const QWidget &widget)
{
    return widget.property("designed").toRect();
}

} // namespace

void TRegressionOutputForm::SetFonts()
{
    const int points = matrixSize_ > 7 ? 7 : 8;
    for (QLabel *label : ui_->Panel1Contents->findChildren<QLabel *>()) {
        if (label == ui_->Label1 || label == ui_->labSquared1)
            continue;
        QFont resized = label->font();
        resized.setPixelSize(nuvo::pointsToPixels(points));
        label->setFont(resized);
    }
    ui_->Matrix->setFont(nuvo::matrixFont(points));
}

QSize TRegressionOutputForm::LayOutPanel()
{
    const auto place = [](QWidget *widget, int x, int y, const QSize &least) {
        const QRect design = designed(*widget);
        widget->setGeometry(x, y, std::max(design.width(), least.width()), std::max(design.height(), least.height()));
    };
    const auto rightOf = [](std::initializer_list<const QLabel *> labels) {
        int right = 0;
        for (const QLabel *label : labels)
            right = std::max(right, label->x() + needed(*label).width());
        return right;
    };
    // From the left to the right: each column starts where its design has it or, where the texts before it come too
    // near, behind them.
    const auto behind = [&](std::initializer_list<const QLabel *> labels, int design) {
        const int right = rightOf(labels);
        return right + LeastGap <= design ? design : right + PanelGap;
    };
    // From the top down, one below the other.
    const auto below = [](const QLabel *label) { return label->y() + needed(*label).height(); };
    const auto stack = [&](int x, std::initializer_list<QLabel *> labels, int y) {
        for (QLabel *label : labels) {
            y = std::max(y, designed(*label).y());
            place(label, designed(*label).x() + x, y, needed(*label));
            y = below(label);
        }
        return y;
    };

    int y = stack(0, {ui_->labDepVarName, ui_->labDataCount, ui_->labDOF}, 0);
    y = std::max(y, designed(*ui_->labMean).y());
    place(ui_->labMean, designed(*ui_->labMean).x(), y, needed(*ui_->labMean));
    place(ui_->labStdDev, behind({ui_->labMean}, designed(*ui_->labStdDev).x()), y, needed(*ui_->labStdDev));
    y = std::max(below(ui_->labMean), below(ui_->labStdDev));
    const int leftBottom = stack(
        0, {ui_->labSumSquare, ui_->labSSR, ui_->labSSE, ui_->labSST, ui_->labsSquared, ui_->labRsqr, ui_->labFStat},
        y);
    // The twos stay where they were placed; within their labels they stand behind and above the letter that they
    // belong to, of which R is wider than s and lies lower.
    const auto raise = [](QLabel *two, const QLabel *label) {
        constexpr int Above = 3;
        const QPoint corner = label->pos() + designed(*two).topLeft() - designed(*label).topLeft();
        const int letter = label->fontMetrics().horizontalAdvance(label->text().left(1));
        two->setContentsMargins(std::max(0, label->x() + letter - corner.x()),
                                std::max(0, label->y() - Above - corner.y()), 0, 0);
        two->adjustSize();
        two->move(corner);
        two->raise();
    };
    raise(ui_->Label1, ui_->labsSquared);
    raise(ui_->labSquared1, ui_->labRsqr);

    const int names = designed(*ui_->labIndepVarNames).x();
    const int rightShift =
        behind({ui_->labDepVarName, ui_->labDataCount, ui_->labDOF, ui_->labMean, ui_->labStdDev, ui_->labSumSquare,
                ui_->labSSR, ui_->labSSE, ui_->labSST, ui_->labsSquared, ui_->labRsqr, ui_->labFStat},
               names) -
        names;
    y = std::max(stack(rightShift, {ui_->labIndepVarNames}, 0), designed(*ui_->labCoeffs).y());
    int tableBottom = y;
    const QLabel *before = nullptr;
    for (QLabel *label : {ui_->labCoeffs, ui_->labStdErrCoeff, ui_->labtValue}) {
        const int design = designed(*label).x() + rightShift;
        place(label, before == nullptr ? design : behind({before}, design), y, needed(*label));
        tableBottom = std::max(tableBottom, below(label));
        before = label;
    }

    const QRect memo = designed(*ui_->Matrix);
    const QRect panel = designed(*ui_->Panel1Contents);
    const int memoTop = std::max(memo.y(), tableBottom + 4);
    const QSize size(
        std::max(panel.width() + rightShift, rightOf({ui_->labtValue, ui_->labIndepVarNames}) + PanelGap),
        std::max({panel.height(), leftBottom + 4, memoTop + memo.height() + panel.bottom() - memo.bottom()}));
    ui_->Matrix->setGeometry(memo.x() + rightShift, memoTop,
                             size.width() - memo.x() - rightShift - (panel.right() - memo.right()),
                             size.height() - memoTop - (panel.bottom() - memo.bottom()));
    return size;
}

void TRegressionOutputForm::LayOut(const QSize &limit)
{
    const QRect design = designed(*this);
    const QSize contents = LayOutPanel();
    ui_->Panel1Contents->resize(contents);
    const QSize grown = contents - designed(*ui_->Panel1Contents).size();
    const int header = std::clamp(ui_->Header1->NeededWidth(), design.width(), HeaderLimit);
    const int newWidth =
        std::min(std::max(design.width() + grown.width(), header), std::max(design.width(), limit.width()));
    const int wider = newWidth - design.width();

    const int headerMore = std::max({0, ui_->Header1->NeededHeight(newWidth) - designed(*ui_->Header1).height(),
                                     ui_->TopPanel->heightForWidth(newWidth) - designed(*ui_->TopPanel).height()});
    const int footer = std::max(designed(*ui_->Panel2).height(), ui_->Panel2->heightForWidth(newWidth));
    const int others = headerMore + footer - designed(*ui_->Panel2).height();
    // A panel that the screen cannot hold is scrolled, and its scroll bar must not cover what would fit.
    const bool scrolled = design.width() + grown.width() > newWidth;
    const int bar = scrolled ? ui_->Panel1->horizontalScrollBar()->sizeHint().height() : 0;
    const int taller = std::min(grown.height() + bar, std::max(0, limit.height() - design.height() - others));

    const auto moved = [](QWidget *widget, int x, int y, int wide, int high) {
        const QRect place = designed(*widget);
        widget->setGeometry(place.x() + x, place.y() + y, place.width() + wide, place.height() + high);
    };
    moved(ui_->TopPanel, 0, 0, wider, headerMore);
    moved(ui_->Header1, 0, 0, wider, headerMore);
    moved(ui_->Panel1, 0, headerMore, wider, taller);
    // The contents fill a panel that is wider than they need.
    const int spare = ui_->Panel1->width() - 2 * ui_->Panel1->frameWidth() - contents.width();
    if (spare > 0) {
        ui_->Panel1Contents->resize(contents.width() + spare, contents.height());
        ui_->Matrix->resize(ui_->Matrix->width() + spare, ui_->Matrix->height());
    }
    for (QPushButton *button : {ui_->bbtnPrintForm, ui_->bbtnPlots, ui_->bbtnShowMatrix, ui_->bbtnClose, link_})
        moved(button, wider / 2, headerMore + taller, 0, 0);
    moved(ui_->Panel2, 0, headerMore + taller, wider, footer - designed(*ui_->Panel2).height());
    setFixedSize(newWidth, design.height() + taller + others);
}
