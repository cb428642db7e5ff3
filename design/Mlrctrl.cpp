#include "design/Mlrctrl.h"

#include "platform/Component.h"
#include "platform/Formats.h"
#include "platform/Modal.h"
#include "ui_Mlrctrl.h"

#include <QPointer>
#include <QSignalBlocker>
#include <QStringBuilder>

namespace {

enum Item { Inactive, Plain, Log, Inverse, Sqrt, Power, Scale, Product, Quotient };

/// The keywords by item.
const QStringList &transformations()
{
    static const QStringList all{QStringLiteral("Undefined"), QStringLiteral("None"),    QStringLiteral("Log"),
                                 QStringLiteral("Inverse"),   QStringLiteral("Sqrt"),    QStringLiteral("Power"),
                                 QStringLiteral("Scale"),     QStringLiteral("Product"), QStringLiteral("Quotient")};
    return all;
}

/// What the item does with a variable, in lines.
QStringList helpLines(int item, const QString &name)
{
    switch (item) {
    case Inactive:
        return {u"The Inactive option disables " % name % u"."};
    case Plain:
        return {u"This will set " % name % u" to the", QStringLiteral("values of the database field with"),
                QStringLiteral("the name listed in \"datafield1\".")};
    case Log:
        return {u"This will set " % name % u" to the", QStringLiteral("natural logarithm of the values of"),
                QStringLiteral("the database field named in \"datafield1\".")};
    case Inverse:
        return {u"This will set " % name % u" to", QStringLiteral("1 divided by the values of"),
                QStringLiteral("the database field named in \"datafield1\"."), QString(),
                QStringLiteral("NOTE: All values must be nonzero.")};
    case Sqrt:
        return {u"This will set " % name % u" to the", QStringLiteral("square root of the values of"),
                QStringLiteral("\"datafield1\"."), QString(), QStringLiteral("All values must be >= 0.")};
    case Power:
        return {u"This will set " % name % u" to the", QStringLiteral("values of database field named in"),
                QStringLiteral("\"datafield1\" raised to the power"), QStringLiteral("entered below.")};
    case Scale:
        return {u"This will set each element of " % name,
                QStringLiteral("to the value of the database field named in"),
                QStringLiteral("\"datafield1\", divided by the value below.")};
    default:
        return {u"This will set each element of " % name,
                QStringLiteral("to the value of the database field named in"),
                item == Product ? QStringLiteral("\"datafield1\", multiplied by the value of the")
                                : QStringLiteral("\"datafield1\", divided by the value of the"),
                QStringLiteral("database field named in \"datafield2\".")};
    }
}

/// What holds for a query besides.
QStringList queryNote(int item)
{
    if (item == Inactive)
        return {};
    if (item < Product)
        return {QStringLiteral("NOTE: \"datafield1\" must be in the"), QStringLiteral("query's result dataset.")};
    QStringList note{QStringLiteral("NOTE: Both \"datafield1\" and \"datafield2\""),
                     QStringLiteral("must be in the query's result dataset.")};
    if (item == Quotient)
        note += QStringLiteral("ALL values in datafield2 MUST be nonzero.");
    return note;
}

} // namespace

TControlDefDlg::TControlDefDlg(QWidget *parent)
    : DefinitionDialog(parent), ui_(std::make_unique<Ui::TControlDefDlg>())
{
    SetUp(*ui_);
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
    Select(*ui_->cboxTableX, variable.Field1());
    Select(*ui_->cboxTableY, variable.Field2());
    const QSignalBlocker silentX(ui_->edStringX);
    const QSignalBlocker silentY(ui_->edStringY);
    ui_->edStringX->setText(variable.Field1());
    ui_->edStringY->setText(variable.Field2());
    ShowNumber(*ui_->cboxpwrY, variable.Exponent());
    SetItemIndex(int(transformations().indexOf(variable.Transformation())));
}

void TControlDefDlg::FormActivate()
{
    SecondFieldPanel().raise();
    const QString transformation = parameters_.Transformation();
    if (transformation == transformations()[Power] || transformation == transformations()[Sqrt])
        ui_->pnlXpwry->raise();
    if (transformation == transformations()[Scale])
        ui_->pnlScaleX->raise();
}

void TControlDefDlg::RadioGroup1Click()
{
    const int item = ItemIndex();
    ui_->Panel2->clear();
    const auto enable = [](QWidget &control, QWidget &panel, bool on) {
        control.setEnabled(on);
        if (on)
            panel.raise();
    };
    enable(*ui_->cboxpwrY, *ui_->pnlXpwry, item == Power);
    enable(*ui_->cboxDivideBy, *ui_->pnlScaleX, item == Scale);
    FieldControl().setEnabled(item >= Plain);
    enable(SecondFieldControl(), SecondFieldPanel(), item >= Product);

    if (item == Inactive) {
        parameters_.SetUsage(QStringLiteral("Inactive"));
        ShowTerm(true, parameters_.Usage());
    } else {
        parameters_.SetTransformation(transformations()[item]);
    }
    if (item == Sqrt) {
        const QSignalBlocker silent(ui_->cboxpwrY);
        ui_->cboxpwrY->setCurrentIndex(0);
    }
    SetHelp(helpLines(item, PropertyName()));
    if (const QStringList note = queryNote(item); IsQuery() && !note.isEmpty())
        AddHelp(note);

    if (item >= Plain && item <= Inverse)
        FieldControl().setFocus();
    else if (item == Power)
        ui_->cboxpwrY->setFocus();
    else if (item == Scale)
        ui_->cboxDivideBy->setFocus();
    else if (item >= Product)
        SecondFieldControl().setFocus();
    ValidateData();
}

void TControlDefDlg::ValidateData()
{
    const int item = ItemIndex();
    switch (item) {
    case Plain:
    case Log:
    case Inverse: {
        const bool complete = FieldChosen();
        if (complete || IsQuery())
            parameters_.SetField1(FieldText());
        const QString &field = parameters_.Field1();
        ShowTerm(complete, item == Plain ? field : item == Log ? u"ln(" % field % u")" : u"1/(" % field % u")");
        break;
    }
    case Sqrt:
    case Power:
        ValidateXtoPowery();
        break;
    case Scale:
        ValidateXScaled();
        break;
    case Product:
        ValidateDataXTimesY();
        break;
    case Quotient:
        ValidateDataXDivY();
        break;
    default:
        break;
    }
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
    ShowTerm(FieldChosen() && (IsQuery() || exponent >= 0.5),
             parameters_.Field1() % u"^" % ui_->cboxpwrY->currentText());
}

void TControlDefDlg::ValidateXScaled()
{
    const double divisor = Number(*ui_->cboxDivideBy);
    parameters_.SetScaleFactor(divisor == 0 ? QStringLiteral("10") : Written(*ui_->cboxDivideBy));
    if (divisor != 0 || IsQuery())
        parameters_.SetField1(FieldText());
    // On the exponent's panel, which is not the one in front: it is so by design.
    ui_->Label4->setText(u"Scale " % FieldText() % u" by the value:");
    ShowTerm(FieldChosen(), parameters_.Field1() % u"/" % parameters_.ScaleFactor());
}

void TControlDefDlg::ValidateDataXTimesY()
{
    ValidateTwoFields(u'*');
}

void TControlDefDlg::ValidateDataXDivY()
{
    ValidateTwoFields(u'/');
}

void TControlDefDlg::ValidateTwoFields(QChar sign)
{
    const QString second = IsQuery() ? ui_->edStringY->text() : ui_->cboxTableY->currentText();
    const bool complete = FieldChosen() && (IsQuery() ? !second.isEmpty() : ui_->cboxTableY->currentIndex() >= 0);
    if (complete || IsQuery()) {
        parameters_.SetField1(FieldText());
        parameters_.SetField2(second);
    }
    ShowTerm(complete, parameters_.Field1() % sign % parameters_.Field2());
}

QWidget &TControlDefDlg::SecondFieldControl() const
{
    return IsQuery() ? static_cast<QWidget &>(*ui_->edStringY) : *ui_->cboxTableY;
}

QWidget &TControlDefDlg::SecondFieldPanel() const
{
    return IsQuery() ? *ui_->pnlQryY : *ui_->pnlTblY;
}
