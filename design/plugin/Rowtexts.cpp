// SPDX-License-Identifier: MIT
#include "design/plugin/Rowtexts.h"

#include "design/plugin/Sheet.h"
#include "engine/Regression.h"
#include "platform/Table.h"

#include <QDesignerPropertyEditorInterface>
#include <QTreeWidget>

namespace {

bool isRegression(const TDataSet &dataset)
{
    return dynamic_cast<const TRegression *>(&dataset) != nullptr;
}

/// Red that can be read on the rows of a light and of a dark designer.
QBrush warningInk(const QWidget &widget)
{
    const bool dark = widget.palette().color(QPalette::Base).lightness() < 128;
    return dark ? QColor(0xff, 0x8a, 0x80) : QColor(0xb7, 0x1c, 0x1c);
}

} // namespace

bool nuvo::isDefinition(const TComponent &component, const QString &property)
{
    const QString type = Catalogue::PropertyType(*component.metaObject(), property);
    return type == u"TIndepVar" || type == u"TDependentVar";
}

QString nuvo::definitionText(const TComponent &component, const QString &property)
{
    const auto *regression = dynamic_cast<const TRegression *>(&component);
    if (regression == nullptr)
        return {};
    if (const int k = controlNumber(property); k > 0) {
        const TIndepVar &control = regression->ControlVar(k);
        return control.Transformation() == u"Undefined" ? QString() : control.OutputTerm();
    }
    if (property != u"ResponseVarY")
        return {};
    const TDependentVar &response = regression->ResponseVarY();
    return response.FieldName() == TDependentVar().FieldName() ? QString() : response.OutputTerm();
}

QString nuvo::modelText(const TComponent &component)
{
    QStringList terms;
    for (int k = 1; k <= MaxControls; ++k) {
        const QString term =
            definitionText(component, QStringLiteral("ControlVar%1").arg(k, 2, 10, QLatin1Char('0')));
        if (!term.isEmpty())
            terms += term;
    }
    const QString response = definitionText(component, QStringLiteral("ResponseVarY"));
    if (terms.isEmpty())
        return response;
    return QStringLiteral("%1 on %2")
        .arg(response.isEmpty() ? QStringLiteral("…") : response, terms.join(QStringLiteral(", ")));
}

bool nuvo::isReference(const QString &property)
{
    return property == u"Dataset" || property == u"FDistTable";
}

bool nuvo::namesNothing(const TComponent &component, const QString &property)
{
    const QString name = component.property(property.toUtf8().constData()).toString();
    if (name.isEmpty())
        return false;
    if (property == u"Dataset")
        return component.FindComponent<TDataSet>(name, isRegression) == nullptr;
    return isReference(property) && component.FindComponent<TTable>(name) == nullptr;
}

nuvo::RowTexts::RowTexts(const Editing &editing, QObject *parent) : QObject(parent), editing_(editing)
{
    for (QTreeWidget *tree : editing_.Core().propertyEditor()->findChildren<QTreeWidget *>()) {
        QAbstractItemModel *model = tree->model();
        connect(model, &QAbstractItemModel::dataChanged, this,
                [this, tree](const QModelIndex &first, const QModelIndex &last) { Changed(*tree, first, last); });
        connect(model, &QAbstractItemModel::rowsInserted, this,
                [this, tree, model](const QModelIndex &above, int first, int last) {
                    Changed(*tree, model->index(first, 0, above), model->index(last, 1, above));
                });
    }
}

void nuvo::RowTexts::Refresh()
{
    for (QTreeWidget *tree : editing_.Core().propertyEditor()->findChildren<QTreeWidget *>()) {
        for (int i = 0; i < tree->topLevelItemCount(); ++i) {
            QTreeWidgetItem *group = tree->topLevelItem(i);
            Show(*group); // a row itself where the rows are sorted
            for (int j = 0; j < group->childCount(); ++j)
                Show(*group->child(j));
        }
    }
}

void nuvo::RowTexts::Changed(QTreeWidget &tree, const QModelIndex &first, const QModelIndex &last)
{
    const QModelIndex parent = first.parent();
    if (parent.parent().isValid())
        return; // the rows below a property's own
    for (int i = first.row(); i <= last.row(); ++i) {
        QTreeWidgetItem *row = tree.topLevelItem(parent.isValid() ? parent.row() : i);
        if (parent.isValid() && row != nullptr)
            row = row->child(i);
        if (row != nullptr)
            Show(*row);
    }
}

/// What it sets comes back here as a change, once. All rows of lists are shown by this: a property editor of Qt
/// Designer 6.4 can take one for a text that stood at the same address before, and shows nothing.
void nuvo::RowTexts::Show(QTreeWidgetItem &row) const
{
    const auto *component = qobject_cast<const TComponent *>(editing_.Core().propertyEditor()->object());
    const QString property = row.text(0);
    if (component == nullptr)
        return;
    QString text;
    QString toolTip;
    bool missing = false;
    if (property == QLatin1String(ModelRow)) {
        if (dynamic_cast<const TRegression *>(component) == nullptr)
            return;
        text = modelText(*component);
        toolTip = text;
    } else if (component->metaObject()->indexOfProperty(property.toUtf8().constData()) < 0) {
        return;
    } else if (isDefinition(*component, property)) {
        text = definitionText(*component, property);
        toolTip = text;
    } else if (isReference(property)) {
        text = component->property(property.toUtf8().constData()).toString();
        toolTip = text;
        missing = namesNothing(*component, property);
        if (missing) {
            toolTip = QStringLiteral("There is no component \"%1\" for it on this form.").arg(text);
            text += QStringLiteral(" (not on this form)");
        }
    } else if (const QVariant value = component->property(property.toUtf8().constData());
               value.typeId() == QMetaType::QStringList) {
        toolTip = value.toStringList().join(u'\n');
        text = toolTip.simplified();
    } else {
        return;
    }
    row.setText(1, text);
    row.setToolTip(1, toolTip);
    row.setData(1, Qt::ForegroundRole, missing ? QVariant(warningInk(*row.treeWidget())) : QVariant());
    // Whether a definition is translated is no question.
    row.setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicator);
    for (int i = 0; i < row.childCount(); ++i)
        row.child(i)->setHidden(true);
}
