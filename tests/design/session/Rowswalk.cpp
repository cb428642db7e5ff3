// SPDX-License-Identifier: MIT
#include "design/session/Hands.h"
#include "design/session/Walk.h"
#include "engine/Mlrtable.h"
#include "select/Stepmain.h"

#include <QComboBox>
#include <QContextMenuEvent>
#include <QDialogButtonBox>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMainWindow>
#include <QMenu>
#include <QMetaProperty>
#include <QPushButton>
#include <QUndoStack>

namespace {

class RowsWalk : public Hands
{
public:
    explicit RowsWalk(QDesignerFormEditorInterface &core) : Hands(core) {}

    void run()
    {
        QFile file(u("saved.ui"));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("no saved form");
        form_ = open(QString::fromUtf8(file.readAll()));
        lookAtRows();
        lookAgain();
        clearDefinitions();
        rename();
        removeAndBringBack();
        fitAndShow();
        runSelection();
        chooseFile();
        delete form_;
    }

private:
    QDesignerPropertySheetExtension *sheetOf(QObject *object) const
    {
        return qt_extension<QDesignerPropertySheetExtension *>(core_.extensionManager(), object);
    }

    void undo()
    {
        core_.formWindowManager()->actionUndo()->trigger();
        settle();
    }

    void lookAtRows()
    {
        // The form's own rows have parts of a font among them.
        select(form_->mainContainer());
        core_.propertyEditor()->grab();
        QStringList arrows;
        QStringList hidden;
        for (const char *name : {"mlrTable", "stepWiseMLR"}) {
            auto *shown = component<TComponent>(name);
            select(shown);
            const QMetaObject *meta = shown->metaObject();
            for (int i = TComponent::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
                const QWidget *row = openRow(meta->property(i).name());
                if (QByteArray(row->metaObject()->className()).contains("Reset"))
                    arrows += u(meta->property(i).name());
            }
            const QDesignerPropertySheetExtension *sheet = sheetOf(shown);
            for (int i = 0; i < sheet->count(); ++i) {
                if (!sheet->isVisible(i))
                    hidden += sheet->propertyName(i);
            }
        }
        hidden.removeDuplicates();
        see("rowsWithResetArrow", arrows);
        see("hiddenProperties", hidden);

        select(component<TComponent>("mlrTable"));
        see("modelRow", rowText("Model"));
        QStringList texts;
        for (const char *property : {"ResponseVarY", "ControlVar01", "ControlVar02", "ControlVar04"})
            texts += rowText(property);
        see("definitionRows", texts);
        see("defineButton", rowButton("ControlVar01")->text());
        QList<QWidget *> others;
        for (QDockWidget *dock : core_.topLevel()->findChildren<QDockWidget *>()) {
            if (dock->isVisible() && !dock->isAncestorOf(core_.propertyEditor()))
                others += dock;
        }
        for (QWidget *dock : others)
            dock->hide();
        settle(200);
        widenEditor();
        select(form_->mainContainer());
        select(component<TComponent>("mlrTable"));
        rowButton("ControlVar01");
        propertyTree()->scrollToTop();
        settle();
        take(core_.propertyEditor(), "designer-rows.png");
        for (QWidget *dock : others)
            dock->show();
        settle(200);
        during([&] { QTest::mouseClick(rowButton("Model"), Qt::LeftButton); },
               [&](QWidget *dialog) {
                   see("dialogOfModelRow", dialog->windowTitle());
                   static_cast<QDialog *>(dialog)->reject();
               });
        auto *table = component<TMLRTable>("mlrTable");
        during(
            [&] {
                QContextMenuEvent click(QContextMenuEvent::Mouse, QPoint(16, 16), table->mapToGlobal(QPoint(16, 16)));
                QApplication::sendEvent(table, &click);
            },
            [](QWidget *menu) {
                take(menu, "designer-menu.png");
                menu->close();
            });
    }

    /// For the picture.
    void widenEditor()
    {
        auto *window = qobject_cast<QMainWindow *>(core_.topLevel());
        for (QWidget *dock = core_.propertyEditor(); window != nullptr && dock != nullptr;
             dock = dock->parentWidget()) {
            if (auto *found = qobject_cast<QDockWidget *>(dock))
                window->resizeDocks({found}, {430}, Qt::Horizontal);
        }
        settle(200);
    }

    /// The editor of properties keeps what it knew of rows that are gone.
    void lookAgain()
    {
        QStringList blank;
        for (int round = 1; round <= 12; ++round) {
            select(form_->mainContainer());
            if (round % 2 == 0)
                select(component<TComponent>("stepWiseMLR"));
            select(component<TComponent>("mlrTable"));
            for (const char *property : {"Model", "ResponseVarY", "ControlVar01", "DatabaseName", "TableName"}) {
                if (rowText(property).isEmpty())
                    blank += u("%1 in round %2").arg(u(property)).arg(round);
            }
        }
        see("blankRows", blank);
    }

    void clearDefinitions()
    {
        auto *table = component<TMLRTable>("mlrTable");
        select(table);
        const QString before = contents();
        auto *clear = openRow("ControlVar01")->findChild<QToolButton *>(u("nuvoClear"));
        QTest::mouseClick(clear, Qt::LeftButton);
        settle(100);
        see("clearedByRow", strings("mlrTable", "ControlVar01"));
        see("clearedRow", rowText("ControlVar01"));
        see("modelAfterClear", rowText("Model"));
        see("clearButtonAfterwards", clear->isEnabled());
        see("clearText", form_->commandHistory()->undoText());
        see("storedWhenCleared", contents().count(u("<stringlist notr=\"true\">")));
        undo();
        see("afterUndoneClear", strings("mlrTable", "ControlVar01"));
        see("sameAfterUndoneClear", contents() == before);

        QMenu *menu = contextAction(table, "Clear definition")->menu();
        menu->popup(QPoint(100, 100));
        settle();
        QStringList entries;
        for (const QAction *action : menu->actions())
            entries += action->text();
        take(menu, "clear.png");
        menu->close();
        see("clearMenu", entries);
        menu->actions().constLast()->trigger();
        settle();
        see("modelWhenAllCleared", rowText("Model"));
        see("clearAllText", form_->commandHistory()->undoText());
        see("clearEnabledWhenNothingIs", contextAction(table, "Clear definition")->isEnabled());
        undo();
        see("sameAfterUndoneClearOfAll", contents() == before);
    }

    void rename()
    {
        auto *stepWise = component<TStepWiseMLR>("stepWiseMLR");
        auto *table = component<TMLRTable>("mlrTable");
        const QString before = contents();
        const int steps = form_->commandHistory()->index();
        form_->cursor()->setWidgetProperty(table, u("objectName"), u("jobs")); // as the object inspector does
        settle();
        see("stepsOfRenaming", form_->commandHistory()->index() - steps);
        see("datasetAfterRenaming", stepWise->Dataset());
        see("boundAfterRenaming", stepWise->Regression() == table);
        see("savedAfterRenaming", contents().contains(u("<string notr=\"true\">jobs</string>")));
        undo();
        see("datasetAfterUndoneRenaming", stepWise->Dataset());
        see("sameAfterUndoneRenaming", contents() == before);
        core_.formWindowManager()->actionRedo()->trigger();
        settle();
        see("datasetAfterRedoneRenaming", stepWise->Dataset());
        undo();
        // Typed, letter by letter.
        select(table);
        type("objectName", u("work"));
        see("datasetAfterTyping", stepWise->Dataset());
        while (form_->commandHistory()->index() > steps)
            undo();
        see("sameAfterUndoneTyping", contents() == before);
    }

    void removeAndBringBack()
    {
        auto *stepWise = component<TStepWiseMLR>("stepWiseMLR");
        select(component<TComponent>("mlrTable"));
        const QImage plain = stepWise->grab().toImage();
        core_.formWindowManager()->actionDelete()->trigger();
        settle();
        select(stepWise);
        see("rowOfMissing", rowText("Dataset"));
        see("markedIcon", stepWise->grab().toImage() != plain);
        take(stepWise, "missing.png");
        see("datasetOfMissing", stepWise->Dataset());
        undo();
        select(stepWise);
        see("rowWhenBack", rowText("Dataset"));
        form_->clearSelection(false);
        settle();
        see("plainIconWhenBack", stepWise->grab().toImage() == plain);
    }

    /// What can be seen of a form that is not to be changed.
    QJsonObject state() const
    {
        return {{u("contents"), contents()},
                {u("dirty"), form_->isDirty()},
                {u("steps"), form_->commandHistory()->count()},
                {u("index"), form_->commandHistory()->index()}};
    }

    /// As during(), for one window behind a progress dialog, which is then closed.
    void duringWindow(const char *className, const std::function<void()> &open,
                      const std::function<void(QWidget *)> &use)
    {
        QTimer timer;
        bool used = false;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            QWidget *window = QApplication::activeModalWidget();
            if (window == nullptr || !window->inherits(className))
                return;
            timer.stop();
            used = true;
            use(window);
            static_cast<QDialog *>(window)->reject();
        });
        timer.start(20);
        open();
        see(className, used);
    }

    void fitAndShow()
    {
        auto *table = component<TMLRTable>("mlrTable");
        select(table);
        const QJsonObject before = state();
        duringWindow(
            "TStatisticsForm", [&] { contextAction(table, "Fit and show…")->trigger(); },
            [&](QWidget *window) { see("statisticsTitle", window->windowTitle()); });
        see("messagesOfFitting", takeMessages());
        see("sameAfterFitting", state() == before);
        see("loadedByFitting", table->Loaded() || table->Active());

        // What is missing is said.
        contextAction(table, "Clear definition")->menu()->popup(QPoint(100, 100));
        settle();
        contextAction(table, "Clear definition")->menu()->close();
        contextAction(table, "Clear definition")->menu()->actions().constLast()->trigger();
        settle();
        contextAction(table, "Fit and show…")->trigger();
        settle();
        see("messagesWithoutDefinitions", takeMessages());
        undo();
    }

    void runSelection()
    {
        auto *stepWise = component<TStepWiseMLR>("stepWiseMLR");
        select(stepWise);
        const QJsonObject before = state();
        contextAction(stepWise, "Choose…")->trigger();
        settle();
        see("reportOfChoosing", takeMessages());
        see("sameAfterChoosing", state() == before);

        form_->cursor()->setWidgetProperty(stepWise, u("FDistTable"), u("gone"));
        settle();
        see("rowOfMissingTable", rowText("FDistTable"));
        undo();
        stepWise->SetRule(TCorvane::Textbook);
        duringWindow(
            "TChoiceForm", [&] { contextAction(stepWise, "Choose…")->trigger(); },
            [&](QWidget *window) { see("choiceTitle", window->windowTitle()); });
        see("messagesOfTextbook", takeMessages());
        stepWise->SetRule(TCorvane::Written);

        stepWise->SetDataset(u("nobody"));
        contextAction(stepWise, "Choose…")->trigger();
        settle();
        see("messagesOfChoosingNothing", takeMessages());
        stepWise->SetDataset(u("mlrTable"));
    }

    /// Puts the address of a server together, which does not answer, and takes it all the same.
    QString connectTo(TMLRTable &table)
    {
        during([&] { rowButton("DatabaseName")->menu()->actions().first()->trigger(); },
               [&](QWidget *window) {
                   const auto edit = [window](const char *name) { return window->findChild<QLineEdit *>(u(name)); };
                   window->findChild<QComboBox *>(u("kind"))->setCurrentIndex(1);
                   edit("host")->setText(u("127.0.0.1"));
                   edit("port")->setText(u("1"));
                   edit("database")->setText(u("sales"));
                   edit("user")->setText(u("me"));
                   const auto *buttons = window->findChild<QDialogButtonBox *>(u("buttons"));
                   QPushButton *ok = buttons->button(QDialogButtonBox::Ok);
                   ok->click();
                   for (int i = 0; i < 500 && ok->text() == u("OK"); ++i)
                       settle(20);
                   see("connectionRefused", window->findChild<QLabel *>(u("status"))->text());
                   ok->click();
               });
        return table.DatabaseName();
    }

    /// Beside the form or below it, a database is stored with its path from there; the form's folder has blanks and
    /// is not the working folder.
    void chooseFile()
    {
        auto *table = component<TMLRTable>("mlrTable");
        const QString folder = QDir::current().absoluteFilePath(u("Entwürfe für A"));
        QDir().mkpath(folder + u("/data"));
        QFile::copy(u("samples.db"), folder + u("/data/moved.db"));
        form_->setFileName(folder + u("/form.ui"));
        settle();
        select(table);
        const auto pick = [&](const QString &file) {
            during([&] { QTest::mouseClick(rowButton("DatabaseName"), Qt::LeftButton); },
                   [&](QWidget *window) {
                       auto *dialog = window->findChild<QFileDialog *>();
                       if (dialog == nullptr)
                           dialog = qobject_cast<QFileDialog *>(window);
                       if (dialog == nullptr)
                           qFatal("no file dialog but %s", window->metaObject()->className());
                       // The whole path, typed: what is marked would count before it, and a name alone is looked for
                       // in a folder that is read meanwhile.
                       dialog->findChild<QListView *>(u("listView"))->clearSelection();
                       dialog->findChild<QLineEdit *>(u("fileNameEdit"))->setText(file);
                       QMetaObject::invokeMethod(dialog, "accept");
                   });
            return table->DatabaseName();
        };
        see("pickedBelow", pick(folder + u("/data/moved.db")));
        see("tablesBelow", choose("TableName", ""));
        see("messagesOfBelow", takeMessages());
        see("pickedElsewhere", pick(QDir::current().absoluteFilePath(u("samples.db"))));
        select(form_->mainContainer());
        select(table);
        // In a program that was not built with the address sanitizer, but runs with it, the lock of the C library's
        // translations counts wrong, and PostgreSQL's library waits for it without end.
        if (qEnvironmentVariableIsSet("NUVO_PRELOAD")) {
            see("connected", u("not with the sanitizer"));
        } else {
            see("connected", connectTo(*table));
            form_->commandHistory()->undo();
            see("connectionUndone", table->DatabaseName());
        }
        select(form_->mainContainer());
        select(table);
        type("DatabaseName", u("nowhere.db"));
        QTest::mouseClick(rowButton("TableName"), Qt::LeftButton);
        settle(100);
        see("messagesOfNowhere", takeMessages());
        see("folders", QStringList{folder, QDir::currentPath()});
    }
};

} // namespace

QJsonObject walkThroughRows(QDesignerFormEditorInterface &core)
{
    RowsWalk walk(core);
    walk.run();
    return walk.seen();
}
