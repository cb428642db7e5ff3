// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "present/statistics/Pagedform.h"

#include <QPointer>

#include <memory>

class QLabel;
class TCorvane;
class TFigureView;
class TModelsPage;
class TPageView;
class TStepsPage;

namespace nuvo {
struct Choice;
struct Figure;
struct Page;
} // namespace nuvo

/// The window of a choice by the textbook's rule: its models or its steps, the criterion by size as a figure, the
/// report, and above and below them what is left and what is worth a warning. "Use this model" puts another model on
/// the component, for as long as there is one, and so does Enter. Ctrl+S saves the table as CSV, or the report (in a
/// figure: the figure).
class NUVO_EXPORT TChoiceForm : public nuvo::PagedForm
{
    Q_OBJECT

public:
    /// Empty until Load() or SetChoice().
    explicit TChoiceForm(QWidget *parent = nullptr);
    ~TChoiceForm() override;

    /// Shows a component's choice, and is ready to put another model on it. \pre selector.Choice()
    void Load(TCorvane &selector);
    /// Shows a choice without a component: there is nothing to put a model on.
    void SetChoice(const nuvo::Choice &choice);

    // The pages: models or steps, figure (of models alone), report.

    TModelsPage &Models() { return *models_; }
    TStepsPage &Steps() { return *steps_; }
    TFigureView &FigureView() { return *figure_; }
    TPageView &Report() { return *report_; }

    /// Puts a model of the list, or the model after a step, on the component. An error becomes a message box.
    void UseModel(int number);

    /// Prints the report on pages of its device.
    void PrintDocument(QPagedPaintDevice &device) const override;
    /// Writes the table by .csv, else the report: .pdf, .html, .txt or .md.
    /// \throws EPlatformError as nuvo::savePage().
    void Save(const QString &file) const;
    /// Onto the clipboard: rows, figure or report, whatever page is shown.
    void Copy() override;

protected:
    void showEvent(QShowEvent *event) override;
    QWidget *ReadingPart(QWidget *page) const override;
    void SaveFile(const QString &file) const override { Save(file); }

private:
    void ShowWarnings();
    nuvo::Page Document() const;

    std::unique_ptr<const nuvo::Choice> choice_;
    QPointer<TCorvane> selector_;
    QLabel *head_;
    TModelsPage *models_;
    TStepsPage *steps_;
    TFigureView *figure_;
    TPageView *report_;
    QLabel *warnings_;
};

namespace nuvo {

/// The criterion of the listed models by their size; each point is a model, its number stands for its record.
NUVO_EXPORT Figure choiceFigure(const Choice &choice);

/// Shows the choice of a component in a new window and frees it when it is closed. There is one such window at a
/// time: while one is open it comes to the front instead. Without a choice a message says so.
NUVO_EXPORT void showChoice(TCorvane &selector);

} // namespace nuvo
