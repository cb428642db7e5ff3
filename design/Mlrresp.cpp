// SPDX-License-Identifier: MIT
#include "design/Mlrresp.h"

#include "platform/Component.h"
#include "platform/Modal.h"
#include "ui_Mlrresp.h"

#include <QPointer>
#include <QSignalBlocker>
#include <QStringBuilder>

namespace {

using nuvo::Operation;
using nuvo::Transformation;

/// What a form does with the response, in lines.
QStringList responseHelp(const Transformation &form, const QString &name)
{
    switch (form.operation) {
    case Operation::Plain:
        return {u"This will set " % name % u" to the", QStringLiteral("values of the database field with"),
                QStringLiteral("the name listed in \"datafield\".")};
    case Operation::Logarithm:
        return {u"This will set " % name % u" to the", QStringLiteral("natural logarithm of the values of"),
                QStringLiteral("the database field named in \"datafield\"."),
                QStringLiteral("NOTE: \"datafield\" must NOT contain"), QStringLiteral("ANY non positive values.")};
    case Operation::Over:
        return {u"This will divide each element of " % name, QStringLiteral("by the scale value below.")};
    default:
        return {u"This will set each element of " % name, QStringLiteral("to the value of 1/\"datafield\"."),
                QString(), QStringLiteral("NOTE: \"datafield\" must NOT contain"),
                QStringLiteral("ANY zero values.")};
    }
}

} // namespace

TResponseDefDlg::TResponseDefDlg(QWidget *parent)
    : DefinitionDialog(parent), ui_(std::make_unique<Ui::TResponseDefDlg>())
{
    SetUp(*ui_);
    WatchName(*ui_->edStringX, TDependentVar().FieldName());
}

TResponseDefDlg::~TResponseDefDlg() = default;

void TResponseDefDlg::OpenForm(const TComponent &component, const QString &propertyName,
                               const QStringList &fieldNames, TDependentVar &variable)
{
    parameters_ = variable;
    Prepare(component, propertyName, QStringLiteral(" Response Variable Definition"), fieldNames);
    InputResponseView(parameters_);
    ItemChosen();

    const QPointer<TResponseDefDlg> open(this);
    if (ShowModal(*this) == QDialog::Accepted && !open.isNull())
        variable = parameters_;
}

void TResponseDefDlg::InputResponseView(const TDependentVar &variable)
{
    ShowNumber(*ui_->cboxDivideBy, variable.ScaleFactor());
    Select(*ui_->cboxTableX, variable.FieldName(), TDependentVar().FieldName());
    const QSignalBlocker silent(ui_->edStringX);
    ui_->edStringX->setText(variable.FieldName());
    SetItemIndex(ItemOf(nuvo::responseTransformations(), variable.Transformation()));
}

void TResponseDefDlg::FormActivate()
{
    (IsQuery() ? ui_->pnlQryX : ui_->pnlTblX)->raise();
}

const Transformation *TResponseDefDlg::Chosen() const
{
    return nuvo::findItem(nuvo::responseTransformations(), ItemIndex());
}

void TResponseDefDlg::RadioGroup1Click()
{
    const Transformation &form = *Chosen();
    ui_->cboxDivideBy->setEnabled(form.second == nuvo::Second::ScaleFactor);
    FieldControl().setFocus();
    parameters_.SetTransformation(form.keyword.toString());
    SetHelp(responseHelp(form, PropertyName()));
    if (IsQuery()) {
        AddHelp({QStringLiteral("NOTE: \"datafield\" must be in the"), QStringLiteral("query's result dataset.")});
    }
    ValidateData();
}

void TResponseDefDlg::ValidateData()
{
    const bool complete = FieldChosen();
    if (complete || IsQuery())
        parameters_.SetField(FieldText());
    const Transformation *form = Chosen();
    ShowTerm(complete, form == nullptr ? QString() : ShownTerm(*form));
}

QString TResponseDefDlg::ShownTerm(const Transformation &form) const
{
    return Shown(form, parameters_.FieldName(),
                 form.second == nuvo::Second::ScaleFactor ? parameters_.ScaleFactor() : QString());
}

void TResponseDefDlg::ValidateXScaled()
{
    const double divisor = Number(*ui_->cboxDivideBy);
    // 1 here, where a control variable falls back on 10.
    parameters_.SetScaleFactor(divisor == 0 ? QStringLiteral("1") : Written(*ui_->cboxDivideBy));
    const QString field = FieldText();
    if (divisor != 0 || IsQuery())
        parameters_.SetField(field);
    if (IsQuery())
        ui_->Label1->setText(u"Scale " % field % u" by the value:");
    else if (divisor != 0)
        ui_->Label1->setText(u"Divide " % field % u" by the value:");
    // A table's field need not be picked yet; a query's must be named.
    ShowTerm(divisor != 0 && (FieldChosen() || !IsQuery()),
             ShownTerm(*nuvo::findKeyword(nuvo::responseTransformations(), u"Scale")));
}
