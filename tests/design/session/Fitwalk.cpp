// SPDX-License-Identifier: MIT
#include "design/session/Hands.h"
#include "design/session/Walk.h"
#include "engine/Mlrtable.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QUndoStack>

namespace {

/// A fit of the form that the first walk has saved, on data that take their time.
class FitWalk : public Hands
{
public:
    explicit FitWalk(QDesignerFormEditorInterface &core) : Hands(core) {}

    void run()
    {
        QFile file(u("saved.ui"));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("no saved form");
        form_ = open(QString::fromUtf8(file.readAll()));
        makeSlowTable();
        stopFitting();
        delete form_;
    }

private:
    /// Longley's fields in 2500 records of some milliseconds each.
    static void makeSlowTable()
    {
        {
            QSqlDatabase database = QSqlDatabase::addDatabase(u("QSQLITE"), u("slow"));
            database.setDatabaseName(u("slow.db"));
            if (!database.open())
                qFatal("no database slow.db");
            for (const char *statement :
                 {"CREATE TABLE n (n INTEGER PRIMARY KEY)",
                  "WITH RECURSIVE c(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM c WHERE i < 2500) "
                  "INSERT INTO n SELECT i FROM c",
                  "CREATE VIEW Longley AS SELECT n AS YEAR, n * 1.5 + n % 7 AS TOTEMP, n % 11 + 1.0 AS GNP, "
                  "(WITH RECURSIVE c(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM c WHERE i < 20000 + n % 2) "
                  "SELECT COUNT(*) FROM c) AS UNEMP FROM n"}) {
                if (!QSqlQuery(database).exec(u(statement)))
                    qFatal("no %s", statement);
            }
        }
        QSqlDatabase::removeDatabase(u("slow"));
    }

    void stopFitting()
    {
        auto *table = component<TMLRTable>("mlrTable");
        form_->cursor()->setWidgetProperty(table, u("DatabaseName"), u("slow.db"));
        select(table);
        const QString before = contents();
        const int steps = form_->commandHistory()->index();
        int escapes = 0;
        bool shown = false;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] {
            auto *window = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (window == nullptr)
                return;
            if (window->objectName() == u("TMLRGaugeDlg")) {
                ++escapes;
                QTest::keyClick(window, Qt::Key_Escape);
            } else {
                shown = true;
                window->reject();
            }
        });
        timer.start(20);
        contextAction(table, "Fit and show…")->trigger();
        timer.stop();
        settle();
        see("escapesOfLongFit", escapes);
        see("windowAfterEscape", shown);
        see("messagesOfEscape", takeMessages());
        see("sameAfterEscape", contents() == before && form_->commandHistory()->index() == steps);
        see("loadedAfterEscape", table->Loaded() || table->Active());
    }
};

} // namespace

QJsonObject walkThroughLongFits(QDesignerFormEditorInterface &core)
{
    FitWalk walk(core);
    walk.run();
    return walk.seen();
}
