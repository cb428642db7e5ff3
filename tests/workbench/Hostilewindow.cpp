// SPDX-License-Identifier: MIT
#include "workbench/Hostilewindow.h"

#include "design/model/Modeleditor.h"
#include "platform/Modal.h"
#include "platform/Passwords.h"
#include "workbench/Pages.h"
#include "workbench/Recordspage.h"

#include <QAction>
#include <QApplication>
#include <QDragEnterEvent>
#include <QFile>
#include <QLabel>
#include <QMimeData>
#include <QProgressDialog>
#include <QSettings>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTableView>
#include <QTest>

namespace {

/// How long this thread could have gone on and had no processor, in milliseconds; 0 where the system does not count
/// it.
qint64 waitedForAProcessor()
{
    QFile statistics(u("/proc/thread-self/schedstat"));
    return statistics.open(QIODevice::ReadOnly) ? statistics.readAll().split(' ').value(1).toLongLong() / 1000000 : 0;
}

} // namespace

LoopGap::LoopGap()
{
    begin();
    timer_.callOnTimeout([this] {
        largest_ = largest();
        begin();
    });
    timer_.start(5);
}

void LoopGap::begin()
{
    since_.start();
    waited_ = waitedForAProcessor();
}

qint64 LoopGap::gap() const
{
    return since_.elapsed() - (waitedForAProcessor() - waited_);
}

void HostileWindow::SetUp()
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    QApplication::setOrganizationName(u("Nuvo"));
    QApplication::setApplicationName(u("nuvo-workbench"));
    SetModalRunner([this](QDialog &dialog) {
        asked.append(dialog.objectName());
        return answer ? answer(dialog) : int(QDialog::Accepted);
    });
    begin();
}

void HostileWindow::TearDown()
{
    window.reset();
    SetModalRunner({});
}

void HostileWindow::begin()
{
    window = std::make_unique<nuvo::MainWindow>(folder.path());
    window->show();
}

QString HostileWindow::write(const char *name, const QByteArray &content) const
{
    QFile file(folder.filePath(u(name)));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(file.write(content), content.size());
    return file.fileName();
}

QString HostileWindow::database(const char *name, const QStringList &statements) const
{
    const QString file = folder.filePath(u(name));
    {
        QSqlDatabase writer = QSqlDatabase::addDatabase(u("QSQLITE"), u("hostile"));
        writer.setDatabaseName(file);
        EXPECT_TRUE(writer.open());
        for (const QString &statement : statements) {
            QSqlQuery query(writer);
            EXPECT_TRUE(query.exec(statement)) << query.lastError().text().toStdString();
        }
    }
    QSqlDatabase::removeDatabase(u("hostile"));
    return file;
}

void HostileWindow::drop(const QString &file) const
{
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file)});
    QDragEnterEvent enter({100, 100}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &enter);
    QDropEvent event(QPointF(100, 100), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &event);
}

QAction &HostileWindow::action(const char *text) const
{
    for (QAction *const action : window->findChildren<QAction *>()) {
        if (action->text().remove(u'&').startsWith(u(text)))
            return *action;
    }
    ADD_FAILURE() << text;
    return *new QAction(window.get());
}

QString HostileWindow::message() const
{
    return window->findChild<QLabel *>(u("Message"))->text();
}

bool HostileWindow::wait(const std::function<bool()> &what, int milliseconds) const
{
    return QTest::qWaitFor(what, milliseconds);
}

bool HostileWindow::isAlive() const
{
    const int page = window->ShownPages().currentIndex();
    action("Summary").trigger();
    action("Records").trigger();
    QApplication::processEvents();
    const bool alive = window->ShownPages().currentIndex() == 0 && window->isVisible();
    window->ShownPages().setCurrentIndex(page);
    return alive;
}

void HostileWindow::pressEscape(QTimer &timer) const
{
    timer.callOnTimeout([this, &timer] {
        if (auto *const progress = window->findChild<QProgressDialog *>(); progress && progress->isVisible()) {
            timer.stop();
            QTest::keyClick(progress, Qt::Key_Escape);
        }
    });
    timer.start(10);
}

void HostileWindow::defineModel(const char *response, const char *control) const
{
    window->Editor().MakeResponse(u(response));
    window->Editor().AddFields({u(control)});
}

QString HostileWindow::cell(int row, int column) const
{
    const QAbstractItemModel &model = *window->ShownPages().Records().View().model();
    const auto text = [&] { return model.index(row, column).data().toString(); };
    EXPECT_TRUE(wait([&] { return row < model.rowCount() && text() != u("…"); })) << row;
    return text();
}
