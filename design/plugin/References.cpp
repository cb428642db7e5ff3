// SPDX-License-Identifier: MIT
#include "design/plugin/References.h"

#include "design/plugin/Floating.h"
#include "design/plugin/Formedits.h"
#include "design/plugin/Rowtexts.h"
#include "engine/Regression.h"
#include "platform/Table.h"
#include "present/Forms.h"

#include <utility>

namespace {

const char *const Properties[] = {"Dataset", "FDistTable"};

bool canBe(const TComponent &component, const QByteArray &property)
{
    return property == "Dataset" ? dynamic_cast<const TRegression *>(&component) != nullptr
                                 : qobject_cast<const TTable *>(&component) != nullptr;
}

} // namespace

nuvo::References::References(QDesignerFormWindowInterface &form) : QObject(&form), form_(form)
{
    timer_.setSingleShot(true);
    timer_.setInterval(0);
    connect(&timer_, &QTimer::timeout, this, &References::Look);
    const auto soon = [this] { timer_.start(); };
    connect(&form, &QDesignerFormWindowInterface::widgetManaged, this, [this](QWidget *widget) {
        if (auto *component = qobject_cast<TComponent *>(widget))
            Watch(*component);
    });
    connect(&form, &QDesignerFormWindowInterface::widgetManaged, this, soon);
    connect(&form, &QDesignerFormWindowInterface::widgetUnmanaged, this, [this](QWidget *widget) {
        marked_.remove(qobject_cast<TComponent *>(widget)); // it comes back with its plain icon
        timer_.start();
    });
    connect(&form, &QDesignerFormWindowInterface::changed, this, soon);
    if (form.mainContainer() != nullptr) {
        for (TComponent *component : form.mainContainer()->findChildren<TComponent *>())
            Watch(*component);
    }
    soon();
}

void nuvo::References::Watch(TComponent &component)
{
    if (!names_.contains(&component)) {
        connect(&component, &QObject::objectNameChanged, this,
                [this, &component](const QString &name) { Renamed(component, name); });
        connect(&component, &QObject::destroyed, this, [this, gone = &component] {
            names_.remove(gone);
            renamings_.remove(gone);
            marked_.remove(gone);
        });
    }
    names_[&component] = component.Name();
}

void nuvo::References::Renamed(TComponent &component, const QString &to)
{
    const QString from = std::exchange(names_[&component], to);
    if (from.isEmpty() || from == to || !form_.isManaged(&component))
        return;
    // Back to the name before, as by an undo: exactly what had followed goes back.
    std::vector<Renaming> &renamings = renamings_[&component];
    if (!renamings.empty() && renamings.back().from == to && renamings.back().to == from) {
        Write(renamings.back().followed, to);
        renamings.pop_back();
    } else {
        renamings.push_back({from, to, ReferencesTo(component, from)});
        Write(renamings.back().followed, to);
    }
    timer_.start();
}

std::vector<nuvo::References::Reference> nuvo::References::ReferencesTo(const TComponent &component,
                                                                        const QString &name) const
{
    std::vector<Reference> references;
    for (TComponent *other : form_.mainContainer()->findChildren<TComponent *>()) {
        for (const char *property : Properties) {
            if (other->Designing() && other->property(property).toString() == name && canBe(component, property))
                references.push_back({other, property});
        }
    }
    return references;
}

void nuvo::References::Write(const std::vector<Reference> &references, const QString &name) const
{
    for (const Reference &reference : references) {
        if (reference.component.isNull())
            continue;
        guarded([&] { reference.component->setProperty(reference.property.constData(), name); });
        showInEditor(form_, *reference.component, QString::fromLatin1(reference.property));
    }
}

void nuvo::References::Look()
{
    if (form_.mainContainer() == nullptr)
        return;
    for (TComponent *component : form_.mainContainer()->findChildren<TComponent *>()) {
        if (!component->Designing())
            continue;
        bool missing = false;
        for (const char *property : Properties)
            missing = missing || namesNothing(*component, QString::fromLatin1(property));
        if (missing == marked_.contains(component))
            continue;
        if (missing)
            marked_.insert(component);
        else
            marked_.remove(component);
        putOn(*component, form_, missing);
    }
    Q_EMIT Looked();
}
