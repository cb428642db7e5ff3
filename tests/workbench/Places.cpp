// SPDX-License-Identifier: MIT
#include <QAbstractItemView>
#include <QApplication>
#include <QGenericPlugin>
#include <QLabel>
#include <QSaveFile>
#include <QTimer>
#include <QWidget>

namespace {

constexpr int kBetween = 100; // milliseconds
constexpr int kMostRows = 50;

/// Where what can be clicked is on the screen, a line each: its name, x, y of its middle, width and height. Rows of
/// views have the name of the view and their first cell.
QByteArray places()
{
    QByteArray lines;
    const auto add = [&lines](const QString &name, const QWidget &in, const QRect &rect) {
        const QPoint at = in.mapToGlobal(rect.center());
        lines += name.simplified().replace(u' ', u'_').toUtf8() + ' ' + QByteArray::number(at.x()) + ' ' +
                 QByteArray::number(at.y()) + ' ' + QByteArray::number(rect.width()) + ' ' +
                 QByteArray::number(rect.height()) + '\n';
    };
    for (const QWidget *const widget : QApplication::allWidgets()) {
        if (!widget->isVisible() || widget->objectName().isEmpty())
            continue;
        add(widget->objectName(), *widget, widget->rect());
        if (const auto *const label = qobject_cast<const QLabel *>(widget))
            add(label->objectName() + u'/' + label->text(), *label, label->rect());
        const auto *const view = qobject_cast<const QAbstractItemView *>(widget);
        if (view == nullptr || view->model() == nullptr)
            continue;
        for (int row = 0; row < std::min(kMostRows, view->model()->rowCount()); ++row) {
            const QModelIndex index = view->model()->index(row, 0);
            const QRect rect = view->visualRect(index);
            if (view->viewport()->rect().contains(rect.center()))
                add(view->objectName() + u'/' + index.data().toString(), *view->viewport(), rect);
        }
    }
    return lines;
}

} // namespace

/// Tells a walk with the mouse of another program where to click: the file that the environment variable NUVO_PLACES
/// names is written anew now and then. Programs load it when QT_QPA_GENERIC_PLUGINS names it.
class PlacesPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "places.json")

public:
    QObject *create(const QString &, const QString &) override
    {
        auto *const timer = new QTimer(QCoreApplication::instance());
        connect(timer, &QTimer::timeout, timer, [] {
            QSaveFile file(qEnvironmentVariable("NUVO_PLACES"));
            if (file.open(QIODevice::WriteOnly)) {
                file.write(places());
                file.commit();
            }
        });
        timer->start(kBetween);
        return timer;
    }
};

#include "Places.moc"
