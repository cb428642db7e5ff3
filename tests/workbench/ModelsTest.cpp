// SPDX-License-Identifier: MIT
#include "engine/kernel/Nestedtest.h"
#include "workbench/Comparison.h"
#include "workbench/Modelstable.h"
#include "workbench/Recordspage.h"
#include "workbench/Workbenchtest.h"

#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QTableView>
#include <QUndoStack>

namespace {

class Models : public Workbench
{
protected:
    nuvo::Sitting &sitting() { return window->CurrentSitting(); }
    void typeFilter(const char *condition)
    {
        auto *const edit = window->findChild<QLineEdit *>(u("Filter"));
        edit->setText(u(condition));
        QTest::keyClick(edit, Qt::Key_Return);
    }
    nuvo::ModelComparison compareLastTwo()
    {
        const std::vector<nuvo::KeptModel> &models = sitting().Models();
        return nuvo::compare(models[models.size() - 2], models.back());
    }
};

/// All that undo has to bring back.
struct Moment
{
    nuvo::ModelState state;
    QStringList models;

    friend bool operator==(const Moment &, const Moment &) = default;
};

Moment momentOf(const nuvo::Sitting &sitting)
{
    Moment moment{sitting.State(), {}};
    for (const nuvo::KeptModel &model : sitting.Models())
        moment.models.append(model.name + u'|' + model.state.title());
    moment.models.sort();
    return moment;
}

} // namespace

TEST_F(Models, ThatAreNestedAreComparedByTheTestOfTheirFurtherTerms)
{
    drop(csv("data.csv", 50));
    defineXY();
    window->Editor().AddFields({u("z")});
    const double t = window->Fit().Regression()->GetPValue(2);
    const nuvo::ModelComparison comparison = compareLastTwo();
    EXPECT_EQ(comparison.obstacle, QString());
    EXPECT_EQ(comparison.differences, QStringList(u("Only in the second: z")));
    EXPECT_TRUE(comparison.test.contains(u("F(1, 47) = "))) << comparison.test.toStdString();
    // Of one term it is the test of its coefficient.
    EXPECT_TRUE(comparison.test.contains(u("p = %1").arg(QLocale().toString(t, 'g', 4))))
        << comparison.test.toStdString();
}

TEST_F(Models, ThatAreNotNestedHaveNoTest)
{
    drop(csv("data.csv", 50));
    defineXY();
    window->Editor().Remove(1);
    window->Editor().AddFields({u("z")});
    ASSERT_EQ(sitting().Models().size(), 2U);
    EXPECT_EQ(compareLastTwo().obstacle, QString());
    EXPECT_EQ(compareLastTwo().test, QString());
}

TEST_F(Models, OfOtherRecordsOrResponsesDoNotCompare)
{
    drop(csv("data.csv", 50));
    defineXY();
    window->Editor().AddFields({u("z")});
    typeFilter("x > 10");
    EXPECT_TRUE(compareLastTwo().obstacle.contains(u("different numbers of records")));
    typeFilter("x <= 40");
    EXPECT_TRUE(compareLastTwo().obstacle.contains(u("not of the same ones")))
        << compareLastTwo().obstacle.toStdString();
    window->Editor().Remove(2);
    EXPECT_EQ(compareLastTwo().obstacle, QString()) << "the same records again";
    EXPECT_NE(compareLastTwo().test, QString());
    window->Editor().MakeResponse(u("z"));
    EXPECT_TRUE(compareLastTwo().obstacle.contains(u("different responses")));
    drop(csv("other.csv", 50));
    defineXY();
    EXPECT_TRUE(compareLastTwo().obstacle.contains(u("different tables")));
}

TEST_F(Models, OfWhichOneHasMoreNullsAreOfOtherRecords)
{
    QFile file(folder.filePath(u("holes.csv")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("y,a,b\n1,1,5\n3,2,\n2,3,4\n5,4,9\n4,5,2\n7,6,3\n");
    file.close();
    drop(file.fileName());
    window->Editor().MakeResponse(u("y"));
    window->Editor().AddFields({u("a")});
    window->Editor().AddFields({u("b")});
    EXPECT_TRUE(compareLastTwo().obstacle.contains(u("IS NOT NULL"))) << compareLastTwo().obstacle.toStdString();
    EXPECT_EQ(compareLastTwo().test, QString());
}

TEST_F(Models, AreComparedFromTheMenu)
{
    drop(csv("data.csv", 50));
    defineXY();
    entry("ModelMenu", "Compare Two Models…").trigger();
    EXPECT_TRUE(message().contains(u("Select two models"))) << message().toStdString();
    window->Editor().AddFields({u("z")});
    window->findChild<nuvo::ModelsTable *>()->selectAll();
    QString shown;
    answer = [&](QDialog &dialog) {
        shown = qobject_cast<QMessageBox *>(&dialog)->text();
        return 0;
    };
    entry("ModelMenu", "Compare Two Models…").trigger();
    for (const char *part : {"First: y on x\n", "Second: y on x, z\n", "R²: ", "AIC: ", "F(1, 47)"})
        EXPECT_TRUE(shown.contains(u(part))) << part << '\n' << shown.toStdString();
}

TEST_F(Models, AndRecordsAreSortedFromTheMenuOfTheirTable)
{
    drop(csv("data.csv", 50));
    defineXY();
    window->Editor().AddFields({u("z")});
    const auto sortBy = [](QAbstractItemView &view, const QString &heading) {
        auto *const menu = view.findChild<QMenu *>(u("SortMenu"));
        ASSERT_NE(menu, nullptr);
        EXPECT_TRUE(view.actions().contains(menu->menuAction()));
        Q_EMIT menu->aboutToShow();
        for (QAction *const action : menu->actions()) {
            if (action->text() == heading)
                return action->trigger();
        }
        ADD_FAILURE() << heading.toStdString();
    };
    QTableView &records = window->ShownPages().Records().View();
    sortBy(records, u("z"));
    EXPECT_EQ(records.model()->index(0, 2).data().toString(), u("0"));
    sortBy(records, u("z"));
    EXPECT_EQ(records.model()->index(0, 2).data().toString(), u("16"));
    auto *const models = window->findChild<nuvo::ModelsTable *>();
    sortBy(*models, u("R²"));
    const double first = models->model()->index(0, 2).data(Qt::UserRole).toDouble();
    const double second = models->model()->index(1, 2).data(Qt::UserRole).toDouble();
    EXPECT_LT(first, second);
    sortBy(*models, u("R²"));
    EXPECT_EQ(models->model()->index(0, 2).data(Qt::UserRole).toDouble(), second);
}

TEST_F(Models, AreBroughtBackAndThrownAwayFromTheMenuOfTheirTable)
{
    drop(csv("data.csv", 50));
    defineXY();
    window->Editor().AddFields({u("z")});
    auto *const models = window->findChild<nuvo::ModelsTable *>();
    const auto trigger = [&](const char *beginning) {
        for (QAction *const action : models->actions()) {
            if (action->text().remove(u'&').startsWith(u(beginning)))
                return action->trigger();
        }
        ADD_FAILURE() << beginning;
    };
    models->setCurrentIndex(models->model()->index(0, 0));
    trigger("Bring Back");
    EXPECT_EQ(window->Fit().Regression()->GetNumVars(), 1);
    EXPECT_EQ(models->Selected(), std::vector<int>{0}) << "the list is made anew, and the place is the same";
    trigger("Throw Away");
    EXPECT_EQ(sitting().Models().size(), 1U);
}

TEST_F(Models, KeepTheirComparisonOverAStart)
{
    drop(csv("data.csv", 50));
    defineXY();
    window->Editor().AddFields({u("z")});
    const QString before = compareLastTwo().test;
    window.reset();
    begin();
    EXPECT_EQ(compareLastTwo().test, before);
    EXPECT_NE(before, QString());
}

TEST_F(Models, OfALongListShowTheCurrentOneAtTheStart)
{
    drop(csv("data.csv", 50));
    defineXY();
    const nuvo::KeptModel first = sitting().Models().front();
    for (int i = 1; i < 40; ++i) {
        nuvo::KeptModel model = first;
        model.state.filter = u("x > %1").arg(i);
        sitting().Keep(model);
    }
    sitting().BringBack(39);
    window.reset();
    begin();
    QApplication::processEvents();
    auto *const models = window->findChild<nuvo::ModelsTable *>();
    ASSERT_EQ(sitting().Current(), 39);
    EXPECT_LT(models->viewport()->height(), 20 * models->fontMetrics().height());
    EXPECT_TRUE(models->viewport()->rect().contains(models->visualRect(models->model()->index(39, 0))));
}

TEST_F(Models, AndStatesComeBackThroughALongWayOfUndoAndRedo)
{
    drop(csv("data.csv", 60));
    auto *const models = window->findChild<nuvo::ModelsTable *>();
    const auto choose = [&](int row) {
        models->selectionModel()->select(models->model()->index(row, 0),
                                         QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    };
    const std::vector<std::function<void()>> changes{
        [&] { window->Editor().MakeResponse(u("y")); },
        [&] { window->Editor().AddFields({u("x")}); },
        [&] { window->Editor().AddFields({u("z")}); },
        [&] { window->Editor().Move(1, 1); },
        [&] {
            auto *const box = window->findChild<QComboBox *>(u("TransformationX1"));
            box->setCurrentIndex(box->findText(u("square"), Qt::MatchContains) >= 0
                                     ? box->findText(u("square"), Qt::MatchContains)
                                     : 2);
            Q_EMIT box->activated(box->currentIndex());
        },
        [&] { typeFilter("x > 5"); },
        [&] { entry("ModelMenu", "Every Record").trigger(); },
        [&] { entry("ModelMenu", "First 2500 Records").trigger(); },
        [&] {
            window->ShownPages().Records().View().selectRow(0);
            entry("ModelMenu", "Leave Selected Records Out").trigger();
        },
        [&] { models->model()->setData(models->model()->index(0, 0), u("first"), Qt::EditRole); },
        [&] {
            choose(0);
            QTest::keyClick(models, Qt::Key_Return);
        },
        [&] {
            choose(1);
            QTest::keyClick(models, Qt::Key_Delete);
        },
        [&] { window->Editor().Remove(1); },
        [&] { drop(csv("other.csv", 20)); },
        [&] { defineXY(); },
    };
    const auto settle = [&] {
        while (window->Fit().IsReading())
            QTest::qWait(5);
    };
    QUndoStack &undo = sitting().Undo();
    const int start = undo.index();
    std::vector<Moment> way{momentOf(sitting())};
    std::vector<int> steps{start};
    for (size_t i = 0; i < changes.size(); ++i) {
        changes[i]();
        settle();
        ASSERT_GT(undo.index(), steps.back()) << "change " << i << " can be undone; " << message().toStdString();
        way.push_back(momentOf(sitting()));
        steps.push_back(undo.index());
    }
    // The models that were tried stay in the list; what a person did to the list goes and comes.
    const auto isAt = [&](size_t moment) {
        EXPECT_EQ(sitting().State(), way[moment].state) << "moment " << moment;
        for (const QString &model : way[moment].models)
            EXPECT_TRUE(momentOf(sitting()).models.contains(model)) << moment << ' ' << model.toStdString();
    };
    for (int round = 0; round < 2; ++round) {
        for (size_t moment = way.size() - 1; moment > 0; --moment) {
            while (undo.index() > steps[moment - 1])
                entry("EditMenu", "Undo").trigger();
            settle();
            isAt(moment - 1);
            EXPECT_EQ(window->Editor().Model(), way[moment - 1].state.model);
        }
        for (size_t moment = 1; moment < way.size(); ++moment) {
            while (undo.index() < steps[moment])
                entry("EditMenu", "Redo").trigger();
            settle();
            isAt(moment);
            EXPECT_EQ(window->Editor().Model(), way[moment].state.model);
        }
    }
    EXPECT_FALSE(entry("EditMenu", "Redo").isEnabled());
}

TEST(ModelsTable, ShowsTheCurrentModelAndFiguresWithTheirLastDigits)
{
    nuvo::Sitting sitting;
    nuvo::ModelsTable table(sitting);
    table.resize(500, 120);
    table.show();
    for (int i = 0; i < 30; ++i) {
        nuvo::KeptModel model;
        model.state.filter = u("Year > %1").arg(i);
        model.aic = 3116.099;
        sitting.Change(model.state, {});
        sitting.Keep(model);
    }
    const auto isSeen = [&](int row) {
        return table.viewport()->rect().contains(table.visualRect(table.model()->index(row, 0)));
    };
    EXPECT_TRUE(isSeen(29));
    EXPECT_FALSE(isSeen(0));
    EXPECT_EQ(table.model()->index(0, nuvo::KeptModelsModel::Aic).data().toString(), u("3116.10"));
    sitting.Change(sitting.Models()[0].state, {});
    EXPECT_TRUE(isSeen(0));
}
