// SPDX-License-Identifier: MIT
#include "workbench/Handout.h"

#include "platform/Errors.h"
#include "platform/Modal.h"
#include "present/Filedialog.h"
#include "present/controls/Tablecopy.h"
#include "present/figures/Figurespage.h"
#include "workbench/Pages.h"
#include "workbench/Sitting.h"

#include <QAbstractItemView>
#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QMenu>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QSettings>
#include <QStandardPaths>

namespace nuvo {

namespace {

QString folderKey()
{
    return QStringLiteral("folder");
}

/// Letters and digits, of whatever script, the rest as '-'.
QString fileNameOf(const QString &text)
{
    QString name;
    for (const QChar c : text.left(60)) {
        const bool kept = c.isLetterOrNumber() || c == u'_';
        if (kept || !name.endsWith(u'-'))
            name += kept ? c : QChar(u'-');
    }
    return name;
}

QAction *addAction(QMenu &menu, const QString &text, const QKeySequence &keys, const QString &hint)
{
    QAction *const action = menu.addAction(text);
    action->setShortcut(keys);
    action->setStatusTip(hint);
    action->setToolTip(hint);
    return action;
}

} // namespace

Handout::Handout(Sitting &sitting, Pages &pages, QAbstractItemView &models, QWidget &window)
    : QObject(&window), sitting_(sitting), pages_(pages), models_(models), window_(window)
{
}

void Handout::AddFileActions(QMenu &menu)
{
    const auto add = [&](const QString &text, const QKeySequence &keys, const QString &hint, auto handler) {
        connect(addAction(menu, text, keys, hint), &QAction::triggered, this, handler);
    };
    add(tr("Save &Report…"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S),
        tr("Save summary, diagnostics and figures: PDF, HTML, text or Markdown"), &Handout::SaveReport);
    add(tr("Save &Figure…"), {}, tr("Save the figure that is shown: PNG, SVG or PDF"), &Handout::SaveFigure);
    QMenu *const all = menu.addMenu(tr("Save &All Figures"));
    const auto addFormat = [&](const QString &text, FigureFormat format) {
        connect(all->addAction(text), &QAction::triggered, this,
                [this, format] { WithFit([&] { pages_.FiguresPage().SaveAll(format); }); });
    };
    addFormat(tr("As &PNG…"), FigureFormat::Png);
    addFormat(tr("As &SVG…"), FigureFormat::Svg);
    addFormat(tr("As P&DF…"), FigureFormat::Pdf);
    menu.addSeparator();
    add(tr("Print Previe&w…"), {}, tr("Show the sheets before they are printed"), &Handout::Preview);
    add(tr("&Print…"), QKeySequence::Print, tr("Print summary, diagnostics and figures, on paper or into a PDF file"),
        &Handout::Print);
}

void Handout::AddEditActions(QMenu &menu)
{
    const auto add = [&](const QString &text, const QKeySequence &keys, const QString &hint, auto handler) {
        connect(addAction(menu, text, keys, hint), &QAction::triggered, this, handler);
    };
    add(tr("&Copy Page"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C),
        tr("Copy what the page shows: text and HTML, rows, or the figure"), &Handout::CopyPage);
    add(copyTableText(), QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_C),
        tr("Copy the table of the page, or the models where they have the focus, as text and HTML"),
        [this] { CopyTable(false); });
    add(copyMarkdownText(), {}, tr("Copy the same table as Markdown"), [this] { CopyTable(true); });
}

template <class Task>
void Handout::WithFit(const Task &task)
{
    if (!pages_.HasFit()) {
        Q_EMIT Said(Handout::tr("There is no fit yet: drag a field to Y and others to X1, X2, … first."), true);
        return;
    }
    try {
        task();
    } catch (const EPlatformError &error) {
        Q_EMIT Said(error.Message(), true);
    }
}

QString Handout::Proposed(const QString &what) const
{
    QString folder = QSettings().value(folderKey()).toString();
    if (folder.isEmpty() || !QFileInfo(folder).isDir())
        folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (!QFileInfo(folder).isDir())
        folder = QDir::homePath();
    const ModelState &state = sitting_.State();
    const QString source = fileNameOf(state.isQuery() ? tr("query") : state.table);
    return QDir(folder).filePath(QStringLiteral("%1-%2").arg(source, what));
}

QString Handout::AskName(const QString &title, const QString &kind, const QString &what)
{
    const QString file = askFileName(&window_, title, {kind}, Proposed(what));
    if (!file.isEmpty())
        QSettings().setValue(folderKey(), QFileInfo(file).absolutePath());
    return file;
}

void Handout::Remember(const QString &file)
{
    QSettings().setValue(folderKey(), QFileInfo(file).absolutePath());
    Q_EMIT Said(tr("Saved %1.").arg(file), false);
}

void Handout::SaveReport()
{
    WithFit([this] {
        const QString file = askFileName(
            &window_, tr("Save report"),
            {tr("PDF document (*.pdf)"), tr("HTML page (*.html)"), tr("Plain text (*.txt)"), tr("Markdown (*.md)")},
            Proposed(tr("report")));
        if (file.isEmpty())
            return;
        pages_.SaveReport(file);
        Remember(file);
    });
}

void Handout::SaveFigure()
{
    WithFit([this] {
        TFiguresPage &page = pages_.FiguresPage();
        const Figure &figure = page.View().Figure();
        const QString file =
            askFileName(&window_, tr("Save figure"),
                        {tr("PNG picture (*.png)"), tr("SVG picture (*.svg)"), tr("PDF document (*.pdf)")},
                        Proposed(figureFileName(figure)));
        if (file.isEmpty())
            return;
        FigureSheet sheet;
        sheet.point = QLocale().decimalPoint().front();
        sheet.selected = page.Selected();
        saveFigure(figure, file, sheet);
        Remember(file);
    });
}

void Handout::PrintOn(QPrinter &printer)
{
    if (!pages_.PrintReport(printer))
        throw EPlatformError(printer.outputFileName().isEmpty()
                                 ? tr("The printer did not take the report.")
                                 : tr("Cannot write \"%1\".").arg(printer.outputFileName()));
}

void Handout::Print()
{
    WithFit([this] {
        QPrinter printer(QPrinter::HighResolution);
        printer.setDocName(window_.windowTitle());
        printer.setPageOrientation(QPageLayout::Landscape); // the tables are wide
        if (QPrinterInfo::availablePrinterNames().isEmpty())
            printer.setOutputFileName(Proposed(tr("report")) + QLatin1String(".pdf"));
        QPrintDialog dialog(&printer, &window_);
        dialog.setObjectName(QStringLiteral("PrintDialog"));
        if (ShowModal(dialog) != QDialog::Accepted)
            return;
        PrintOn(printer);
        if (printer.outputFileName().isEmpty())
            Q_EMIT Said(tr("The report was printed."), false);
        else
            Remember(printer.outputFileName());
    });
}

void Handout::Preview()
{
    WithFit([this] {
        QPrinter printer(QPrinter::HighResolution);
        printer.setDocName(window_.windowTitle());
        printer.setPageOrientation(QPageLayout::Landscape);
        QPrintPreviewDialog dialog(&printer, &window_);
        dialog.setObjectName(QStringLiteral("PrintPreview"));
        dialog.resize(window_.size() * 0.9);
        connect(&dialog, &QPrintPreviewDialog::paintRequested, this,
                [this](QPrinter *sheets) { pages_.PrintReport(*sheets); });
        ShowModal(dialog);
    });
}

void Handout::CopyTable(bool asMarkdown)
{
    try {
        const Page::Table table = models_.hasFocus() ? tableOf(models_) : pages_.CurrentTable();
        if (table.columns.isEmpty() || table.rows.isEmpty())
            throw EPlatformError(tr("There is no table to copy on this page."));
        if (asMarkdown)
            copyTableAsMarkdown(table);
        else
            copyTable(table);
        Q_EMIT Said(tr("Copied %n row(s).", nullptr, int(table.rows.size())), false);
    } catch (const EPlatformError &error) {
        Q_EMIT Said(error.Message(), true);
    }
}

void Handout::CopyPage()
{
    try {
        pages_.Copy();
    } catch (const EPlatformError &error) {
        Q_EMIT Said(error.Message(), true);
    }
}

} // namespace nuvo
