// SPDX-License-Identifier: MIT
#include "present/Mlroutpt.h"

#include "engine/Regression.h"
#include "platform/Dataset.h"
#include "platform/Errors.h"
#include "platform/Messages.h"
#include "platform/Modal.h"
#include "platform/Savefile.h"
#include "present/Filedialog.h"
#include "present/Forms.h"
#include "present/Matrxdlg.h"
#include "present/Textreport.h"
#include "ui_Mlroutpt.h"

#include <QActionGroup>
#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLocale>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QScopeGuard>
#include <QScreen>
#include <QShortcut>

#include <algorithm>
#include <cmath>

namespace {

constexpr int BoldHeaderPoints = 9;
constexpr int SuperscriptPixels = 8;
constexpr double ScreenDpi = 96;
constexpr QRect LinkPlace(449, 402, 34, 28);
/// Pixels of the printed image per pixel of the window, so that letters are sharp on paper.
constexpr int PrintRatio = 3;

} // namespace

TRegressionOutputForm::TRegressionOutputForm(QWidget *parent)
    : QDialog(parent), ui_(std::make_unique<Ui::TRegressionOutputForm>())
{
    QFont bold = nuvo::formFont();
    bold.setBold(true);
    setFont(bold);
    ui_->setupUi(this);
    SetUpLink();
    for (QWidget *widget : findChildren<QWidget *>())
        widget->setProperty("designed", widget->geometry());
    setProperty("designed", geometry());

    bold.setPixelSize(nuvo::pointsToPixels(BoldHeaderPoints));
    ui_->Header1->setFont(bold);
    ui_->TopPanel->setTextFormat(Qt::PlainText);
    ui_->TopPanel->setWordWrap(true);
    ui_->Header1->SetSections(
        {QStringLiteral("Dataset Name"), QStringLiteral("Problem Description"), QStringLiteral("Date and Time")},
        {89, 122, 89});
    ui_->Panel1->setPalette(nuvo::paperPalette());
    for (QLabel *label : ui_->Panel1Contents->findChildren<QLabel *>())
        label->setTextFormat(Qt::PlainText);
    for (QLabel *label : {ui_->Label1, ui_->labSquared1}) {
        QFont small = font();
        small.setPixelSize(SuperscriptPixels);
        label->setFont(small);
        label->setAccessibleName(QStringLiteral("squared"));
    }
    ui_->Matrix->setFont(nuvo::matrixFont(7));
    QPalette maroon = ui_->Panel2->palette();
    maroon.setColor(QPalette::WindowText, QColor(0x80, 0, 0));
    ui_->Panel2->setPalette(maroon);
    nuvo::giveLightGround(*ui_->Panel2);
    ui_->Panel2->setTextFormat(Qt::PlainText);
    footer_ = ui_->Panel2->text();

    for (QPushButton *button : {ui_->bbtnPrintForm, ui_->bbtnPlots, ui_->bbtnShowMatrix})
        button->setAutoDefault(false);
    ui_->bbtnClose->setDefault(true);
    ui_->bbtnPrintForm->setAccessibleDescription(QStringLiteral("Opens the menu for printing the report"));
    ui_->bbtnPlots->setAccessibleDescription(QStringLiteral("Opens the window of diagnostic plots"));
    ui_->bbtnShowMatrix->setAccessibleDescription(
        QStringLiteral("Opens the menu that chooses between the covariance and the correlation matrix"));
    ui_->bbtnClose->setAccessibleDescription(QStringLiteral("Closes the report"));
    for (QPushButton *button : {ui_->bbtnPrintForm, ui_->bbtnPlots, ui_->bbtnShowMatrix, ui_->bbtnClose})
        button->setAccessibleName(button->text().remove(u'&'));
    SetUpMenus();
    SetUpKeys();
    nuvo::markFocus(*this);
}

TRegressionOutputForm::~TRegressionOutputForm() = default;

void TRegressionOutputForm::SetUpLink()
{
    // In the free room behind the last button.
    link_ = new QPushButton(QStringLiteral("More"), this);
    link_->setObjectName(QStringLiteral("lnkStatistics"));
    link_->setGeometry(LinkPlace);
    link_->setFlat(true);
    link_->setAutoDefault(false);
    link_->setCursor(Qt::PointingHandCursor);
    link_->setToolTip(QStringLiteral("Statistics, observations and figures (F2)"));
    link_->setAccessibleName(QStringLiteral("Statistics"));
    link_->setAccessibleDescription(QStringLiteral("Opens the window of statistics, observations and figures"));
    QFont underlined = nuvo::formFont();
    underlined.setUnderline(true);
    link_->setFont(underlined);
    QPalette colours = palette();
    colours.setColor(QPalette::ButtonText,
                     nuvo::isDark(colours) ? QColor(0x8a, 0xb4, 0xf8) : QColor(0x00, 0x33, 0x99));
    link_->setPalette(colours);
    link_->setFocusPolicy(Qt::NoFocus); // the keyboard has F2, and Tab its order
    connect(link_, &QPushButton::clicked, ui_->Statistics1, &QAction::trigger);
    ui_->Statistics1->setShortcuts({QKeySequence(Qt::Key_F2), QKeySequence(Qt::CTRL | Qt::Key_T)});
    addAction(ui_->Statistics1); // its keys work while the menu is closed
}

/// Print and Plots have the same underlined letter, and menus that open with the right mouse button alone are not
/// found: so there are keys besides, and hints that tell them.
void TRegressionOutputForm::SetUpKeys()
{
    const std::pair<QPushButton *, QString> hints[] = {
        {ui_->bbtnPrintForm, QStringLiteral("Scaling, set-up and printing (Ctrl+P); Ctrl+S saves the report")},
        {ui_->bbtnPlots, QStringLiteral("Diagnostic plots (F3)")},
        {ui_->bbtnShowMatrix, QStringLiteral("Covariance or correlation matrix, enlarged (Alt+M)")},
        {ui_->bbtnClose, QStringLiteral("Close the report (Escape)")}};
    for (const auto &[button, hint] : hints)
        button->setToolTip(hint);
    ui_->Panel1->setToolTip(QStringLiteral("Right mouse button: save (Ctrl+S) or copy the report (Ctrl+C), all that "
                                           "the fit tells (F2)"));
    connect(new QShortcut(QKeySequence::Print, this), &QShortcut::activated, ui_->bbtnPrintForm, &QPushButton::click);
    connect(new QShortcut(QKeySequence(Qt::Key_F3), this), &QShortcut::activated, ui_->bbtnPlots,
            &QPushButton::click);
    ui_->SaveReport1->setShortcut(QKeySequence::Save);
    ui_->CopyReport1->setShortcut(QKeySequence::Copy);
    for (QAction *action : {ui_->SaveReport1, ui_->CopyReport1})
        addAction(action); // its keys work while the menu is closed
}

void TRegressionOutputForm::SetUpMenus()
{
    const auto on = [this](QAction *action, const std::function<void()> &handler) {
        connect(action, &QAction::triggered, this, [handler] { nuvo::guarded(handler); });
    };
    connect(ui_->bbtnShowMatrix, &QPushButton::clicked, this,
            [this] { PopUpAbove(*ui_->MatrixPopup, *ui_->bbtnShowMatrix); });
    connect(ui_->bbtnPrintForm, &QPushButton::clicked, this,
            [this] { PopUpAbove(*ui_->PrintPopup, *ui_->bbtnPrintForm); });
    connect(ui_->bbtnPlots, &QPushButton::clicked, this, [this] { nuvo::guarded([this] { PlotsClick(); }); });
    connect(ui_->bbtnClose, &QPushButton::clicked, this, &QDialog::reject);

    on(ui_->Covariance1, [this] { ShowMatrix(QStringLiteral("Covariance")); });
    on(ui_->Correlation1, [this] { ShowMatrix(QStringLiteral("Correlation")); });
    on(ui_->Zoom1, [this] { ZoomClick(); });
    auto *scales = new QActionGroup(this);
    const std::pair<QAction *, TPrintScale> choices[] = {{ui_->NoScaling1, TPrintScale::poNone},
                                                         {ui_->Proportional1, TPrintScale::poProportional},
                                                         {ui_->ToFit1, TPrintScale::poPrintToFit}};
    for (const auto &[action, scale] : choices) {
        action->setCheckable(true);
        action->setChecked(scale == printScale_);
        scales->addAction(action);
        on(action, [this, chosen = scale] { printScale_ = chosen; });
    }
    on(ui_->Setup1, [this] { SetupClick(); });
    on(ui_->Print1, [this] { PrintClick(); });
    on(ui_->SaveReport1, [this] { SaveReportClick(); });
    on(ui_->CopyReport1, [this] { CopyReportClick(); });
    on(ui_->Statistics1, [this] {
        if (!dataSet_.isNull())
            QMetaObject::invokeMethod(dataSet_, "ShowStatistics");
    });

    const auto contextMenu = [this](QWidget *widget, QMenu *menu) {
        widget->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(widget, &QWidget::customContextMenuRequested, this,
                [widget, menu](const QPoint &point) { menu->popup(widget->mapToGlobal(point)); });
    };
    contextMenu(ui_->Matrix, ui_->MatrixPopup);
    contextMenu(ui_->bbtnPrintForm, ui_->PrintPopup);
    contextMenu(ui_->bbtnPlots, ui_->PrintPopup);
    contextMenu(this, ui_->ReportPopup);
}

void TRegressionOutputForm::PopUpAbove(QMenu &menu, const QPushButton &button)
{
    menu.popup(button.mapToGlobal(QPoint(button.width() / 2, -button.height())));
}

void TRegressionOutputForm::SetReportMessage(const QString &message)
{
    if (message.isEmpty())
        return;
    footer_ = message;
    ui_->Panel2->setText(DisplayLines(message));
}

void TRegressionOutputForm::Open(TRegression *dataSet, const QString &description, const QString &depVar,
                                 const QString &indepVars, const QString &dataCount, const QString &dof,
                                 const QString &coeffs, const QString &sSquared, const QString &sse,
                                 const QString &ssr, const QString &means, const QString &stdDevs,
                                 const QString &stdErrs, const QString &tValues, const QString &fStat,
                                 const QStringList &covarianceList, const QStringList &correlationList)
{
    Fill(dataSet, description,
         {depVar, indepVars, dataCount, dof, coeffs, sSquared, sse, ssr, means, stdDevs, stdErrs, tValues, fStat,
          covarianceList, correlationList});
    LayOut(screen()->availableSize());
    nuvo::centreOnScreen(*this);
    ShowModal(*this);
}

void TRegressionOutputForm::Fill(TRegression *dataSet, const QString &description, const nuvo::ReportBlocks &blocks)
{
    const QChar point = QLocale().decimalPoint().front();
    const nuvo::WindowTexts window = nuvo::windowTexts(blocks, point);
    const QString source = QStringLiteral("Data: ") + (dataSet != nullptr ? dataSet->DataSourceName() : QString());
    const QString time = QLocale().toString(QDateTime::currentDateTime(), QLocale::ShortFormat);
    dataSet_ = dataSet != nullptr ? &dataSet->DataSet() : nullptr;
    link_->setVisible(dataSet != nullptr);
    ui_->Statistics1->setEnabled(dataSet != nullptr);
    if (dataSet != nullptr && !figures_)
        figures_ = nuvo::figures(*dataSet);
    texts_ = {QString(), description, time, QString(), blocks, window, QString()};

    covarianceLines_ = blocks.CovarianceLines;
    correlationLines_ = blocks.CorrelationLines;
    ui_->Matrix->setPlainText(covarianceLines_.join(u'\n'));
    visibleMatrix_ = QStringLiteral("Covariance");
    ui_->Matrix->setAccessibleName(QStringLiteral("Covariance or correlation matrix"));
    matrixSize_ = int(covarianceLines_.size());
    description_ = description;

    const QString shownDescription = DisplayLines(description);
    ui_->Header1->SetSections({source, shownDescription, time}, {89, 122, 89});
    ui_->TopPanel->setText(source + QLatin1String("  ") + shownDescription + QLatin1String("  ") + time);

    const nuvo::ReportCaptions texts = nuvo::reportCaptions(blocks, window);
    const std::pair<QLabel *, const QString &> labels[] = {{ui_->labDepVarName, texts.DepVar},
                                                           {ui_->labIndepVarNames, texts.IndepVars},
                                                           {ui_->labDataCount, texts.DataCount},
                                                           {ui_->labDOF, texts.DOF},
                                                           {ui_->labCoeffs, texts.Coeffs},
                                                           {ui_->labFStat, texts.FStat},
                                                           {ui_->labtValue, texts.tValue},
                                                           {ui_->labSSR, texts.SSR},
                                                           {ui_->labSSE, texts.SSE},
                                                           {ui_->labSST, texts.SST},
                                                           {ui_->labRsqr, texts.RSquared},
                                                           {ui_->labsSquared, texts.SSquared},
                                                           {ui_->labMean, texts.Mean},
                                                           {ui_->labStdDev, texts.StdDev},
                                                           {ui_->labStdErrCoeff, texts.StdErrCoeff}};
    for (const auto &[label, text] : labels)
        label->setText(DisplayLines(text));
    SetFonts();
}

void TRegressionOutputForm::ShowMatrix(const QString &name)
{
    // Both items fill the memo from the correlation lines, which is meant so; only Zoom tells them apart.
    const bool covariance = name == QLatin1String("Covariance");
    matrixSize_ = int(covariance ? covarianceLines_.size() : correlationLines_.size());
    ui_->Matrix->setPlainText(correlationLines_.join(u'\n'));
    visibleMatrix_ = name;
}

void TRegressionOutputForm::ZoomClick()
{
    const QPointer<TAnalysisMatrix> dialog = new TAnalysisMatrix(this);
    const auto gone = qScopeGuard([&dialog] { delete dialog; });
    if (visibleMatrix_ == QLatin1String("Covariance"))
        dialog->Open(covarianceLines_, QStringLiteral("Covariance Matrix"), description_, footer_);
    else
        dialog->Open(correlationLines_, QStringLiteral("Correlation Matrix"), description_, footer_);
}

void TRegressionOutputForm::PlotsClick()
{
    if (plots_)
        plots_();
    else if (!dataSet_.isNull())
        QMetaObject::invokeMethod(dataSet_, "ShowPlots");
}

void TRegressionOutputForm::SetupClick()
{
    if (printer_ == nullptr)
        printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
    const QPointer<QPrintDialog> dialog = new QPrintDialog(printer_.get(), this);
    const auto gone = qScopeGuard([&dialog] { delete dialog; });
    dialog->setObjectName(QStringLiteral("PrinterSetupDialog1"));
    dialog->setWindowTitle(QStringLiteral("Printer setup"));
    ShowModal(*dialog);
}

void TRegressionOutputForm::PrintClick()
{
    if (printer_ == nullptr)
        printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
    if (printer_->outputFormat() == QPrinter::NativeFormat) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        const auto plain = qScopeGuard([] { QGuiApplication::restoreOverrideCursor(); });
        nuvo::printImage(PrintImage(), printScale_, *printer_);
        return;
    }
    // No printer, or a file chosen in the set-up.
    const QString file =
        nuvo::askFileName(this, QStringLiteral("Print to a file"), {QStringLiteral("PDF document (*.pdf)")});
    if (file.isEmpty())
        return;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const auto plain = qScopeGuard([] { QGuiApplication::restoreOverrideCursor(); });
    const QImage image = PrintImage();
    nuvo::saveFile(file, [&](QIODevice &device) {
        QPdfWriter writer(&device);
        writer.setTitle(windowTitle());
        writer.setPageLayout(printer_->pageLayout());
        nuvo::printImage(image, printScale_, writer);
        return true;
    });
}

QImage TRegressionOutputForm::PrintImage()
{
    const bool linked = !link_->isHidden();
    QWidget *const hidden[] = {ui_->bbtnPrintForm, ui_->bbtnShowMatrix, ui_->bbtnClose, ui_->bbtnPlots, ui_->Header1};
    const QPalette usual = palette();
    const auto restore = qScopeGuard([&] {
        ui_->Panel2->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        for (QWidget *widget : hidden)
            widget->show();
        link_->setVisible(linked);
        setPalette(usual);
        LayOut(screen()->availableSize());
    });
    LayOut(QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
    ui_->Panel2->setFrameStyle(QFrame::NoFrame);
    for (QWidget *widget : hidden)
        widget->hide();
    link_->hide();
    QPalette white = usual;
    white.setColor(QPalette::Window, Qt::white);
    setPalette(white);

    QImage image(size() * PrintRatio, QImage::Format_RGB32);
    image.setDevicePixelRatio(PrintRatio);
    image.fill(Qt::white);
    render(&image);
    return image;
}

QImage TRegressionOutputForm::Picture()
{
    LayOut(QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
    const auto restore = qScopeGuard([this] { LayOut(screen()->availableSize()); });
    return grab().toImage();
}

void TRegressionOutputForm::SaveReport(const QString &file)
{
    if (QFileInfo(file).suffix().toLower() != QLatin1String("png")) {
        if (figures_)
            nuvo::saveReportDocument(*figures_, file);
        else
            nuvo::saveReportDocument(texts_, file);
        return;
    }
    const QImage picture = Picture();
    nuvo::saveFile(file, [&picture](QIODevice &device) { return picture.save(&device, "PNG"); });
}

void TRegressionOutputForm::SaveReportClick()
{
    const QString file = nuvo::askFileName(
        this, QStringLiteral("Save report"),
        {QStringLiteral("PDF document (*.pdf)"), QStringLiteral("HTML page (*.html)"),
         QStringLiteral("Plain text (*.txt)"), QStringLiteral("PNG picture of this window (*.png)")});
    if (!file.isEmpty())
        SaveReport(file);
}

void TRegressionOutputForm::CopyReportClick()
{
    auto content = std::make_unique<QMimeData>();
    content->setText(figures_ ? nuvo::reportPlainText(*figures_) : nuvo::reportBlockText(texts_));
    content->setHtml(nuvo::reportHtml(figures_ ? nuvo::reportTexts(*figures_) : texts_));
    QGuiApplication::clipboard()->setMimeData(content.release());
}

void TRegressionOutputForm::done(int result)
{
    covarianceLines_.clear();
    correlationLines_.clear();
    QDialog::done(result);
}

namespace nuvo {

void showReport(TRegression &regression, const std::function<void()> &plots)
{
    static QPointer<TRegressionOutputForm> open;
    if (!open.isNull()) {
        open->raise();
        open->activateWindow();
        return;
    }
    // A window in front can take this one along when it goes.
    const QPointer<TRegressionOutputForm> form = new TRegressionOutputForm(windowInFront());
    const auto gone = qScopeGuard([&form] { delete form; });
    open = form;
    form->SetPlots([dataset = QPointer<TDataSet>(&regression.DataSet()), plots] {
        if (!dataset.isNull())
            plots();
    });
    form->SetReportMessage(regression.ReportMessage());
    Figures taken = figures(regression);
    const ReportBlocks blocks = reportBlocks(taken, QLocale().decimalPoint().front());
    form->SetFigures(std::move(taken));
    form->Open(&regression, regression.Description(), blocks.DepVar, blocks.IndepVars, blocks.DataCount, blocks.DOF,
               blocks.Coeffs, blocks.SSquared, blocks.SSE, blocks.SSR, blocks.Means, blocks.StdDevs, blocks.StdErrs,
               blocks.TValues, blocks.FStat, blocks.CovarianceLines, blocks.CorrelationLines);
}

void saveReport(TRegression &regression, const QString &file)
{
    if (QFileInfo(file).suffix().toLower() != QLatin1String("png")) {
        saveReportDocument(figures(regression), file);
        return;
    }
    TRegressionOutputForm form;
    form.SetReportMessage(regression.ReportMessage());
    Figures taken = figures(regression);
    const ReportBlocks blocks = reportBlocks(taken, QLocale().decimalPoint().front());
    form.SetFigures(std::move(taken));
    form.Fill(&regression, regression.Description(), blocks);
    form.SaveReport(file);
}

void printImage(const QImage &image, TPrintScale scale, QPaintDevice &device)
{
    QPainter painter;
    if (!painter.begin(&device))
        throw EPlatformError(QStringLiteral("The printer does not take the report."));
    const QSizeF size = QSizeF(image.size()) / image.devicePixelRatio();
    const QSizeF page = painter.viewport().size();
    const double fit = std::min(page.width() / size.width(), page.height() / size.height());
    double factor = fit;
    if (scale == TPrintScale::poNone)
        factor = 1;
    else if (scale == TPrintScale::poProportional)
        factor = std::min(fit, device.logicalDpiX() / ScreenDpi);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRectF(QPointF(), size * factor), image);
    if (!painter.end())
        throw EPlatformError(QStringLiteral("The report could not be printed."));
}

} // namespace nuvo
