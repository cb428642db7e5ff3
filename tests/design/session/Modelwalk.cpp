#include "design/session/Walk.h"

#include "design/session/Hands.h"
#include "engine/Mlrtable.h"

#include <QLabel>
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
        form_ = open(u(R"(<ui version="4.0"><class>Form</class><widget class="QWidget" name="Form">
            <property name="geometry"><rect><x>0</x><y>0</y><width>400</width><height>300</height></rect></property>
            </widget></ui>)"));
        defineModel();
        keepWhatNobodyTouches();
        delete std::exchange(form_, first);
        core_.formWindowManager()->setActiveFormWindow(first);
        settle();
    }

private:
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
};

} // namespace

QJsonObject walkThroughModels(QDesignerFormEditorInterface &core)
{
    ModelWalk walk(core);
    walk.run();
    return walk.seen();
}
