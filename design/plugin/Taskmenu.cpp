// SPDX-License-Identifier: MIT
#include "design/plugin/Taskmenu.h"

#include "design/Modelediting.h"
#include "design/plugin/Rowtexts.h"
#include "design/plugin/Sheet.h"
#include "design/plugin/Trial.h"
#include "engine/Regression.h"
#include "platform/Query.h"
#include "platform/Table.h"
#include "select/Corvane.h"

#include <QAction>

#include <algorithm>

nuvo::TaskMenu::TaskMenu(TComponent &component, const Editing &editing, QObject *parent)
    : QObject(parent), component_(component), editing_(editing)
{
    AddModel();
    AddEditors();
    AddClear();
    AddFigures();
}

QAction *nuvo::TaskMenu::Add(const QString &text, const std::function<void()> &action)
{
    auto *added = new QAction(text, this);
    connect(added, &QAction::triggered, this, action);
    actions_ += added;
    return added;
}

void nuvo::TaskMenu::AddModel()
{
    if (hasModel(component_))
        Add(QStringLiteral("Model…"), [this] { editing_.EditModel(component_); })->setData(QLatin1String(ModelRow));
}

/// In the order of a model: its data, the response, the control variables.
void nuvo::TaskMenu::AddEditors()
{
    QStringList properties = editing_.EditableProperties(component_);
    std::stable_partition(properties.begin(), properties.end(),
                          [](const QString &property) { return controlNumber(property) == 0; });
    for (const QString &property : properties) {
        const bool definition = isDefinition(component_, property);
        QAction *action = Add((definition           ? QStringLiteral("Define %1…")
                               : property == u"SQL" ? QStringLiteral("Edit %1…")
                                                    : QStringLiteral("Choose %1…"))
                                  .arg(property),
                              [this, property] { editing_.Edit({&component_}, property); });
        action->setData(property);
    }
}

void nuvo::TaskMenu::AddClear()
{
    if (dynamic_cast<const TRegression *>(&component_) == nullptr)
        return;
    clearMenu_ = std::make_unique<QMenu>(QStringLiteral("Clear definition"));
    actions_ += clearMenu_->menuAction();
    connect(clearMenu_.get(), &QMenu::aboutToShow, this, [this] {
        clearMenu_->clear();
        const QStringList defined = editing_.Definitions(component_);
        for (const QString &property : defined) {
            clearMenu_->addAction(QStringLiteral("%1: %2").arg(property, definitionText(component_, property)), this,
                                  [this, property] { editing_.Clear({&component_}, {property}); });
        }
        if (defined.size() > 1) {
            clearMenu_->addSeparator();
            clearMenu_->addAction(QStringLiteral("All of them"), this,
                                  [this, defined] { editing_.Clear({&component_}, defined); });
        }
    });
}

void nuvo::TaskMenu::AddFigures()
{
    if (dynamic_cast<const TRegression *>(&component_) != nullptr)
        Add(QStringLiteral("Fit and show…"), [this] { fitAndShow(component_, editing_); });
    else if (qobject_cast<const TCorvane *>(&component_) != nullptr)
        Add(QStringLiteral("Choose…"), [this] { chooseAndShow(component_, editing_); });
}

QList<QAction *> nuvo::TaskMenu::taskActions() const
{
    if (clearMenu_)
        clearMenu_->menuAction()->setEnabled(!editing_.Definitions(component_).isEmpty());
    return actions_;
}

QAction *nuvo::TaskMenu::preferredEditAction() const
{
    const QString wanted = NextProperty();
    for (QAction *action : actions_) {
        if (wanted.isEmpty() || action->data().toString() == wanted)
            return action;
    }
    return nullptr;
}

QString nuvo::TaskMenu::NextProperty() const
{
    const auto *dataset = qobject_cast<const TDataSet *>(&component_);
    const auto *table = qobject_cast<const TTable *>(&component_);
    if (dataset != nullptr && dataset->DatabaseName().isEmpty())
        return QStringLiteral("DatabaseName");
    if (table != nullptr && table->TableName().isEmpty())
        return QStringLiteral("TableName");
    const auto *query = qobject_cast<const TQuery *>(&component_);
    if (query != nullptr && query->SQL().trimmed().isEmpty())
        return QStringLiteral("SQL");
    const auto *regression = dynamic_cast<const TRegression *>(&component_);
    if (regression == nullptr)
        return {};
    const QString response = QStringLiteral("ResponseVarY");
    if (regression->ResponseVarY().FieldName() == TDependentVar().FieldName())
        return response;
    for (int k = 1; k <= MaxControls; ++k) {
        if (regression->ControlVar(k).Transformation() == u"Undefined")
            return QStringLiteral("ControlVar%1").arg(k, 2, 10, QLatin1Char('0'));
    }
    return response;
}

QObject *nuvo::TaskMenuFactory::createExtension(QObject *object, const QString &iid, QObject *parent) const
{
    auto *component = qobject_cast<TComponent *>(object);
    if (component == nullptr || iid != Q_TYPEID(QDesignerTaskMenuExtension))
        return nullptr;
    return new TaskMenu(*component, editing_, parent);
}
