// SPDX-License-Identifier: MIT
#include "design/session/Hands.h"
#include "design/session/Walk.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QTreeView>

namespace {

/// What docs/designer.md tells a newcomer to do, from an empty form to figures on the screen, action by action.
class PageWalk : public Hands
{
public:
    explicit PageWalk(QDesignerFormEditorInterface &core) : Hands(core) {}

    void run()
    {
        QDesignerFormWindowInterface *first = core_.formWindowManager()->activeFormWindow();
        QFile empty(u("empty.ui"));
        if (!empty.open(QIODevice::ReadOnly))
            qFatal("no empty form");
        form_ = open(QString::fromUtf8(empty.readAll()));
        form_->setFileName(QFileInfo(u("Designed.ui")).absoluteFilePath());
        watch_.start();
        define();
        fitAndShow();
        see("pageActions", actions_);
        see("pageMilliseconds", watch_.elapsed());
        selection();
        see("pageContents", contents());
        see("pageWords", words_);
        delete std::exchange(form_, first);
        core_.formWindowManager()->setActiveFormWindow(first);
        settle();
    }

private:
    void act(const QString &what)
    {
        actions_ += what;
        qInfo("%s", qPrintable(what));
        settle();
    }

    void doubleClick(TComponent *component, const std::function<void(QWidget *)> &use)
    {
        act(u("double-click ") + component->Name());
        during([&] { QTest::mouseDClick(component, Qt::LeftButton, {}, QPoint(16, 16)); }, use);
    }

    static void press(QTreeView *list, const char *field, Qt::Key key)
    {
        for (int i = 0; i < list->model()->rowCount(); ++i) {
            if (list->model()->index(i, 0).data().toString() == u(field)) {
                list->setFocus();
                list->setCurrentIndex(list->model()->index(i, 0));
                QTest::keyClick(list, key);
            }
        }
    }

    void define()
    {
        put("TMLRTable", QPoint(40, 40));
        act(u("drag TMLRTable onto the form"));
        auto *table = component<TComponent>("mlrTable");
        words_ += u(table->metaObject()->className());
        doubleClick(table, [&](QWidget *window) {
            auto *dialog = window->findChild<QFileDialog *>();
            if (dialog == nullptr)
                dialog = qobject_cast<QFileDialog *>(window);
            if (dialog == nullptr)
                qFatal("no file dialog but %s", window->metaObject()->className());
            act(u("double-click samples.db"));
            auto *name = dialog->findChild<QLineEdit *>(u("fileNameEdit"));
            name->setText(QFileInfo(u("samples.db")).absoluteFilePath());
            QTest::keyClick(name, Qt::Key_Return);
        });
        words_ += table->property("DatabaseName").toString();
        doubleClick(table, [&](QWidget *window) {
            auto *values = window->findChild<QComboBox *>();
            for (int i = 0; i < values->count(); ++i)
                words_ += values->itemText(i);
            values->setCurrentText(u("Longley"));
            act(u("type or choose Longley"));
            act(u("Enter"));
            QTest::keyClick(window, Qt::Key_Return);
        });
        fromMenu(table, "Model…", [&](QWidget *dialog) {
            auto *list = dialog->findChild<QTreeView *>(u("FieldsView"));
            for (const char *field : {"TOTEMP", "GNP", "UNEMP", "YEAR"}) {
                words_ += u(field);
                press(list, field, field == QByteArray("TOTEMP") ? Qt::Key_Y : Qt::Key_Return);
                act(u(field) == u("TOTEMP") ? u("Y on TOTEMP") : u("double-click ") + u(field));
            }
            auto *form = dialog->findChild<QComboBox *>(u("TransformationX1"));
            form->setFocus();
            QTest::keyClick(form, Qt::Key_Down);
            act(u("ln beside X1"));
            for (int i = 0; i < form->count(); ++i)
                words_ += form->itemText(i);
            for (const QLabel *label : dialog->findChildren<QLabel *>())
                words_ += label->text().remove(u'&');
            auto *ok = dialog->findChild<QPushButton *>(u("ModelOK"));
            words_ += ok->text().remove(u'&');
            act(u("OK"));
            QTest::mouseClick(ok, Qt::LeftButton);
        });
        select(table);
        for (const QString &row : rows())
            words_ += row;
        words_ += rowText("Model");
        see("pageModelRow", rowText("Model"));
    }

    void fromMenu(TComponent *component, const char *entry, const std::function<void(QWidget *)> &use)
    {
        act(u("right-click ") + component->Name());
        for (const QAction *action : contextActions(component))
            words_ += action->text();
        act(u(entry));
        during([&] { contextAction(component, entry)->trigger(); }, use);
    }

    void fitAndShow()
    {
        auto *table = component<TComponent>("mlrTable");
        act(u("right-click mlrTable"));
        act(u("Fit and show…"));
        QTimer timer;
        QStringList cells;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            auto *window = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (window == nullptr || !window->inherits("TStatisticsForm"))
                return;
            timer.stop();
            for (const QAbstractItemView *view : window->findChildren<QAbstractItemView *>()) {
                const QAbstractItemModel *model = view->model();
                for (int i = 0; model != nullptr && i < model->rowCount(); ++i) {
                    for (int j = 0; j < model->columnCount(); ++j)
                        cells += model->index(i, j).data().toString();
                }
            }
            window->reject();
        });
        timer.start(20);
        contextAction(table, "Fit and show…")->trigger();
        see("pageFigures", cells.filter(u("60288.69"))); // fitted for 1947
    }

    void selection()
    {
        put("TStepWiseMLR", QPoint(160, 40));
        auto *stepWise = component<TComponent>("stepWiseMLR");
        select(stepWise);
        words_ += choose("Dataset", "mlrTable");
        words_ += u(stepWise->metaObject()->className());
        for (const QAction *action : contextActions(stepWise))
            words_ += action->text();
        words_ += rows();
        contextAction(stepWise, "Choose…")->trigger();
        settle();
        see("pageChoice", takeMessages());
    }

    QElapsedTimer watch_;
    QStringList actions_;
    QStringList words_;
};

} // namespace

QJsonObject walkThroughPage(QDesignerFormEditorInterface &core)
{
    PageWalk walk(core);
    walk.run();
    return walk.seen();
}
