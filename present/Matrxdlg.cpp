// SPDX-License-Identifier: MIT
#include "present/Matrxdlg.h"

#include "platform/Messages.h"
#include "platform/Modal.h"
#include "present/Forms.h"
#include "ui_Matrxdlg.h"

#include <QScreen>
#include <QScrollBar>

#include <algorithm>

TAnalysisMatrix::TAnalysisMatrix(QWidget *parent) : QDialog(parent), ui_(std::make_unique<Ui::TAnalysisMatrix>())
{
    setFont(nuvo::formFont());
    ui_->setupUi(this);
    ui_->Panel2->setTextFormat(Qt::PlainText);
    ui_->Memo1->setPalette(nuvo::paperPalette());
    connect(ui_->BitBtn1, &QPushButton::clicked, this, &QDialog::accept);
}

TAnalysisMatrix::~TAnalysisMatrix() = default;

void TAnalysisMatrix::Open(const QStringList &list, const QString &title, const QString &description,
                           const QString &message)
{
    ui_->Header1->SetSections({title, DisplayLines(description)}, {ui_->Header1->width() / 3});
    ui_->Panel2->setText(DisplayLines(message.left(78) + QLatin1String("...")));
    ui_->Memo1->setFont(nuvo::matrixFont(list.size() > 8 ? 6 : list.size() >= 7 ? 7 : 8));
    QStringList lines = list;
    if (!lines.isEmpty())
        lines.first() = QStringLiteral(" ");
    ui_->Memo1->setPlainText(lines.join(u'\n'));
    ui_->Memo1->setAccessibleName(title);
    LayOut();
    nuvo::centreOnScreen(*this);
    ShowModal(*this);
}

void TAnalysisMatrix::LayOut()
{
    // Wide matrices and long texts make the dialog grow as far as the screen goes.
    const QSize screenSize = screen()->availableSize();
    const int bar = ui_->Memo1->verticalScrollBar()->sizeHint().width();
    const int lines = nuvo::neededSize(*ui_->Memo1).width() + bar;
    const int wider =
        std::clamp(std::max(lines - ui_->Memo1->width(), ui_->Header1->NeededWidth() - ui_->Header1->width()), 0,
                   std::max(0, screenSize.width() - width()));
    const int newWidth = width() + wider;
    const int header = std::max(ui_->Header1->height(), ui_->Header1->NeededHeight(newWidth));
    const int footer = std::max(ui_->Panel2->height(), ui_->Panel2->heightForWidth(newWidth));
    const int down = header - ui_->Header1->height();
    const int higher = down + footer - ui_->Panel2->height();

    ui_->Header1->resize(newWidth, header);
    ui_->Memo1->setGeometry(ui_->Memo1->x(), ui_->Memo1->y() + down, ui_->Memo1->width() + wider,
                            ui_->Memo1->height());
    ui_->BitBtn1->move(ui_->BitBtn1->x() + wider / 2, ui_->BitBtn1->y() + down);
    ui_->Panel2->setGeometry(0, ui_->Panel2->y() + down, newWidth, footer);
    setFixedSize(newWidth, height() + higher);
}
