// SPDX-License-Identifier: MIT
#pragma once

#include "app/Newtable.h"
#include "support/Text.h"
#include "workbench/Scriptstates.h"
#include "workbench/Sitting.h"

#include "platform/Table.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

/// Runs the script and kills it at some moment, so many times, in one folder: after each time the sitting that is
/// left is a state of the script, not older than the last change that was finished, and its database can be read.
inline void killAtRandomMoments(int rounds)
{
    const QTemporaryDir folder;
    const QString data = folder.filePath(u("data.csv"));
    const QString database = folder.filePath(u("own.db"));
    QFile csv(data);
    ASSERT_TRUE(csv.open(QIODevice::WriteOnly));
    csv.write("y,x\n");
    for (int i = 1; i < 20000; ++i)
        csv.write(QByteArray::number(2 * i + i % 7) + ',' + QByteArray::number(i) + '\n');
    csv.close();
    nuvo::NewTable own(database, u("data"));
    own.create({{u("y"), nuvo::ColumnType::Whole}, {u("x"), nuvo::ColumnType::Whole}}, {}, false);
    for (qlonglong i = 1; i < 3000; ++i)
        own.add({2 * i + i % 7, i});
    own.commit();
    const QString sitting = folder.filePath(u("sitting.json"));
    int next = 1;
    int comingBack = 0;
    for (int round = 0; round < rounds; ++round) {
        QProcess script;
        script.start(u(NUVO_WORKBENCH_SCRIPT), {folder.path(), database, data, QString::number(next), u("1000000")});
        ASSERT_TRUE(script.waitForStarted());
        // The first change takes as long as the program takes to start.
        ASSERT_TRUE(script.waitForReadyRead(60000)) << script.readAllStandardError().toStdString();
        const int moment = QRandomGenerator::global()->bounded(1200);
        QThread::msleep(ulong(moment));
        script.kill();
        ASSERT_TRUE(script.waitForFinished());
        const QList<QByteArray> said = script.readAllStandardOutput().split('\n');
        ASSERT_GT(said.size(), 1);
        const int last = said[said.size() - 2].toInt(); // behind it a line that was cut off, or nothing
        nuvo::Sitting left;
        ASSERT_EQ(errorOf([&] { left.Load(sitting); }), QString()) << "killed after " << moment << " ms";
        const bool isImport = left.State().database == folder.filePath(u("data.db"));
        if (isImport) {
            EXPECT_EQ((last + 1) % 10, 5) << last;
            ++comingBack;
        } else {
            const bool isLast = left.State() == scriptState(database, last);
            EXPECT_TRUE(isLast || left.State() == scriptState(database, last + 1))
                << left.State().filter.toStdString() << " after " << last;
        }
        if (QFile::exists(folder.filePath(u("data.db")))) {
            TTable table;
            table.SetDatabaseName(folder.filePath(u("data.db")));
            QStringList names;
            EXPECT_EQ(errorOf([&] { names = table.TableNames(); }), QString());
            for (const QString &name : names) {
                table.SetTableName(name);
                table.Open();
                EXPECT_EQ(table.RecordCount(), 19999) << name.toStdString() << " is whole";
            }
        }
        next = last + 1;
    }
    std::printf("%d rounds, %d changes, %d killed between an import and the change behind it\n", rounds, next - 1,
                comingBack);
}
