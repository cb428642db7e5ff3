// SPDX-License-Identifier: MIT
#include "design/session/Walk.h"

#include "design/session/Hands.h"
#include "engine/Mlrtable.h"
#include "select/Stepmain.h"

#include <QFile>
#include <QLayout>
#include <QRegularExpression>
#include <QUndoStack>

namespace {

class Walk : public Hands
{
public:
    explicit Walk(QDesignerFormEditorInterface &core) : Hands(core) {}

    void run()
    {
        settle(500); // it brings its windows into their places
        core_.topLevel()->resize(1400, 900);
        settle(200);
        form_ = core_.formWindowManager()->activeFormWindow();
        lookAtPalette();
        putComponents();
        lookAtProperties();
        bindTable();
        defineVariables();
        cancel();
        undoAndRedo();
        bindSelection();
        save();
        preview();
        copyAndPaste();
        layOut();
        switchOnWithoutDatabase();
        resetDefinition();
        defineOnQuery();
        otherForm();
        reload();
    }

private:
    void lookAtPalette()
    {
        QDesignerWidgetBoxInterface *box = core_.widgetBox();
        QJsonArray pages;
        QStringList withoutIcon;
        for (int i = 0; i < box->categoryCount(); ++i) {
            QJsonArray widgets;
            for (int j = 0; j < box->widgetCount(i); ++j) {
                widgets += box->widget(i, j).name();
                if (box->widget(i, j).iconName().isEmpty())
                    withoutIcon += box->widget(i, j).name();
            }
            pages += QJsonObject{{u("page"), box->category(i).name()}, {u("widgets"), widgets}};
        }
        see("pages", pages);
        see("withoutIcon", withoutIcon);

        QJsonArray classes;
        QDesignerWidgetDataBaseInterface *base = core_.widgetDataBase();
        for (int i = 0; i < base->count(); ++i) {
            const QDesignerWidgetDataBaseItemInterface *item = base->item(i);
            if (item->group() != u("Nuvo Statistics") && item->group() != u("Data Access"))
                continue;
            classes += QJsonObject{{u("name"), item->name()},
                                   {u("toolTip"), item->toolTip()},
                                   {u("whatsThis"), item->whatsThis()},
                                   {u("header"), item->includeFile()},
                                   {u("icon"), !item->icon().pixmap(22).isNull()},
                                   {u("container"), item->isContainer()}};
        }
        see("classes", classes);
    }

    void putComponents()
    {
        put("TMLRTable", QPoint(40, 40));
        put("TStepWiseMLR", QPoint(160, 40));
        QJsonArray components;
        for (const TComponent *component : form_->mainContainer()->findChildren<TComponent *>()) {
            components += QJsonObject{
                {u("name"), component->Name()},         {u("class"), u(component->metaObject()->className())},
                {u("visible"), component->isVisible()}, {u("designing"), component->Designing()},
                {u("width"), component->width()},       {u("height"), component->height()}};
        }
        see("put", components);
        see("managed", form_->isManaged(component<TComponent>("mlrTable")));
    }

    void lookAtProperties()
    {
        select(component<TComponent>("stepWiseMLR"));
        see("stepWiseRows", rows());
        select(component<TComponent>("mlrTable"));
        see("tableRows", rows());
        QStringList without;
        for (const QTreeWidgetItem *item :
             propertyTree()->findItems(u("*"), Qt::MatchWildcard | Qt::MatchRecursive)) {
            if (item->childCount() == 0 || item->parent() != nullptr) {
                if (item->parent() != nullptr && item->parent()->parent() == nullptr && item->toolTip(0).isEmpty())
                    without += item->text(0);
            }
        }
        see("rowsWithoutToolTip", without);
        QStringList texts;
        for (const QAction *action : contextActions(component<TComponent>("mlrTable")))
            texts += action->text();
        see("contextMenu", texts);
    }

    void bindTable()
    {
        type("DatabaseName", u("samples.db"));
        see("tables", choose("TableName", "Longley"));
        see("databaseName", component<TMLRTable>("mlrTable")->DatabaseName());
        see("tableName", component<TMLRTable>("mlrTable")->TableName());
    }

    void defineVariables()
    {
        auto *table = component<TMLRTable>("mlrTable");
        // A double click goes to what is missing first: the response, then the first control variable.
        const auto doubleClick = [&] { QTest::mouseDClick(table, Qt::LeftButton, {}, QPoint(16, 16)); };
        during(doubleClick, [&](QWidget *dialog) {
            see("firstDialog", dialog->windowTitle());
            define(dialog, 0, "TOTEMP");
        });
        see("response", strings("mlrTable", "ResponseVarY"));
        during(doubleClick, [&](QWidget *dialog) {
            see("secondDialog", dialog->windowTitle());
            define(dialog, 2, "GNP", "designer-dialog.png");
        });
        during([&] { contextAction(table, "Define ControlVar02…")->trigger(); },
               [&](QWidget *dialog) { define(dialog, 1, "UNEMP"); });
        during([&] { QTest::mouseClick(rowButton("ControlVar03"), Qt::LeftButton); },
               [&](QWidget *dialog) { define(dialog, 1, "YEAR"); });
        see("control1", strings("mlrTable", "ControlVar01"));
        see("control2", strings("mlrTable", "ControlVar02"));
        see("control3", strings("mlrTable", "ControlVar03"));
        see("control1Row", rowText("ControlVar01"));
    }

    void cancel()
    {
        const int before = form_->commandHistory()->count();
        during([&] { contextAction(component<TComponent>("mlrTable"), "Define ControlVar01…")->trigger(); },
               [&](QWidget *dialog) {
                   QTest::mouseClick(dialog->findChild<QPushButton *>(u("bbtnCancel")), Qt::LeftButton);
               });
        see("commandsOfACancel", form_->commandHistory()->count() - before);
    }

    void undoAndRedo()
    {
        const QString before = contents();
        see("undoText", form_->commandHistory()->undoText());
        core_.formWindowManager()->actionUndo()->trigger();
        settle();
        see("control3Undone", strings("mlrTable", "ControlVar03"));
        core_.formWindowManager()->actionRedo()->trigger();
        settle();
        see("control3Redone", strings("mlrTable", "ControlVar03"));
        see("redoGivesTheSameForm", contents() == before);
    }

    void bindSelection()
    {
        select(component<TComponent>("stepWiseMLR"));
        see("datasets", choose("Dataset", "mlrTable"));
        see("percents", choose("FPercent", "5 Percent"));
        see("fTables", choose("FDistTable", "mlrTable"));
        core_.formWindowManager()->actionUndo()->trigger(); // that table holds no F values
        settle();
        auto *stepWise = component<TStepWiseMLR>("stepWiseMLR");
        see("dataset", stepWise->Dataset());
        see("percent", stepWise->FPercent());
        see("fTable", stepWise->FDistTableName());
        see("bound", stepWise->Regression() != nullptr);
        select(component<TComponent>("mlrTable"));
        rowButton("ControlVar01");
        auto *pages = core_.widgetBox()->findChild<QTreeWidget *>();
        pages->scrollToItem(pages->topLevelItem(pages->topLevelItemCount() - 1)->child(0));
        settle();
        take(core_.topLevel(), "designer.png");
        rowButton("TableName");
        take(core_.propertyEditor(), "designer-properties.png");
    }

    void save()
    {
        see("dirtyBeforeSave", form_->isDirty());
        for (const QMenu *menu : core_.topLevel()->findChildren<QMenu *>()) {
            for (QAction *action : menu->actions()) {
                if (action->text() == u("&Save"))
                    action->trigger();
            }
        }
        settle();
        see("dirtyAfterSave", form_->isDirty());
        QFile::copy(form_->fileName(), u("saved.ui"));
    }

    void copyAndPaste()
    {
        QDesignerFormWindowManagerInterface *manager = core_.formWindowManager();
        select(component<TComponent>("mlrTable"));
        manager->actionCopy()->trigger();
        settle();
        select(form_->mainContainer());
        manager->actionPaste()->trigger();
        settle();
        see("pastedControl1", strings("mlrTable_2", "ControlVar01"));
        see("pastedDesigning", component<TComponent>("mlrTable_2")->Designing());
        see("contentsAfterPaste", contents());
        select(component<TComponent>("stepWiseMLR"));
        see("datasetsAfterPaste", choose("Dataset", ""));
        auto *stepWise = component<TStepWiseMLR>("stepWiseMLR");
        during([&] { contextAction(stepWise, "Choose Dataset…")->trigger(); },
               [&](QWidget *dialog) {
                   dialog->findChild<QComboBox *>()->setCurrentText(u("mlrTable_2"));
                   QTest::keyClick(dialog, Qt::Key_Return);
               });
        see("datasetByMenu", stepWise->Dataset());
        manager->actionUndo()->trigger();
        settle();
        see("datasetUndone", stepWise->Dataset());

        // One choice for two tables is one step.
        auto *pasted = component<TMLRTable>("mlrTable_2");
        select(component<TComponent>("mlrTable"));
        form_->selectWidget(pasted, true);
        settle();
        const int steps = form_->commandHistory()->index();
        choose("TableName", "States");
        see("tablesOfBoth", QStringList{component<TMLRTable>("mlrTable")->TableName(), pasted->TableName()});
        see("stepsForBoth", form_->commandHistory()->index() - steps);
        manager->actionUndo()->trigger();
        settle();
        manager->actionUndo()->trigger();
        settle();
        see("pasteUndone", !form_->isManaged(pasted) && !pasted->isVisible());
        // Designer keeps it for a redo, out of sight.
        select(component<TComponent>("stepWiseMLR"));
        see("datasetsAfterUndonePaste", choose("Dataset", ""));
        see("findsUndonePasted",
            component<TComponent>("stepWiseMLR")->FindComponent<TMLRTable>(u("mlrTable_2")) != nullptr);
        manager->actionRedo()->trigger();
        settle();
        see("pasteRedone", form_->isManaged(pasted) && pasted->isVisible() && pasted->Designing());
        manager->actionUndo()->trigger();
        settle();
    }

    void layOut()
    {
        QDesignerFormWindowManagerInterface *manager = core_.formWindowManager();
        const QString before = contents();
        const int start = form_->commandHistory()->index();
        put("Push Button", QPoint(60, 150));
        put("Push Button", QPoint(200, 150));
        auto *table = component<TComponent>("mlrTable");
        const QPoint place = table->pos();
        see("pushButtons", form_->mainContainer()->findChildren<QPushButton *>().size());
        const int commands = form_->commandHistory()->index();

        select(form_->mainContainer());
        manager->actionGridLayout()->trigger();
        settle(200);
        const auto look = [&](const char *what) {
            QWidget *parent = table->parentWidget();
            see(what,
                QJsonObject{{u("parent"), parent->objectName()},
                            {u("inLayout"), parent->layout() != nullptr && parent->layout()->indexOf(table) >= 0},
                            {u("moved"), table->pos() != place},
                            {u("visible"), table->isVisible()}});
        };
        look("afterGrid");
        see("gridContents", contents());
        while (form_->commandHistory()->index() > commands)
            form_->commandHistory()->undo();
        settle(200);
        look("afterUndoneGrid");

        // A layout of some widgets, the component among them.
        form_->clearSelection(false);
        for (QPushButton *button : form_->mainContainer()->findChildren<QPushButton *>())
            form_->selectWidget(button, true);
        form_->selectWidget(table, true);
        settle();
        manager->actionHorizontalLayout()->trigger();
        settle(200);
        look("afterHorizontal");
        while (form_->commandHistory()->index() > commands)
            form_->commandHistory()->undo();
        settle(200);
        form_->clearSelection(false);
        for (QPushButton *button : form_->mainContainer()->findChildren<QPushButton *>())
            form_->selectWidget(button, true);
        form_->selectWidget(table, true);
        settle();
        manager->actionSplitHorizontal()->trigger();
        settle(200);
        look("afterSplitter");
        while (form_->commandHistory()->index() > start)
            form_->commandHistory()->undo();
        settle(200);
        see("layoutsUndone", contents() == before);
    }

    void preview()
    {
        select(component<TComponent>("mlrTable"));
        core_.formWindowManager()->showPreview();
        settle(300);
        QJsonArray previews;
        for (const QWidget *window : QApplication::topLevelWidgets()) {
            if (window == core_.topLevel() || window->isAncestorOf(form_))
                continue;
            for (const TComponent *component : window->findChildren<TComponent *>())
                previews +=
                    QJsonObject{{u("designing"), component->Designing()}, {u("visible"), component->isVisible()}};
        }
        see("previews", previews);
    }

    void switchOnWithoutDatabase()
    {
        auto *table = component<TMLRTable>("mlrTable");
        select(table);
        switchOn();
        see("opened", table->Active());
        see("messagesOfOpening", takeMessages());
        core_.formWindowManager()->actionUndo()->trigger();
        settle();
        see("closedByUndo", !table->Active());

        const QString before = contents();
        type("DatabaseName", u("nowhere.db"));
        const QString missing = contents();
        switchOn();
        see("activeWithoutDatabase", table->ActiveWished());
        see("messagesWithoutDatabase", takeMessages());
        see("formUnharmed", contents() == missing);
        duringNothing([&] { contextAction(table, "Choose TableName…")->trigger(); });
        see("messagesOfTables", takeMessages());
        contextAction(table, "Define ControlVar04…")->trigger();
        settle();
        see("messagesOfDefining", takeMessages());
        form_->commandHistory()->undo();
        settle();
        see("sameAfterUndo", contents() == before);
    }

    void resetDefinition()
    {
        select(component<TComponent>("mlrTable"));
        // What the row's arrow asks the form window for. The arrow itself can end Qt Designer 6.4: its property
        // editor takes the row for a part of a font that stood at the same address before, and reads that.
        form_->cursor()->resetWidgetProperty(component<TComponent>("mlrTable"), u("ControlVar01"));
        settle();
        see("resetControl1", strings("mlrTable", "ControlVar01"));
        core_.formWindowManager()->actionUndo()->trigger();
        settle();
        see("control1AfterUndoneReset", strings("mlrTable", "ControlVar01"));
    }

    /// The fields of a query are typed.
    void defineOnQuery()
    {
        const int start = form_->commandHistory()->index();
        put("TMLRQuery", QPoint(40, 200));
        during([&] { contextAction(component<TComponent>("mlrQuery"), "Define ControlVar01…")->trigger(); },
               [&](QWidget *dialog) {
                   auto *item = dialog->findChild<QAbstractButton *>(u("RadioGroup1Item3"));
                   QTest::mouseClick(item, Qt::LeftButton, {}, QPoint(8, item->height() / 2));
                   auto *edit = dialog->findChild<QLineEdit *>(u("edStringX"));
                   edit->selectAll();
                   QTest::keyClicks(edit, u("Wind"));
                   QTest::mouseClick(dialog->findChild<QPushButton *>(u("bbtnOK")), Qt::LeftButton);
               });
        see("queryControl1", strings("mlrQuery", "ControlVar01"));
        see("queryMessages", takeMessages());
        while (form_->commandHistory()->index() > start)
            form_->commandHistory()->undo();
        settle();
    }

    /// The names of one form are none of another's.
    void otherForm()
    {
        QDesignerFormWindowInterface *first = form_;
        QString other = contents();
        form_ = open(other.replace(u("mlrTable"), u("mine")));
        select(component<TComponent>("stepWiseMLR"));
        see("datasetsOfOtherForm", choose("Dataset", ""));
        auto *stepWise = component<TStepWiseMLR>("stepWiseMLR");
        see("boundOnOtherForm", stepWise->Regression() == component<TMLRTable>("mine"));
        stepWise->SetDataset(u("mlrTable"));
        see("foundAcrossForms", stepWise->FindComponent<TMLRTable>(u("mlrTable")) != nullptr);
        delete std::exchange(form_, first);
        core_.formWindowManager()->setActiveFormWindow(first);
        settle();
    }

    void reload()
    {
        QFile file(u("saved.ui"));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("no saved form");
        const QString saved = QString::fromUtf8(file.readAll());
        QDesignerFormWindowInterface *form = open(saved);
        // The size of a form is that of its window, which Designer gives to those that it opens itself.
        form->resize(form_->size());
        settle(100);
        see("saved", saved);
        see("reloaded", form->contents());
        see("dirtyAfterReload", form->isDirty());

        // Definitions as an editor of texts may have left them, and a wish that cannot be carried out.
        const auto replaced = [](QString text, const char *property, const char *value) {
            const QRegularExpression old(u("(<property name=\"%1\"[^>]*>).*?(</property>)").arg(u(property)),
                                         QRegularExpression::DotMatchesEverythingOption);
            return text.replace(old, u("\\1") + u(value) + u("\\2"));
        };
        const QString list = u("<string>Active</string><string>None</string><string>GNP</string>");
        QString broken =
            replaced(saved, "ControlVar01", qPrintable(u("<stringlist notr=\"true\">") + list + u("</stringlist>")));
        broken = replaced(broken, "ControlVar02",
                          qPrintable(u("<stringlist notr=\"true\">") + list + list + list + u("</stringlist>")));
        broken = replaced(broken, "ControlVar03", "<number>7</number>");
        broken = replaced(broken, "DatabaseName", "<string notr=\"true\">nowhere.db</string>");
        broken = replaced(broken, "Active", "<bool>true</bool>");
        form->setContents(broken);
        QDesignerFormWindowInterface *first = std::exchange(form_, form);
        see("threeStrings", strings("mlrTable", "ControlVar01"));
        see("nineStrings", strings("mlrTable", "ControlVar02"));
        see("numberForAList", strings("mlrTable", "ControlVar03"));
        see("wishedActive", component<TMLRTable>("mlrTable")->ActiveWished());
        see("messagesOfLoading", takeMessages());
        form_ = first;
        delete form;
    }
};

} // namespace

QJsonObject walkThroughDesigner(QDesignerFormEditorInterface &core)
{
    Walk walk(core);
    walk.run();
    return walk.seen();
}
