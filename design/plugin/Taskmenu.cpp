#include "design/plugin/Taskmenu.h"

#include "design/Modelediting.h"
#include "engine/Regression.h"
#include "platform/Table.h"

#include <QAction>

nuvo::TaskMenu::TaskMenu(TComponent &component, const Editing &editing, QObject *parent)
    : QObject(parent), component_(component)
{
    if (hasModel(component)) {
        auto *action = new QAction(QStringLiteral("Model…"), this);
        action->setData(QStringLiteral("Model"));
        connect(action, &QAction::triggered, this, [&component, &editing] { editing.EditModel(component); });
        actions_ += action;
    }
    for (const QString &property : editing.EditableProperties(component)) {
        const QString type = Catalogue::PropertyType(*component.metaObject(), property);
        const bool definition = type == u"TIndepVar" || type == u"TDependentVar";
        auto *action = new QAction(
            (definition ? QStringLiteral("Define %1…") : QStringLiteral("Choose %1…")).arg(property), this);
        action->setData(property);
        connect(action, &QAction::triggered, this,
                [&component, &editing, property] { editing.Edit({&component}, property); });
        actions_ += action;
    }
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
