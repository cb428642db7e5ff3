// SPDX-License-Identifier: MIT
#include "present/Mlrplot.h"

#include "engine/Regression.h"
#include "platform/Messages.h"
#include "platform/Modal.h"
#include "present/Filedialog.h"
#include "present/Forms.h"
#include "present/Pictures.h"
#include "present/Plotfile.h"
#include "present/controls/Hint.h"
#include "ui_Mlrplot.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QInputDialog>
#include <QLocale>
#include <QMenu>
#include <QScopeGuard>
#include <QStatusTipEvent>

#include <algorithm>
#include <array>
#include <optional>

namespace {

constexpr int UsualPictureWidth = 800;

/// Colours as blue-green-red numbers, as the forms' own are given.
QColor bgr(unsigned value)
{
    return QColor(int(value & 0xff), int(value >> 8 & 0xff), int(value >> 16 & 0xff));
}

std::array<QAction *, MaxControls> scatterItems(const Ui::TMLRPlotForm &ui)
{
    return {ui.X011, ui.X021, ui.X031, ui.X041, ui.X051, ui.X061, ui.X071, ui.X081, ui.X091, ui.X101};
}

std::array<QAction *, MaxControls> residualItems(const Ui::TMLRPlotForm &ui)
{
    return {ui.X012, ui.X022, ui.X032, ui.X042, ui.X052, ui.X062, ui.X072, ui.X082, ui.X092, ui.X102};
}

void setUpButton(QToolButton &button, const QString &hint, std::optional<nuvo::Picture> picture)
{
    button.setToolTip(ShortHint(hint));
    button.setStatusTip(LongHint(hint));
    button.setAccessibleName(ShortHint(hint));
    if (picture)
        button.setIcon(nuvo::drawPicture(*picture, button.devicePixelRatioF(), nuvo::isDark(button.palette())));
}

} // namespace

TMLRPlotForm::TMLRPlotForm(QWidget *parent)
    : QDialog(parent), ui_(std::make_unique<Ui::TMLRPlotForm>()), point_(QLocale().decimalPoint().front())
{
    setFont(nuvo::formFont());
    ui_->setupUi(this);
    setFixedSize(size());
    ui_->StatusBar->setTextFormat(Qt::PlainText);
    ui_->PlotImage->setContextMenuPolicy(Qt::CustomContextMenu);
    ui_->PlotImage->setAccessibleName(QStringLiteral("Plot"));

    using nuvo::Picture;
    setUpButton(*ui_->ScatterButton, QStringLiteral("Draw Scatter Plot|"), Picture::Scatter);
    setUpButton(*ui_->ResidualvsInputBtn, QStringLiteral("Draw Residual vs. Input Order|"), Picture::ResidualInput);
    setUpButton(*ui_->ResidualvsIndepVarBtn, QStringLiteral("Draw Residual vs. Independent Variable|"),
                Picture::ResidualControl);
    setUpButton(*ui_->ResidualvsDepVarBtn, QStringLiteral("Draw Residual vs. Dependent Variable|"),
                Picture::ResidualResponse);
    setUpButton(*ui_->ResidualvsFittedBtn, QStringLiteral("Draw Residual vs. Fitted Variable|"),
                Picture::ResidualFitted);
    setUpButton(*ui_->ECDFPlotBtn, QStringLiteral("Draw Empirical Cumulative Distribution Function Plot|"),
                Picture::Ecdf);
    setUpButton(*ui_->ResetButton, QStringLiteral("Clear Plot|"), Picture::Clear);
    setUpButton(*ui_->ColorBtn, QStringLiteral("Set Plot Colors|"), {});
    nuvo::giveLightGround(*ui_->ColorBtn); // its letters have the colour of the dots
    setUpButton(*ui_->CloseButton, QStringLiteral("Close Plot Form|"), Picture::Close);

    const auto onClick = [this](QToolButton *button, void (TMLRPlotForm::*handler)()) {
        connect(button, &QToolButton::clicked, this, [this, handler] { nuvo::guarded([&] { (this->*handler)(); }); });
    };
    onClick(ui_->ResidualvsInputBtn, &TMLRPlotForm::ResidualvsInputBtnClick);
    onClick(ui_->ResidualvsDepVarBtn, &TMLRPlotForm::ResidualvsDepVarBtnClick);
    onClick(ui_->ResidualvsFittedBtn, &TMLRPlotForm::ResidualvsFittedBtnClick);
    onClick(ui_->ECDFPlotBtn, &TMLRPlotForm::ECDFPlotBtnClick);
    onClick(ui_->ResetButton, &TMLRPlotForm::ResetPlotEnv);
    connect(ui_->CloseButton, &QToolButton::clicked, this, &QDialog::close);
    connect(ui_->ScatterButton, &QToolButton::clicked, this, [this] {
        nuvo::guarded([this] {
            SetApplicationHint(QStringLiteral("Scatter Plots"));
            PopUpBelow(*ui_->ScatterPopup, *ui_->ScatterButton);
        });
    });
    connect(ui_->ResidualvsIndepVarBtn, &QToolButton::clicked, this, [this] {
        nuvo::guarded([this] {
            SetApplicationHint(QStringLiteral("Independent Variable Residual Analysis"));
            PopUpBelow(*ui_->ResidualPopup, *ui_->ResidualvsIndepVarBtn);
        });
    });
    connect(ui_->ColorBtn, &QToolButton::clicked, this, [this] { PopUpBelow(*ui_->ColorPopup, *ui_->ColorBtn); });
    nuvo::markFocus(*this);
    SetUpMenus();

    SetApplicationHint(QString());
    SetHintHandler(this, [this] { ShowHint(); });
    ShowDotColor();
    SetCanvas();
}

TMLRPlotForm::~TMLRPlotForm() = default;

void TMLRPlotForm::SetUpMenus()
{
    const auto items = [this](QMenu *menu, const std::array<QAction *, MaxControls> &actions,
                              void (TMLRPlotForm::*draw)()) {
        connect(menu, &QMenu::aboutToShow, this, [this, actions] {
            nuvo::guarded([&] {
                ResetPlotEnv();
                for (int j = 1; j <= MaxControls; ++j)
                    EnableMenuItem(*actions[j - 1], data_.m >= j);
            });
        });
        for (int j = 1; j <= MaxControls; ++j)
            connect(actions[j - 1], &QAction::triggered, this, [this, j, draw] {
                nuvo::guarded([&] {
                    choice_ = j;
                    (this->*draw)();
                });
            });
    };
    items(ui_->ScatterPopup, scatterItems(*ui_), &TMLRPlotForm::ScatterPlot);
    items(ui_->ResidualPopup, residualItems(*ui_), &TMLRPlotForm::ResidualvsIndepVariable);

    // Nothing is pointed at any more.
    for (QMenu *menu : {ui_->ScatterPopup, ui_->ResidualPopup, ui_->ColorPopup, ui_->CanvasPopup})
        connect(menu, &QMenu::aboutToHide, this, [] { SetApplicationHint(QString()); });

    // Qt sends the status tip of a submenu to the submenu, where it ends.
    const auto hint = [this](const QMenu *submenu, const QString &text) {
        connect(submenu->menuAction(), &QAction::hovered, this, [text] { SetApplicationHint(text); });
    };
    hint(ui_->Plots1, QStringLiteral("Set color of plot scatter dots"));
    hint(ui_->Background1, QStringLiteral("Set plot background colors"));
    const std::pair<QAction *, unsigned> dots[] = {{ui_->mnuBlack, 0x000000},
                                                   {ui_->mnuMaroon, 0x000080},
                                                   {ui_->mnuGray, 0x808080},
                                                   {ui_->mnuBlue, 0x800000},
                                                   {ui_->mnuGreen, 0x008000}};
    for (const auto &[action, color] : dots)
        connect(action, &QAction::triggered, this,
                [this, value = color] { nuvo::guarded([&] { SetDotColor(bgr(value)); }); });
    const std::pair<QAction *, unsigned> grounds[] = {
        {ui_->White1, 0xFFFFFF}, {ui_->Yellow1, 0x00FFFF}, {ui_->Aqua1, 0xFFFF00}, {ui_->Teal1, 0x808000}};
    for (const auto &[action, color] : grounds)
        connect(action, &QAction::triggered, this, [this, value = color] {
            nuvo::guarded([&] {
                SetCanvasColor(bgr(value));
                SetCanvas();
                LastProc();
            });
        });

    connect(ui_->PlotImage, &QWidget::customContextMenuRequested, this, [this](const QPoint &point) {
        EnableMenuItem(*ui_->SavePlot1, !plot_.caption.isEmpty());
        EnableMenuItem(*ui_->CopyPlot1, !plot_.caption.isEmpty());
        ui_->CanvasPopup->popup(ui_->PlotImage->mapToGlobal(point));
    });
    connect(ui_->SavePlot1, &QAction::triggered, this, [this] { nuvo::guarded([this] { SavePlotClick(); }); });
    connect(ui_->CopyPlot1, &QAction::triggered, this, [this] { nuvo::guarded([this] { CopyPlotClick(); }); });
}

void TMLRPlotForm::PopUpBelow(QMenu &menu, const QWidget &button)
{
    menu.popup(button.mapToGlobal(QPoint(button.width() / 2, button.height())));
}

void TMLRPlotForm::Load(TRegression &dataset)
{
    data_ = nuvo::plotData(dataset);
    MakeRoomForFigures();
    ResetPlotEnv();
    SetAxes(data_.xRange[1].min, data_.xRange[1].max, data_.yRange.min, data_.yRange.max, 2, 2);
}

void TMLRPlotForm::Plot(TRegression &dataset)
{
    Load(dataset);
    nuvo::centreOnScreen(*this);
    ShowModal(*this);
}

void TMLRPlotForm::MakeRoomForFigures()
{
    int needed = 0;
    for (const double value : {data_.yRange.min, data_.yRange.max, data_.eRange.min, data_.eRange.max})
        needed = std::max(needed, ui_->yMaxLabel->fontMetrics().horizontalAdvance(nuvo::axisText(value, 2, point_)));
    const int more = needed - ui_->yMinLabel->width();
    if (more <= 0)
        return;
    for (QWidget *label : {ui_->yMinLabel, ui_->yMaxLabel})
        label->resize(label->width() + more, label->height());
    for (QWidget *moved : {static_cast<QWidget *>(ui_->PlotImage), static_cast<QWidget *>(ui_->xMinLabel),
                           static_cast<QWidget *>(ui_->xMaxLabel)})
        moved->move(moved->x() + more, moved->y());
    setFixedSize(width() + more, height());
    for (QWidget *wide : {static_cast<QWidget *>(ui_->Panel1), static_cast<QWidget *>(ui_->Panel2),
                          static_cast<QWidget *>(ui_->StatusBar)})
        wide->resize(wide->width() + more, wide->height());
}

void TMLRPlotForm::Draw(int code)
{
    ResetPlotEnv();
    plot_ = nuvo::makePlot(data_, code);
    if (plot_.caption.isEmpty())
        return;
    setWindowTitle(plot_.caption);
    SetAxes(plot_.axes.xMin, plot_.axes.xMax, plot_.axes.yMin, plot_.axes.yMax,
            static_cast<unsigned short>(plot_.axes.xDigits), static_cast<unsigned short>(plot_.axes.yDigits));
    canvas_.DrawDots(plot_);
    SetCanvas();
    last_ = code;
    // What the plot has to say must not hide behind the hint of the menu item that asked for it.
    if (plot_.note.isEmpty())
        ShowHint();
    else
        SetApplicationHint(QString());
}

void TMLRPlotForm::ResetPlotEnv()
{
    setWindowTitle(QStringLiteral("Multiple Regression Plot Form"));
    for (QLabel *label : {ui_->xMinLabel, ui_->xMaxLabel, ui_->yMinLabel, ui_->yMaxLabel})
        label->clear();
    plot_ = {};
    SetCanvasColor(canvas_.CanvasColor());
    SetCanvas();
    last_ = nuvo::NoPlot;
    ShowHint();
}

void TMLRPlotForm::LastProc()
{
    ShowDotColor();
    if (last_ != nuvo::NoPlot)
        Draw(last_);
}

void TMLRPlotForm::SetDotColor(const QColor &color)
{
    canvas_.SetDotColor(color);
    LastProc();
}

void TMLRPlotForm::ShowDotColor()
{
    QPalette palette = ui_->ColorBtn->palette();
    palette.setColor(QPalette::ButtonText, canvas_.DotColor());
    ui_->ColorBtn->setPalette(palette);
}

void TMLRPlotForm::SetAxes(double xMinValue, double xMaxValue, double yMinValue, double yMaxValue,
                           unsigned short xDigits, unsigned short yDigits)
{
    ui_->xMinLabel->setText(nuvo::axisText(xMinValue, xDigits, point_));
    ui_->xMaxLabel->setText(nuvo::axisText(xMaxValue, xDigits, point_));
    ui_->yMinLabel->setText(nuvo::axisText(yMinValue, yDigits, point_));
    ui_->yMaxLabel->setText(nuvo::axisText(yMaxValue, yDigits, point_));
}

void TMLRPlotForm::SetCanvas()
{
    ui_->PlotImage->SetImage(canvas_.Image());
    ui_->PlotImage->setAccessibleDescription(nuvo::plotInWords(plot_, point_));
}

void TMLRPlotForm::SetCanvasColor(const QColor &color)
{
    canvas_.SetCanvasColor(color);
}

void TMLRPlotForm::EnableMenuItem(QAction &item, bool enabled)
{
    item.setEnabled(enabled);
}

void TMLRPlotForm::ShowHint()
{
    const QString hint = ApplicationHint();
    ui_->StatusBar->setText(hint.isEmpty() ? plot_.note : hint);
}

bool TMLRPlotForm::event(QEvent *event)
{
    if (event->type() == QEvent::StatusTip) {
        SetApplicationHint(static_cast<QStatusTipEvent *>(event)->tip());
        return true;
    }
    return QDialog::event(event);
}

void TMLRPlotForm::SavePlotClick()
{
    const QString file =
        nuvo::askFileName(this, QStringLiteral("Save plot"),
                          {QStringLiteral("PNG picture (*.png)"), QStringLiteral("SVG drawing (*.svg)")});
    if (file.isEmpty())
        return;
    int width = UsualPictureWidth;
    if (QFileInfo(file).suffix().toLower() == QLatin1String("png")) {
        const QPointer<QInputDialog> dialog = new QInputDialog(this);
        const auto gone = qScopeGuard([&dialog] { delete dialog; });
        dialog->setWindowTitle(QStringLiteral("Save plot"));
        dialog->setLabelText(QStringLiteral("&Width in pixels:"));
        dialog->setInputMode(QInputDialog::IntInput);
        dialog->setIntRange(nuvo::MinPictureWidth, nuvo::MaxPictureWidth);
        dialog->setIntValue(UsualPictureWidth);
        if (ShowModal(*dialog) != QDialog::Accepted || dialog.isNull())
            return;
        width = dialog->intValue();
    }
    nuvo::savePlot({plot_, canvas_.DotColor(), canvas_.CanvasColor(), point_}, file, width);
}

void TMLRPlotForm::CopyPlotClick()
{
    QGuiApplication::clipboard()->setImage(
        nuvo::plotImage({plot_, canvas_.DotColor(), canvas_.CanvasColor(), point_}, UsualPictureWidth));
}

namespace nuvo {

void showPlots(TRegression &regression, QPointer<TMLRPlotForm> &window)
{
    static QPointer<TMLRPlotForm> open;
    if (!open.isNull()) {
        open->raise();
        open->activateWindow();
        return;
    }
    // A window in front can take this one along when it goes; the component can go as well.
    const QPointer<TMLRPlotForm> form = new TMLRPlotForm(windowInFront());
    const auto gone = qScopeGuard([&form] { delete form; });
    open = form;
    window = form;
    if (regression.DataSetForm() == TRegression::Form::Table)
        form->TablePlot(regression);
    else
        form->QueryPlot(regression);
}

} // namespace nuvo
