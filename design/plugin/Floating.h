#pragma once

#include <QDesignerFormWindowInterface>
#include <QHash>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QTimer>

class TComponent;

namespace nuvo {

/// Keeps the components of a form out of its layouts: where a layout took one up, it goes back to where it floated
/// last.
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
