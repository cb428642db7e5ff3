// SPDX-License-Identifier: MIT
#include "design/session/Hands.h"
#include "design/session/Walk.h"
#include "engine/Mlrtable.h"

#include <QUndoStack>

namespace {

class Resets : public Hands
{
public:
    explicit Resets(QDesignerFormEditorInterface &core) : Hands(core) {}

    void run(int rounds)
    {
        settle(500);
        core_.topLevel()->resize(1400, 900);
        settle(200);
        form_ = core_.formWindowManager()->activeFormWindow();
        put("TMLRTable", QPoint(40, 40));
        put("TStepWiseMLR", QPoint(160, 40));
        auto *table = component<TMLRTable>("mlrTable");
        for (int k = 1; k <= MaxControls; ++k) {
            TIndepVar control;
            control.SetTransformation(u("None"));
            control.SetField1(u("X%1").arg(k));
            table->SetControl(k, control);
        }
        int changed = 0;
        QStringList blank;
        for (int round = 0; round < rounds; ++round) {
            qInfo("round %d", round + 1);
            clickOn(form_->mainContainer(), QPoint(300, 250));
            clickOn(table, QPoint(16, 16));
            for (int k = 1; k <= MaxControls; ++k) {
                if (rowText(qPrintable(row(k))).isEmpty())
                    blank += u("%1 in round %2").arg(row(k)).arg(round + 1);
            }
            const QString property = row(1 + round % MaxControls);
            const int steps = form_->commandHistory()->index();
            QWidget *editor = openRow(qPrintable(property));
            const QPoint end(editor->width() - 4, editor->height() / 2);
            QWidget *hit = editor->childAt(end);
            QTest::mouseClick(hit == nullptr ? editor : hit, Qt::LeftButton, {}, hit == nullptr ? end : QPoint());
            settle();
            changed += form_->commandHistory()->index() - steps;
            if (form_->commandHistory()->index() > steps)
                core_.formWindowManager()->actionUndo()->trigger();
            settle();
        }
        see("rounds", rounds);
        see("changes", changed);
        see("blankRows", blank);
    }

private:
    static QString row(int k) { return u("ControlVar%1").arg(k, 2, 10, QLatin1Char('0')); }

    void clickOn(QWidget *widget, const QPoint &place)
    {
        QTest::mouseClick(widget, Qt::LeftButton, {}, place);
        settle();
        if (core_.propertyEditor()->object() != widget)
            qFatal("a click does not select %s", qPrintable(widget->objectName()));
    }
};

} // namespace

QJsonObject resetRows(QDesignerFormEditorInterface &core, int rounds)
{
    Resets resets(core);
    resets.run(rounds);
    return resets.seen();
}
