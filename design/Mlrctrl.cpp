// SPDX-License-Identifier: MIT
#include "design/Mlrctrl.h"

#include "platform/Component.h"
#include "platform/Formats.h"
#include "platform/Modal.h"
#include "ui_Mlrctrl.h"

#include <QPointer>
#include <QSignalBlocker>
#include <QStringBuilder>

namespace {

using nuvo::Operation;
using nuvo::Second;
using nuvo::Transformation;

/// What a form does with a variable, in lines.
QStringList controlHelp(const Transformation &form, const QString &name)
{
    if (!form.term)
        return {u"The Inactive option disables " % name % u"."};
    const QString field = QStringLiteral("to the value of the database field named in");
    switch (form.operation) {
    case Operation::Plain:
        return {u"This will set " % name % u" to the", QStringLiteral("values of the database field with"),
                QStringLiteral("the name listed in \"datafield1\".")};
    case Operation::Logarithm:
        return {u"This will set " % name % u" to the", QStringLiteral("natural logarithm of the values of"),
                QStringLiteral("the database field named in \"datafield1\".")};
    case Operation::Reciprocal:
        return {u"This will set " % name % u" to", QStringLiteral("1 divided by the values of"),
                QStringLiteral("the database field named in \"datafield1\"."), QString(),
                QStringLiteral("NOTE: All values must be nonzero.")};
    case Operation::SquareRoot:
        return {u"This will set " % name % u" to the", QStringLiteral("square root of the values of"),
                QStringLiteral("\"datafield1\"."), QString(), QStringLiteral("All values must be >= 0.")};
    case Operation::SignedPower:
        return {u"This will set " % name % u" to the", QStringLiteral("values of database field named in"),
                QStringLiteral("\"datafield1\" raised to the power"), QStringLiteral("entered below.")};
    case Operation::Times:
    case Operation::Over:
        break;
    }
    if (form.second == Second::ScaleFactor) {
        return {u"This will set each element of " % name, field,
                QStringLiteral("\"datafield1\", divided by the value below.")};
    }
    return {u"This will set each element of " % name, field,
            form.operation == Operation::Times ? QStringLiteral("\"datafield1\", multiplied by the value of the")
                                               : QStringLiteral("\"datafield1\", divided by the value of the"),
            QStringLiteral("database field named in \"datafield2\".")};
}

/// What holds for a query besides.
QStringList queryNote(const Transformation &form)
{
    if (!form.term)
        return {};
    if (form.second != Second::Field2)
        return {QStringLiteral("NOTE: \"datafield1\" must be in the"), QStringLiteral("query's result dataset.")};
    QStringList note{QStringLiteral("NOTE: Both \"datafield1\" and \"datafield2\""),
                     QStringLiteral("must be in the query's result dataset.")};
    if (form.operation == Operation::Over)
        note += QStringLiteral("ALL values in datafield2 MUST be nonzero.");
    return note;
}

} // namespace

TControlDefDlg::TControlDefDlg(QWidget *parent)
    : DefinitionDialog(parent), ui_(std::make_unique<Ui::TControlDefDlg>())
{
    SetUp(*ui_);
    WatchName(*ui_->edStringX, TIndepVar().Field1());
    WatchName(*ui_->edStringY, TIndepVar().Field2());
    const auto validate = [this] { ValidateData(); };
    connect(ui_->cboxTableY, &QComboBox::currentIndexChanged, this,
            [this, validate] { Handle(Moment::Done, validate); });
    connect(ui_->edStringY, &QLineEdit::textChanged, this, [this, validate] { Handle(Moment::Typing, validate); });
    WatchExit(*ui_->cboxTableY, validate);
    WatchEnter(*ui_->edStringY, validate);
    const auto power = [this] { ValidateXtoPowery(); };
    WatchNumber(*ui_->cboxpwrY, power);
    WatchEnter(*ui_->cboxpwrY, power);
}

TControlDefDlg::~TControlDefDlg() = default;

void TControlDefDlg::OpenForm(const TComponent &component, const QString &propertyName, const QStringList &fieldNames,
                              TIndepVar &variable)
{
    parameters_ = variable;
    Prepare(component, propertyName, QStringLiteral(" Control Variable Definition"), fieldNames);
    Offer(*ui_->cboxTableY, fieldNames);
    InputControlView(parameters_);
    ItemChosen();

    const QPointer<TControlDefDlg> open(this);
    if (ShowModal(*this) == QDialog::Accepted && !open.isNull())
        variable = parameters_;
}

void TControlDefDlg::InputControlView(const TIndepVar &variable)
{
    ShowNumber(*ui_->cboxDivideBy, variable.ScaleFactor());
    Select(*ui_->cboxTableX, variable.Field1(), TIndepVar().Field1());
    Select(*ui_->cboxTableY, variable.Field2(), TIndepVar().Field2());
    const QSignalBlocker silentX(ui_->edStringX);
    const QSignalBlocker silentY(ui_->edStringY);
    ui_->edStringX->setText(variable.Field1());
    ui_->edStringY->setText(variable.Field2());
    ShowNumber(*ui_->cboxpwrY, variable.Exponent());
    SetItemIndex(ItemOf(nuvo::controlTransformations(), variable.Transformation()));
}

const Transformation *TControlDefDlg::Chosen() const
{
    return nuvo::findItem(nuvo::controlTransformations(), ItemIndex());
}

void TControlDefDlg::FormActivate()
{
    SecondFieldPanel().raise();
    const Transformation *form = nuvo::findKeyword(nuvo::controlTransformations(), parameters_.Transformation());
    if (form == nullptr)
        return;
    if (form->second == Second::Exponent || form->operation == Operation::SquareRoot)
        ui_->pnlXpwry->raise();
    if (form->second == Second::ScaleFactor)
        ui_->pnlScaleX->raise();
}

void TControlDefDlg::RadioGroup1Click()
{
    const Transformation &form = *Chosen();
    ui_->Panel2->clear();
    const auto enable = [](QWidget &control, QWidget &panel, bool on) {
        control.setEnabled(on);
        if (on)
            panel.raise();
    };
    enable(*ui_->cboxpwrY, *ui_->pnlXpwry, form.second == Second::Exponent);
    enable(*ui_->cboxDivideBy, *ui_->pnlScaleX, form.second == Second::ScaleFactor);
    FieldControl().setEnabled(form.term);
    enable(SecondFieldControl(), SecondFieldPanel(), form.second == Second::Field2);

    if (form.term) {
        parameters_.SetTransformation(form.keyword.toString());
    } else {
        parameters_.SetUsage(QStringLiteral("Inactive"));
        ShowTerm(true, parameters_.Usage());
    }
    if (form.operation == Operation::SquareRoot) {
        const QSignalBlocker silent(ui_->cboxpwrY);
        ui_->cboxpwrY->setCurrentIndex(0);
    }
    SetHelp(controlHelp(form, PropertyName()));
    if (const QStringList note = queryNote(form); IsQuery() && !note.isEmpty())
        AddHelp(note);

    if (form.second == Second::Exponent)
        ui_->cboxpwrY->setFocus();
    else if (form.second == Second::ScaleFactor)
        ui_->cboxDivideBy->setFocus();
    else if (form.second == Second::Field2)
        SecondFieldControl().setFocus();
    else if (form.term && form.operation != Operation::SquareRoot)
        FieldControl().setFocus();
    ValidateData();
}

void TControlDefDlg::ValidateData()
{
    const Transformation *form = Chosen();
    if (form == nullptr || !form->term)
        return;
    if (form->second == Second::Exponent || form->operation == Operation::SquareRoot)
        ValidateXtoPowery();
    else if (form->second == Second::ScaleFactor)
        ValidateXScaled();
    else if (form->second == Second::Field2)
        form->operation == Operation::Times ? ValidateDataXTimesY() : ValidateDataXDivY();
    else
        ValidateOneField(*form);
}

void TControlDefDlg::ValidateOneField(const Transformation &form)
{
    const bool complete = FieldChosen();
    if (complete || IsQuery())
        parameters_.SetField1(FieldText());
    ShowTerm(complete, Shown(form, parameters_.Field1()));
}

void TControlDefDlg::ValidateXtoPowery()
{
    // The first entry is the only one that is no number; typed, it is the same.
    const bool root = ui_->cboxpwrY->currentText() == ui_->cboxpwrY->itemText(0);
    const double exponent = root ? 0.5 : Number(*ui_->cboxpwrY);
    parameters_.SetExponent(FloatToStr(exponent));
    if (FieldChosen() || IsQuery())
        parameters_.SetField1(FieldText());
    ui_->Label4->setText(u"Raise " % FieldText() % u" to the power:");
    const Transformation &power = *nuvo::findKeyword(nuvo::controlTransformations(), u"Power");
    ShowTerm(FieldChosen() && (IsQuery() || power.range.Holds(exponent)),
             Shown(power, parameters_.Field1(), ui_->cboxpwrY->currentText()));
}

void TControlDefDlg::ValidateXScaled()
{
    const double divisor = Number(*ui_->cboxDivideBy);
    parameters_.SetScaleFactor(divisor == 0 ? QStringLiteral("10") : Written(*ui_->cboxDivideBy));
    if (divisor != 0 || IsQuery())
        parameters_.SetField1(FieldText());
    // On the exponent's panel, which is not the one in front: it is so by design.
    ui_->Label4->setText(u"Scale " % FieldText() % u" by the value:");
    ShowTerm(FieldChosen(), Shown(*nuvo::findKeyword(nuvo::controlTransformations(), u"Scale"), parameters_.Field1(),
                                  parameters_.ScaleFactor()));
}

void TControlDefDlg::ValidateDataXTimesY()
{
    ValidateTwoFields(*nuvo::findKeyword(nuvo::controlTransformations(), u"Product"));
}

void TControlDefDlg::ValidateDataXDivY()
{
    ValidateTwoFields(*nuvo::findKeyword(nuvo::controlTransformations(), u"Quotient"));
}

void TControlDefDlg::ValidateTwoFields(const Transformation &form)
{
    const QString second = IsQuery() ? ui_->edStringY->text() : ui_->cboxTableY->currentText();
    const bool complete = FieldChosen() && (IsQuery() ? !second.isEmpty() : ui_->cboxTableY->currentIndex() >= 0);
    if (complete || IsQuery()) {
        parameters_.SetField1(FieldText());
        parameters_.SetField2(second);
    }
    ShowTerm(complete, Shown(form, parameters_.Field1(), parameters_.Field2()));
}

QWidget &TControlDefDlg::SecondFieldControl() const
{
    return IsQuery() ? static_cast<QWidget &>(*ui_->edStringY) : *ui_->cboxTableY;
}

QWidget &TControlDefDlg::SecondFieldPanel() const
{
    return IsQuery() ? *ui_->pnlQryY : *ui_->pnlTblY;
}
