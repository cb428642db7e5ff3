// SPDX-License-Identifier: MIT
#include "design/Modelediting.h"

#include "design/Fieldreading.h"
#include "design/model/Modeldialog.h"
#include "design/model/Modeleditor.h"
#include "engine/Regression.h"
#include "platform/Component.h"
#include "platform/Errors.h"
#include "platform/Messages.h"

#include <QPointer>
#include <QScopeGuard>

bool nuvo::hasModel(const TComponent &component)
{
    return dynamic_cast<const TRegression *>(&component) != nullptr;
}

std::vector<std::pair<QString, QVariant>> nuvo::editModel(TComponent &component)
{
    auto *regression = dynamic_cast<TRegression *>(&component);
    if (regression == nullptr)
        throw EInvalidCast(QStringLiteral("\"%1\" is a %2, which has no model.")
                               .arg(component.Name(), QLatin1String(component.metaObject()->className())));
    const RegressionModel before = RegressionModel::of(*regression);
    RegressionModel model = before;
    // The window in front owns it and may go while the dialog is open.
    const QPointer<TModelDialog> dialog = new TModelDialog(windowInFront());
    const auto gone = qScopeGuard([&dialog] { delete dialog; });
    const auto *reading = new FieldReading(
        regression->DataSet(), [&dialog](const ModelFields &fields) { dialog->Editor().SetFields(fields); }, dialog);
    if (!reading->WhyNotYet().isEmpty()) {
        ModelFields none;
        none.why = reading->WhyNotYet();
        dialog->Editor().SetFields(none);
    }
    std::vector<std::pair<QString, QVariant>> changes;
    if (!dialog->OpenForm(component.Name(), model))
        return changes;
    for (const int place : model.differences(before))
        changes.emplace_back(RegressionModel::property(place), model.strings(place));
    return changes;
}
