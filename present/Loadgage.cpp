// SPDX-License-Identifier: MIT
#include "present/Loadgage.h"

#include "present/Forms.h"
#include "present/Pictures.h"
#include "ui_Loadgage.h"

TMLRGaugeDlg *MLRGaugeDlg = nullptr;

TMLRGaugeDlg::TMLRGaugeDlg()
{
    MLRGaugeDlg = this;
}

TMLRGaugeDlg::~TMLRGaugeDlg()
{
    if (MLRGaugeDlg == this)
        MLRGaugeDlg = nullptr;
}

TProgressDlg::Controls TMLRGaugeDlg::Build(QDialog &window)
{
    Ui::TMLRGaugeDlg form;
    form.setupUi(&window);
    const QString title = QStringLiteral("Times New Roman");
    nuvo::setTitleLetters(*form.Label1, title, 15, Qt::black);
    nuvo::setTitleLetters(*form.Label2, title, 15, Qt::white);
    nuvo::stackTitle(*form.Label1, *form.Label2);
    form.Gauge1->SetBackColor(window.palette().color(QPalette::Highlight));
    const qreal ratio = window.devicePixelRatioF();
    form.Image1->setPixmap(nuvo::drawPicture(nuvo::Picture::Records, ratio));
    form.Image2->setPixmap(nuvo::drawPicture(nuvo::Picture::Fit, ratio));
    return {form.Gauge1, form.Panel1};
}
