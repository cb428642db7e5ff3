// SPDX-License-Identifier: MIT
#pragma once

#include <QDesignerFormWindowInterface>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QTimer>

#include <vector>

class TComponent;

namespace nuvo {

/// Watches the names by which components of a form refer to each other (Dataset, FDistTable).
///
/// A component that is renamed takes the references to it along: they change with the name itself, not by a step of
/// their own, so that undoing the one undoes the other. A reference to what is not on the form is marked on the
/// component's icon, until there is such a component again.
class References : public QObject
{
    Q_OBJECT

public:
    explicit References(QDesignerFormWindowInterface &form);

Q_SIGNALS:
    /// Which references lead nowhere may have changed.
    void Looked();

private:
    struct Reference
    {
        QPointer<TComponent> component;
        QByteArray property;
    };
    /// References that followed a name.
    struct Renaming
    {
        QString from;
        QString to;
        std::vector<Reference> followed;
    };

    void Watch(TComponent &component);
    void Renamed(TComponent &component, const QString &to);
    std::vector<Reference> ReferencesTo(const TComponent &component, const QString &name) const;
    void Write(const std::vector<Reference> &references, const QString &name) const;
    void Look();

    QDesignerFormWindowInterface &form_;
    QHash<const TComponent *, QString> names_; ///< of the components as they were last
    QHash<const TComponent *, std::vector<Renaming>> renamings_;
    QSet<const TComponent *> marked_;
    QTimer timer_;
};

} // namespace nuvo
