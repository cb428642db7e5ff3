#include "design/Mlrresp.h"

#include "platform/Component.h"
#include "platform/Modal.h"
#include "ui_Mlrresp.h"

#include <QPointer>
#include <QSignalBlocker>
#include <QStringBuilder>

namespace {

enum Item { Plain, Log, Scale, Inverse };

/// The keywords by item.
const QStringList &transformations()
{
    static const QStringList all{QStringLiteral("None"), QStringLiteral("Log"), QStringLiteral("Scale"),
                                 QStringLiteral("Inverse")};
    return all;
}

/// What the item does with the response, in lines.
QStringList helpLines(int item, const QString &name)
{
    switch (item) {
    case Plain:
        return {u"This will set " % name % u" to the", QStringLiteral("values of the database field with"),
                QStringLiteral("the name listed in \"datafield\".")};
    case Log:
        return {u"This will set " % name % u" to the", QStringLiteral("natural logarithm of the values of"),
                QStringLiteral("the database field named in \"datafield\"."),
                QStringLiteral("NOTE: \"datafield\" must NOT contain"), QStringLiteral("ANY non positive values.")};
    case Scale:
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
    Select(*ui_->cboxTableX, variable.FieldName());
    const QSignalBlocker silent(ui_->edStringX);
    ui_->edStringX->setText(variable.FieldName());
    SetItemIndex(int(transformations().indexOf(variable.Transformation())));
}

void TResponseDefDlg::FormActivate()
{
    (IsQuery() ? ui_->pnlQryX : ui_->pnlTblX)->raise();
}

void TResponseDefDlg::RadioGroup1Click()
{
    const int item = ItemIndex();
    ui_->cboxDivideBy->setEnabled(item == Scale);
    FieldControl().setFocus();
    parameters_.SetTransformation(transformations()[item]);
    SetHelp(helpLines(item, PropertyName()));
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
    const QString &field = parameters_.FieldName();
    QString term;
    switch (ItemIndex()) {
    case Plain:
        term = field;
        break;
    case Log:
        term = u"ln(" % field % u")";
        break;
    case Scale:
        term = field % u"/" % parameters_.ScaleFactor();
        break;
    case Inverse:
        term = u"1/(" % field % u")";
        break;
    default:
        break;
    }
    ShowTerm(complete, term);
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
             parameters_.FieldName() % u"/" % parameters_.ScaleFactor());
}
