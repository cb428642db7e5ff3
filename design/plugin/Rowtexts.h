// SPDX-License-Identifier: MIT
#pragma once

#include "design/plugin/Editing.h"

#include <QObject>

class QModelIndex;
class QTreeWidget;
class QTreeWidgetItem;

namespace nuvo {

/// Whether a property is the definition of a variable.
bool isDefinition(const TComponent &component, const QString &property);

/// What a definition is, as reports write it: "Ln(GNP)"; empty for one that is not defined and for properties that
/// are no definition.
QString definitionText(const TComponent &component, const QString &property);

/// The model of a regression in a line: "TOTEMP on Ln(GNP), UNEMP"; empty where nothing is defined.
QString modelText(const TComponent &component);

/// Whether a property of a selection component names another component.
bool isReference(const QString &property);

/// Whether it names one that is not on the form.
bool namesNothing(const TComponent &component, const QString &property);

/// Keeps the texts of the property editor's rows readable: a definition shows its term instead of six strings, a name
/// that leads nowhere is marked. The designer has no interface for that, so this follows the editor's tree; values
/// are untouched, and where a designer shows its rows in another way they are what they were.
class RowTexts : public QObject
{
    Q_OBJECT

public:
    RowTexts(const Editing &editing, QObject *parent);

    /// Shows all rows anew: what is on the form has changed.
    void Refresh();

private:
    void Changed(QTreeWidget &tree, const QModelIndex &first, const QModelIndex &last);
    void Show(QTreeWidgetItem &row) const;

    const Editing &editing_;
};

} // namespace nuvo
