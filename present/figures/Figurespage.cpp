// SPDX-License-Identifier: MIT
#include "present/figures/Figurespage.h"

#include "platform/Messages.h"
#include "platform/Modal.h"
#include "present/Forms.h"

#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QScopeGuard>
#include <QShortcut>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

/// Asks where pictures of these names are in the folder.
bool mayReplace(const std::vector<nuvo::Figure> &figures, const QString &folder, nuvo::FigureFormat format)
{
    const char *const endings[] = {".png", ".svg", ".pdf"};
    int there = 0;
    for (const nuvo::Figure &figure : figures)
        there += QFileInfo::exists(
                     QDir(folder).filePath(nuvo::figureFileName(figure) + QLatin1String(endings[int(format)])))
                     ? 1
                     : 0;
    return there == 0 || MessageDlg(TFiguresPage::tr("%n of the pictures are in this folder already. Replace them?",
                                                     nullptr, there),
                                    TMsgDlgType::mtConfirmation, mbYes | mbNo) == mrYes;
}

} // namespace

TFiguresPage::TFiguresPage(QWidget *parent)
    : QWidget(parent), chooser_(new QComboBox(this)), previous_(new QToolButton(this)), next_(new QToolButton(this)),
      saveAll_(new QPushButton(tr("Save A&ll"), this)), view_(new TFigureView(this))
{
    chooser_->setObjectName(QStringLiteral("FigureChooser"));
    chooser_->setAccessibleName(tr("Figure"));
    chooser_->setMaxVisibleItems(20);
    // A long term name must not make the window wide.
    chooser_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    chooser_->setMinimumContentsLength(18);
    auto *label = new QLabel(tr("Fi&gure:"), this);
    label->setBuddy(chooser_);
    const auto setUp = [this](QToolButton *button, const char *name, Qt::ArrowType arrow, const QString &hint,
                              int way, Qt::Key key) {
        button->setObjectName(QLatin1String(name));
        button->setArrowType(arrow);
        button->setToolTip(hint);
        button->setAccessibleName(hint);
        button->setFocusPolicy(Qt::StrongFocus);
        const auto go = [this, way] { SetIndex(Index() + way); };
        connect(button, &QToolButton::clicked, this, go);
        auto *shortcut = new QShortcut(QKeySequence(key), this);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, go);
    };
    setUp(previous_, "PreviousFigure", Qt::LeftArrow, tr("Previous figure (Page Up)"), -1, Qt::Key_PageUp);
    setUp(next_, "NextFigure", Qt::RightArrow, tr("Next figure (Page Down)"), 1, Qt::Key_PageDown);
    saveAll_->setObjectName(QStringLiteral("SaveFigures"));
    saveAll_->setAutoDefault(false);
    saveAll_->setToolTip(tr("Save all figures into a folder"));
    auto *formats = new QMenu(this);
    formats->setObjectName(QStringLiteral("SaveFiguresMenu"));
    const auto addFormat = [&](const QString &text, nuvo::FigureFormat format) {
        formats->addAction(text, this, [this, format] { SaveAll(format); });
    };
    addFormat(tr("As &PNG…"), nuvo::FigureFormat::Png);
    addFormat(tr("As &SVG…"), nuvo::FigureFormat::Svg);
    addFormat(tr("As P&DF…"), nuvo::FigureFormat::Pdf);
    saveAll_->setMenu(formats);
    view_->setObjectName(QStringLiteral("FigureView"));

    auto *top = new QHBoxLayout;
    top->addWidget(label);
    top->addWidget(chooser_, 1);
    top->addWidget(previous_);
    top->addWidget(next_);
    top->addSpacing(12);
    top->addWidget(saveAll_);
    auto *all = new QVBoxLayout(this);
    all->addLayout(top);
    all->addWidget(view_, 1);

    connect(chooser_, &QComboBox::currentIndexChanged, this, &TFiguresPage::ShowChosen);
    connect(view_, &TFigureView::SelectionChanged, this, &TFiguresPage::SelectionChanged);
    SetFigures({});
}

void TFiguresPage::SetFigures(std::vector<nuvo::Figure> figures)
{
    const nuvo::Figure before = view_->Figure();
    figures_ = std::move(figures);
    const auto same = std::find_if(figures_.begin(), figures_.end(), [&](const nuvo::Figure &figure) {
        return figure.kind == before.kind && figure.term == before.term;
    });
    {
        const QSignalBlocker quiet(chooser_);
        chooser_->clear();
        for (const nuvo::Figure &figure : figures_)
            chooser_->addItem(figure.title);
        chooser_->setCurrentIndex(same != figures_.end() && !before.title.isEmpty()
                                      ? int(same - figures_.begin())
                                      : std::min(0, int(figures_.size()) - 1));
    }
    ShowChosen();
}

int TFiguresPage::Index() const
{
    return chooser_->currentIndex();
}

void TFiguresPage::SetIndex(int index)
{
    if (index >= 0 && index < int(figures_.size()))
        chooser_->setCurrentIndex(index);
}

void TFiguresPage::ShowChosen()
{
    const int index = Index();
    const bool any = index >= 0;
    nuvo::Figure none;
    none.note = tr("There are no figures.");
    view_->SetFigure(any ? figures_[std::size_t(index)] : none);
    chooser_->setEnabled(any);
    saveAll_->setEnabled(any);
    previous_->setEnabled(index > 0);
    next_->setEnabled(any && index + 1 < int(figures_.size()));
}

void TFiguresPage::SaveAll(nuvo::FigureFormat format)
{
    nuvo::guarded([this, format] {
        const QPointer<TFiguresPage> here = this;
        const QPointer<QFileDialog> dialog = new QFileDialog(this, tr("Folder for the Figures"));
        const auto gone = qScopeGuard([&dialog] { delete dialog; });
        dialog->setFileMode(QFileDialog::Directory);
        dialog->setOption(QFileDialog::ShowDirsOnly);
        if (ShowModal(*dialog) != QDialog::Accepted || dialog.isNull() || here.isNull())
            return;
        const QString folder = dialog->selectedFiles().value(0);
        if (mayReplace(figures_, folder, format) && here)
            nuvo::saveFigures(figures_, folder, format);
    });
}
