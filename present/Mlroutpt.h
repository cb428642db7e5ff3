// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Dataset.h"
#include "platform/Export.h"
#include "present/Figures.h"
#include "present/Reportdocument.h"

#include <QDialog>
#include <QImage>
#include <QPointer>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

class QLabel;
class QMenu;
class QPaintDevice;
class QPlainTextEdit;
class QPrinter;
class QPushButton;
class TRegression;

namespace Ui {
class TRegressionOutputForm;
}

/// How a window is put on paper.
enum class TPrintScale {
    poNone,         ///< a dot of the printer for a pixel
    poProportional, ///< as large as on the screen
    poPrintToFit,   ///< as large as the page takes
};

/// The report window: the blocks of a report below their captions, one of its two matrices, and buttons for the
/// matrices, paper, plots and closing. Its places are fixed as long as the texts have room in them; where one needs
/// more, what stands beside and below moves and the window grows.
class NUVO_EXPORT TRegressionOutputForm : public QDialog
{
    Q_OBJECT

public:
    /// Empty until Open() or Fill().
    explicit TRegressionOutputForm(QWidget *parent = nullptr);
    ~TRegressionOutputForm() override;

    /// Replaces the footer unless the message is empty.
    void SetReportMessage(const QString &message);
    /// What the Plots button does; without it, it shows the plots of the regression that the window was opened with.
    void SetPlots(std::function<void()> plots) { plots_ = std::move(plots); }
    /// What is saved and copied; without them, the figures that the regression has when the window is filled.
    void SetFigures(nuvo::Figures figures) { figures_ = std::move(figures); }

    /// Fills the window and shows it modally. `dataSet` may be nullptr. The texts are those of nuvo::reportBlocks(),
    /// with the decimal sign of the locale.
    void Open(TRegression *dataSet, const QString &description, const QString &depVar, const QString &indepVars,
              const QString &dataCount, const QString &dof, const QString &coeffs, const QString &sSquared,
              const QString &sse, const QString &ssr, const QString &means, const QString &stdDevs,
              const QString &stdErrs, const QString &tValues, const QString &fStat, const QStringList &covarianceList,
              const QStringList &correlationList);
    /// The same without showing it.
    void Fill(TRegression *dataSet, const QString &description, const nuvo::ReportBlocks &blocks);

    /// "Covariance" or "Correlation": the matrix that the memo is said to show.
    const QString &VisibleMatrix() const { return visibleMatrix_; }
    /// Lines of the matrix chosen last.
    int MatrixSize() const { return matrixSize_; }
    /// As the person set it for printing.
    TPrintScale PrintScale() const { return printScale_; }

    /// The window's image as it is printed: no buttons, the header as one line, white.
    QImage PrintImage();
    /// The window's image as it is seen.
    QImage Picture();
    /// Writes the report: .pdf, .html, .txt or, the picture of the window, .png.
    /// \throws EPlatformError as nuvo::saveReportDocument().
    void SaveReport(const QString &file);

    void done(int result) override;

private:
    void SetUpLink();
    void SetUpMenus();
    void SetUpKeys();
    void PopUpAbove(QMenu &menu, const QPushButton &button);
    void ShowMatrix(const QString &name);
    void ZoomClick();
    void PlotsClick();
    void SetupClick();
    void PrintClick();
    void SaveReportClick();
    void CopyReportClick();
    void SetFonts();
    /// Gives every text its room in a window of at most that size.
    void LayOut(const QSize &limit);
    QSize LayOutPanel();

    std::unique_ptr<Ui::TRegressionOutputForm> ui_;
    QPushButton *link_ = nullptr; ///< to all that the fit tells
    std::unique_ptr<QPrinter> printer_;
    std::function<void()> plots_;
    std::optional<nuvo::Figures> figures_; ///< what is saved and copied
    nuvo::ReportTexts texts_;              ///< the same where no regression stands behind the texts
    QPointer<TDataSet> dataSet_;
    QString description_;
    QString footer_; ///< as it was given, line ends included
    QStringList covarianceLines_;
    QStringList correlationLines_;
    QString visibleMatrix_;
    int matrixSize_ = 0;
    TPrintScale printScale_ = TPrintScale::poProportional;
};

namespace nuvo {

/// Shows the report of a regression in a new window and frees it when it is closed. `plots` is what its Plots button
/// does; it is not called after the regression's dataset is gone. There is one report at a time: while one is open it
/// comes to the front instead.
NUVO_EXPORT void showReport(TRegression &regression, const std::function<void()> &plots);

/// Writes the report of a regression: .pdf, .html (.htm) or .txt as a document, .png as the picture of the report
/// window, by the ending, upper or lower case. Needs no display.
/// \throws EPlatformError for another ending and for a file that cannot be written; no partial file is left.
NUVO_EXPORT void saveReport(TRegression &regression, const QString &file);

/// Draws an image on a page, its upper left corner in that of the page. \throws EPlatformError when the page fails.
NUVO_EXPORT void printImage(const QImage &image, TPrintScale scale, QPaintDevice &device);

} // namespace nuvo
