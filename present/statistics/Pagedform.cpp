// SPDX-License-Identifier: MIT
#include "present/statistics/Pagedform.h"

#include "platform/Messages.h"
#include "platform/Modal.h"
#include "present/Filedialog.h"
#include "present/Forms.h"

#include <QHBoxLayout>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QScopeGuard>
#include <QScreen>
#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>

namespace nuvo {

PagedForm::PagedForm(QWidget *parent, const char *name)
    : QDialog(parent), name_(QLatin1String(name)), pages_(new QTabWidget(this)), column_(new QVBoxLayout)
{
    setObjectName(name_ + QStringLiteral("Form"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setSizeGripEnabled(true);
    pages_->setObjectName(name_ + QStringLiteral("Pages"));
    pages_->setAccessibleName(QStringLiteral("Pages"));
    pages_->setDocumentMode(true);
    auto *all = new QVBoxLayout(this);
    all->addLayout(column_, 1);
    column_->addWidget(pages_, 1);
}

PagedForm::~PagedForm() = default;

void PagedForm::SetUp(const Words &words, QSize usualSize, int mostPages)
{
    words_ = words;
    setUpButtons();
    setUpKeys(mostPages);
    resize(usualSize.boundedTo(screen()->availableSize() * 0.95));
}

void PagedForm::AddPage(QWidget *page, const QString &title)
{
    const int number = pages_->addTab(page, title) + 1;
    pages_->setTabToolTip(number - 1, QStringLiteral("%1 (Alt+%2)").arg(title).arg(number));
}

void PagedForm::setUpButtons()
{
    auto *buttons = new QHBoxLayout;
    const auto addButton = [this, buttons](const QString &objectName, const QString &text, const QString &hint,
                                           const std::function<void()> &handler) {
        auto *button = new QPushButton(text, this);
        button->setObjectName(objectName);
        button->setToolTip(hint);
        button->setAccessibleName(QString(text).remove(u'&').remove(u'…'));
        button->setAccessibleDescription(hint);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [handler] { guarded(handler); });
        buttons->addWidget(button);
    };
    addButton(QStringLiteral("Print") + name_, QStringLiteral("&Print…"), words_.printHint, [this] { printClick(); });
    addButton(QStringLiteral("Save") + name_, QStringLiteral("&Save…"), words_.saveHint, [this] { saveClick(); });
    addButton(QStringLiteral("Copy") + name_, QStringLiteral("&Copy"),
              QStringLiteral("Copy what this page has (Ctrl+C)"), [this] { Copy(); });
    buttons->addStretch(1);
    addButton(name_ + QStringLiteral("Help"), QStringLiteral("&Help"), QStringLiteral("Keys of this window (F1)"),
              [this] { MessageDlg(words_.help, TMsgDlgType::mtInformation); });
    addButton(QStringLiteral("Close") + name_, QStringLiteral("Close"), QStringLiteral("Close this window (Escape)"),
              [this] { reject(); });
    static_cast<QVBoxLayout *>(layout())->addLayout(buttons);
}

void PagedForm::setUpKeys(int mostPages)
{
    const auto on = [this](const QKeySequence &keys, const std::function<void()> &handler) {
        auto *shortcut = new QShortcut(keys, this);
        connect(shortcut, &QShortcut::activated, this, [handler] { guarded(handler); });
    };
    on(QKeySequence::Print, [this] { printClick(); });
    on(QKeySequence::Save, [this] { saveClick(); });
    on(QKeySequence(Qt::Key_F1), [this] { MessageDlg(words_.help, TMsgDlgType::mtInformation); });
    on(QKeySequence(Qt::CTRL | Qt::Key_Tab), [this] { step(1); });
    on(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab), [this] { step(-1); });
    on(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab), [this] { step(-1); });
    for (int page = 0; page < mostPages; ++page)
        on(QKeySequence(Qt::ALT | Qt::Key(Qt::Key_1 + page)), [this, page] { SetPageIndex(page); });
    // Where the focus is in a text, a table or a figure, that has the key.
    on(QKeySequence::Copy, [this] { Copy(); });
}

int PagedForm::PageIndex() const
{
    return pages_->currentIndex();
}

void PagedForm::SetPageIndex(int index)
{
    if (index < 0 || index >= pages_->count())
        return;
    pages_->setCurrentIndex(index);
    ReadingPart(pages_->currentWidget())->setFocus();
}

void PagedForm::step(int way)
{
    SetPageIndex((PageIndex() + way + pages_->count()) % pages_->count());
}

void PagedForm::printClick()
{
    if (printer_ == nullptr) {
        printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
        printer_->setDocName(windowTitle());
        printer_->setPageOrientation(QPageLayout::Landscape); // the tables are wide
    }
    if (printer_->outputFormat() == QPrinter::NativeFormat) {
        const QPointer<PagedForm> here = this;
        const QPointer<QPrintDialog> dialog = new QPrintDialog(printer_.get(), this);
        const auto gone = qScopeGuard([&dialog] { delete dialog; });
        if (ShowModal(*dialog) == QDialog::Accepted && !here.isNull())
            PrintDocument(*printer_);
        return;
    }
    // No printer.
    const QString file =
        askFileName(this, QStringLiteral("Print to a file"), {QStringLiteral("PDF document (*.pdf)")});
    if (!file.isEmpty())
        SaveFile(file);
}

void PagedForm::saveClick()
{
    const QString file = askFileName(this, words_.saveTitle, words_.fileKinds);
    if (!file.isEmpty())
        SaveFile(file);
}

void showOne(QPointer<QDialog> &open, const std::function<QDialog *(QWidget *)> &make)
{
    if (!open.isNull()) {
        open->raise();
        open->activateWindow();
        return;
    }
    // A window in front can take this one along when it goes; what it is made from can go as well.
    const QPointer<QDialog> form = make(windowInFront());
    const auto gone = qScopeGuard([&form] { delete form; });
    open = form;
    centreOnScreen(*form);
    ShowModal(*form);
}

} // namespace nuvo
