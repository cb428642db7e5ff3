// SPDX-License-Identifier: MIT
#include "design/session/Walk.h"

#include "design/session/Hands.h"
#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTableWidget>
#include <QTreeView>
#include <QUndoStack>

namespace {

/// The model dialog and the SQL editor on a form of their own.
class ModelWalk : public Hands
{
public:
    explicit ModelWalk(QDesignerFormEditorInterface &core) : Hands(core) {}

    void run()
    {
        QDesignerFormWindowInterface *first = core_.formWindowManager()->activeFormWindow();
        form_ = openEmpty();
        takeMessages();
        defineModel();
        keepWhatNobodyTouches();
        editSql();
        delete form_;
        form_ = openEmpty();
        walkToFigures();
        delete std::exchange(form_, first);
        core_.formWindowManager()->setActiveFormWindow(first);
        settle();
    }

private:
    QDesignerFormWindowInterface *openEmpty()
    {
        return open(u(R"(<ui version="4.0"><class>Form</class><widget class="QWidget" name="Form">
            <property name="geometry"><rect><x>0</x><y>0</y><width>400</width><height>300</height></rect></property>
            </widget></ui>)"));
    }

    /// From an empty form to figures, with each action counted: a click, a drag, a word and Enter, a combination of
    /// keys.
    void walkToFigures()
    {
        int actions = 0;
        put("TMLRTable", QPoint(40, 40)); // a drag
        ++actions;
        auto *table = component<TMLRTable>("mlrTable");
        type("DatabaseName", u("samples.db")); // a click on the row, the name and Enter
        actions += 2;
        choose("TableName", "Longley"); // a click on the row, one on its arrow, one on the name
        actions += 3;
        actions += 2; // the right button on the component, "Model…"
        duringModel(table, [&](QWidget *dialog) {
            auto *list = dialog->findChild<QTreeView *>(u("FieldsView"));
            const auto place = [list](const char *field) {
                for (int i = 0; i < list->model()->rowCount(); ++i) {
                    if (list->model()->index(i, 0).data().toString() == u(field))
                        return list->visualRect(list->model()->index(i, 0)).center();
                }
                qFatal("no field %s", field);
                return QPoint();
            };
            // What a drag from the list drops.
            auto *response = dialog->findChild<QWidget *>(u("FieldY"));
            const std::unique_ptr<QMimeData> mime(list->model()->mimeData({list->indexAt(place("TOTEMP"))}));
            QDragEnterEvent enter(response->rect().center(), Qt::CopyAction, mime.get(), Qt::LeftButton, {});
            QApplication::sendEvent(response, &enter);
            QDropEvent drop(response->rect().center(), Qt::CopyAction, mime.get(), Qt::LeftButton, {});
            QApplication::sendEvent(response, &drop);
            ++actions;
            for (const char *field : {"GNP", "UNEMP", "YEAR"}) {
                QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place(field));
                QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, place(field));
                ++actions;
            }
            QTest::mouseClick(dialog->findChild<QPushButton *>(u("ModelOK")), Qt::LeftButton);
            ++actions;
        });
        see("definitionsOnTheWay", definitions("mlrTable"));
        see("messagesOnTheWay", takeMessages());
        actions += 2; // the right button, "Fit and show…"
        during([&] { contextAction(table, "Fit and show…")->trigger(); },
               [&](QWidget *window) {
                   see("figuresWindow", window->objectName());
                   QString page;
                   for (const QTextEdit *text : window->findChildren<QTextEdit *>())
                       page += text->toPlainText();
                   see("figuresAreThere", page.contains(u("TOTEMP")) && page.contains(u("UNEMP")));
                   QTest::keyClick(window, Qt::Key_Escape);
               });
        see("actionsToFigures", actions);
    }
    static void press(QTreeView *list, const char *field, Qt::Key key)
    {
        for (int i = 0; i < list->model()->rowCount(); ++i) {
            if (list->model()->index(i, 0).data().toString() == u(field)) {
                list->setFocus();
                list->setCurrentIndex(list->model()->index(i, 0));
                QTest::keyClick(list, key);
                return;
            }
        }
        qFatal("no field %s", field);
    }
    QStringList definitions(const char *name) const
    {
        QStringList list{strings(name, "ResponseVarY").join(u' ')};
        for (int k = 1; k <= 4; ++k)
            list +=
                strings(name, qPrintable(QStringLiteral("ControlVar%1").arg(k, 2, 10, QLatin1Char('0')))).join(u' ');
        return list;
    }
    void duringModel(TComponent *of, const std::function<void(QWidget *)> &use)
    {
        during([&] { contextAction(of, "Model…")->trigger(); }, use);
    }

    void defineModel()
    {
        put("TMLRTable", QPoint(40, 40));
        auto *table = component<TMLRTable>("mlrTable");
        type("DatabaseName", u("samples.db"));
        choose("TableName", "Longley");
        const QString before = contents();
        const int steps = form_->commandHistory()->index();
        duringModel(table, [&](QWidget *dialog) {
            auto *list = dialog->findChild<QTreeView *>(u("FieldsView"));
            see("modelTitle", dialog->windowTitle());
            see("modelFieldFocus", dialog->focusWidget() == list);
            press(list, "TOTEMP", Qt::Key_Y);
            press(list, "GNP", Qt::Key_Return);
            press(list, "UNEMP", Qt::Key_Return);
            press(list, "YEAR", Qt::Key_Return);
            auto *box = dialog->findChild<QComboBox *>(u("TransformationX1"));
            box->setFocus();
            QTest::keyClick(box, Qt::Key_Down);
            see("modelTerm", dialog->findChild<QLabel *>(u("TermX1"))->text());
            take(dialog, "designer-model.png");
            QTest::mouseClick(dialog->findChild<QPushButton *>(u("ModelOK")), Qt::LeftButton);
        });
        see("modelDefinitions", definitions("mlrTable"));
        see("modelSteps", form_->commandHistory()->index() - steps);
        see("modelUndoText", form_->commandHistory()->undoText());
        const QString after = contents();
        core_.formWindowManager()->actionUndo()->trigger();
        settle();
        see("modelUndone", contents() == before);
        core_.formWindowManager()->actionRedo()->trigger();
        settle();
        see("modelRedone", contents() == after);
        table->Open();
        see("modelLoads", table->ReLoad());
        table->Execute();
        see("modelRSquared", table->GetRSquared());
        table->Close();
    }

    void keepWhatNobodyTouches()
    {
        auto *table = component<TMLRTable>("mlrTable");
        const int steps = form_->commandHistory()->index();
        const QString before = contents();
        duringModel(table, [&](QWidget *dialog) {
            QTest::mouseClick(dialog->findChild<QPushButton *>(u("ModelOK")), Qt::LeftButton);
        });
        duringModel(table, [&](QWidget *dialog) {
            press(dialog->findChild<QTreeView *>(u("FieldsView")), "POP", Qt::Key_Return);
            QTest::mouseClick(dialog->findChild<QPushButton *>(u("ModelCancel")), Qt::LeftButton);
        });
        see("modelStepsOfNothing", form_->commandHistory()->index() - steps);
        see("modelSameForm", contents() == before);
        // A list of an odd kind stays as it is when its neighbour is taken away.
        const QStringList odd{u("Active"), u("Cube"), u("GNP"), u("a"), u("b"), u("c")};
        table->setProperty("ControlVar04", odd);
        duringModel(table, [&](QWidget *dialog) {
            auto *place = dialog->findChild<QWidget *>(u("FieldX2"));
            place->setFocus();
            QTest::keyClick(place, Qt::Key_Delete);
            QTest::mouseClick(dialog->findChild<QPushButton *>(u("ModelOK")), Qt::LeftButton);
        });
        see("modelAfterDelete", definitions("mlrTable"));
    }

    /// From an empty query to figures.
    void editSql()
    {
        put("TMLRQuery", QPoint(160, 40));
        auto *query = component<TMLRQuery>("mlrQuery");
        see("queryMenu", contextActions(query).value(2)->text());
        type("DatabaseName", u("samples.db"));
        const auto doubleClick = [&] { QTest::mouseDClick(query, Qt::LeftButton, {}, QPoint(16, 16)); };
        const int steps = form_->commandHistory()->index();
        const QString before = contents();
        during(doubleClick, [&](QWidget *dialog) {
            see("sqlTitle", dialog->windowTitle());
            auto *text = dialog->findChild<QPlainTextEdit *>(u("SqlText"));
            QTest::keyClicks(text, u("SELECT TOTEMP, GNP, YEAR FROM Longley"));
            // F5 would do it, were the dialog the active window of this platform at every time.
            QTest::mouseClick(dialog->findChild<QPushButton *>(u("TrySql")), Qt::LeftButton);
            auto *rows = dialog->findChild<QTableWidget *>(u("SqlRows"));
            for (int i = 0; i < 100 && rows->rowCount() == 0; ++i)
                settle(50);
            see("sqlRows", rows->rowCount());
            auto *tables = dialog->findChild<QTreeWidget *>(u("SqlTables"));
            for (int i = 0; i < tables->topLevelItemCount(); ++i) {
                if (tables->topLevelItem(i)->text(0) == u("Longley"))
                    tables->topLevelItem(i)->setExpanded(true);
            }
            settle();
            take(dialog, "designer-sql.png");
            QTest::mouseClick(dialog->findChild<QPushButton *>(u("SqlOK")), Qt::LeftButton);
        });
        see("sqlLines", query->SQLLines());
        see("sqlSteps", form_->commandHistory()->index() - steps);
        see("sqlUndoText", form_->commandHistory()->undoText());
        see("sqlNotForTranslation",
            contents().contains(QRegularExpression(u("name=\"SQL\" stdset=\"0\">\\s*<stringlist notr=\"true\">"))));
        core_.formWindowManager()->actionUndo()->trigger();
        settle();
        see("sqlUndone", contents() == before);
        core_.formWindowManager()->actionRedo()->trigger();
        settle();
        // By the row, and without a change: no step.
        const int redone = form_->commandHistory()->index();
        select(query);
        QToolButton *button = rowButton("SQL");
        see("sqlButton", button->text());
        during([&] { QTest::mouseClick(button, Qt::LeftButton); },
               [&](QWidget *dialog) {
                   QTest::mouseClick(dialog->findChild<QPushButton *>(u("SqlOK")), Qt::LeftButton);
               });
        see("sqlStepsOfNothing", form_->commandHistory()->index() - redone);
        during(doubleClick, [&](QWidget *dialog) {
            see("afterSql", dialog->windowTitle());
            auto *edit = dialog->findChild<QLineEdit *>(u("edStringX"));
            for (int i = 0; i < 100 && (edit->completer() == nullptr || edit->completer()->model()->rowCount() == 0);
                 ++i)
                settle(50);
            QStringList names;
            for (int i = 0; edit->completer() != nullptr && i < edit->completer()->model()->rowCount(); ++i)
                names += edit->completer()->model()->index(i, 0).data().toString();
            see("queryFields", names);
            QTest::mouseClick(dialog->findChild<QPushButton *>(u("bbtnCancel")), Qt::LeftButton);
        });
        duringModel(query, [&](QWidget *dialog) {
            auto *list = dialog->findChild<QTreeView *>(u("FieldsView"));
            for (int i = 0; i < 100 && list->model()->rowCount() == 0; ++i)
                settle(50);
            press(list, "TOTEMP", Qt::Key_Y);
            press(list, "GNP", Qt::Key_Return);
            QTest::mouseClick(dialog->findChild<QPushButton *>(u("ModelOK")), Qt::LeftButton);
        });
        query->Open();
        see("queryLoads", query->ReLoad());
        query->Close();
    }
};

} // namespace

QJsonObject walkThroughModels(QDesignerFormEditorInterface &core)
{
    ModelWalk walk(core);
    walk.run();
    return walk.seen();
}
