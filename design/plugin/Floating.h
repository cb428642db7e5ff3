// SPDX-License-Identifier: MIT
#pragma once

#include <QDesignerFormWindowInterface>
#include <QHash>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QTimer>

class TComponent;

namespace nuvo {

/// Makes a component show itself on a form that is being edited, and look up names on that form alone.
/// \param warning whether its icon says that something is missing.
void putOn(TComponent &component, const QDesignerFormWindowInterface &form, bool warning = false);

/// Keeps the components of a form out of its layouts: where a layout took one up, it goes back to where it floated
/// last. Those that are not on the form at the moment are told so.
class Floating : public QObject
{
    Q_OBJECT

public:
    explicit Floating(QDesignerFormWindowInterface &form);

private:
    struct Place
    {
        QPointer<QWidget> parent;
        QPoint position;
    };
    void Sweep();
    void TakeOut(TComponent &component);

    QDesignerFormWindowInterface &form_;
    QHash<const TComponent *, Place> places_; ///< where each component floated last
    QTimer timer_;
};

} // namespace nuvo
