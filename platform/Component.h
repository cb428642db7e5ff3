#pragma once

#include "platform/Export.h"

#include <QWidget>

/// What a developer drops on a form: a widget only because the form designer places nothing else. It shows itself
/// while a form is being designed and is never seen at run time. Its owner is its parent; the owner deletes it.
class NUVO_EXPORT TComponent : public QWidget
{
    Q_OBJECT

public:
    explicit TComponent(QWidget *owner = nullptr);
    ~TComponent() override;

    /// The component's name, its objectName().
    QString Name() const { return objectName(); }
    void SetName(const QString &name) { setObjectName(name); }
    QWidget *Owner() const { return parentWidget(); }

    /// Whether a form designer shows this component on a form that is being edited.
    bool Designing() const { return designing_; }
    void SetDesigning(bool designing);

    /// The component of that name and class nearest to this one: names are searched from the nearest ancestor
    /// outwards, so that two copies of a form can be open. nullptr when there is none or the name is empty.
    template <class T>
    T *FindComponent(const QString &name) const
    {
        return FindComponent<T>(name, [](const T &) { return true; });
    }
    /// The same among those that a predicate takes.
    template <class T, class Takes>
    T *FindComponent(const QString &name, const Takes &takes) const;

    /// Shows a component only at design time.
    void setVisible(bool visible) override;
    QSize sizeHint() const override { return {32, 32}; }

private:
    bool designing_ = false;
};

template <class T, class Takes>
T *TComponent::FindComponent(const QString &name, const Takes &takes) const
{
    if (name.isEmpty())
        return nullptr;
    for (QObject *scope = parent(); scope != nullptr; scope = scope->parent()) {
        for (T *found : scope->findChildren<T *>(name)) {
            if (takes(*found))
                return found;
        }
    }
    return nullptr;
}
