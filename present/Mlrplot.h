// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "present/Plotcanvas.h"

#include <QDialog>
#include <QPointer>

#include <memory>

class TRegression;
class QAction;
class QLabel;
class QMenu;

namespace Ui {
class TMLRPlotForm;
}

/// The window of diagnostic plots of a finished regression: the response or the residuals against a control variable,
/// residuals against input order, response and fitted values, and the distribution of the standardised residuals.
/// It works on a copy of the regression's figures, which may change or go while the window is open.
class NUVO_EXPORT TMLRPlotForm : public QDialog
{
    Q_OBJECT

public:
    /// Without figures until they are copied.
    explicit TMLRPlotForm(QWidget *parent = nullptr);
    ~TMLRPlotForm() override;

    /// Copies the figures and shows the window modally. The two differ in the component that they are meant for.
    void TablePlot(TRegression &dataset) { Plot(dataset); }
    /// As TablePlot().
    void QueryPlot(TRegression &dataset) { Plot(dataset); }
    /// Copies the figures, without showing anything.
    void Load(TRegression &dataset);

    // The plots. Each draws on a cleared canvas.

    /// The response against the chosen control variable.
    void ScatterPlot() { Draw(nuvo::scatterPlot(choice_)); }
    /// The residuals in the order of input.
    void ResidualvsInputBtnClick() { Draw(nuvo::InputOrderPlot); }
    /// The residuals against the chosen control variable.
    void ResidualvsIndepVariable() { Draw(nuvo::residualPlot(choice_)); }
    /// The residuals against the response.
    void ResidualvsDepVarBtnClick() { Draw(nuvo::ResponsePlot); }
    /// The residuals against the fitted values.
    void ResidualvsFittedBtnClick() { Draw(nuvo::FittedPlot); }
    /// The distribution of the standardised residuals.
    void ECDFPlotBtnClick() { Draw(nuvo::EcdfPlot); }
    /// No plot: an empty canvas, no figures at the axes, the window's own caption.
    void ResetPlotEnv();
    /// Puts the dots' colour on the colour button and draws the last plot again; after a reset it draws nothing.
    void LastProc();
    /// The code of the plot that is drawn, nuvo::NoPlot for none.
    int Last() const { return last_; }
    /// What is drawn; an empty plot after a reset.
    const nuvo::Plot &CurrentPlot() const { return plot_; }

    // Drawing.

    /// Writes the figures at the ends of the axes with 7 significant digits and so many decimals.
    void SetAxes(double xMinValue, double xMaxValue, double yMinValue, double yMaxValue, unsigned short xDigits,
                 unsigned short yDigits);
    /// Brings what was drawn to the screen.
    void SetCanvas();
    /// Fills the canvas.
    void SetCanvasColor(const QColor &color);
    /// What the plots are drawn on.
    const nuvo::PlotCanvas &Canvas() const { return canvas_; }

    static void EnableMenuItem(QAction &item, bool enabled);
    /// Shows the application's hint in the status bar and, while there is none, what the plot has to say.
    void ShowHint();

protected:
    bool event(QEvent *event) override;

private:
    void Plot(TRegression &dataset);
    void Draw(int code);
    void SetUpMenus();
    void PopUpBelow(QMenu &menu, const QWidget &button);
    void SetDotColor(const QColor &color);
    void ShowDotColor();
    void MakeRoomForFigures();
    void SavePlotClick();
    void CopyPlotClick();

    std::unique_ptr<Ui::TMLRPlotForm> ui_;
    nuvo::PlotData data_;
    nuvo::PlotCanvas canvas_;
    nuvo::Plot plot_;
    int choice_ = 1; ///< the control variable that is plotted
    int last_ = nuvo::NoPlot;
    QChar point_;
};

namespace nuvo {

/// Shows the plots of a regression in a new window and frees it when it is closed. `window` is that window meanwhile.
/// There is one set of plots at a time: while one is open it comes to the front instead.
NUVO_EXPORT void showPlots(TRegression &regression, QPointer<TMLRPlotForm> &window);

} // namespace nuvo
