// SPDX-License-Identifier: MIT
#include "workbench/Csvimport.h"

#include "app/Csvtable.h"
#include "platform/Quietthread.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFileInfo>
#include <QProgressDialog>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <exception>

namespace nuvo {

namespace {

/// Thrown out of the work when the person has ended it.
struct Ended
{
};

constexpr int kShownAfter = 500;      // milliseconds
constexpr int kBetweenPaintings = 50; // milliseconds

} // namespace

bool importInBackground(QWidget *parent, const CsvOptions &csv, const QString &database, const QString &table)
{
    std::atomic<int> percentage{0};
    std::atomic<bool> stop{false};
    bool stopped = false;
    std::exception_ptr error;
    QEventLoop loop;
    std::thread work = quietThread([&] {
        try {
            CsvReader reader(csv.file, csv.corrections);
            const double size = std::max(1.0, double(QFileInfo(csv.file).size()));
            int pass = 0; // the first one looks at the cells, the second one takes them
            reader.follow([&](qint64 bytes) {
                percentage = int(50 * (pass + std::min(1.0, double(bytes) / size)));
                if (stop)
                    throw Ended();
            });
            const CsvSurvey survey = surveyCsv(reader);
            pass = 1;
            NewTable made(database, table);
            fillTable(made, reader, survey, false);
            made.commit();
        } catch (const Ended &) {
            stopped = true;
        } catch (...) {
            error = std::current_exception();
        }
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    const QString title = QCoreApplication::translate("Openfile", "Open %1").arg(QFileInfo(csv.file).fileName());
    QProgressDialog progress(QCoreApplication::translate("Openfile", "Reading the file…"),
                             QCoreApplication::translate("Openfile", "Stop"), 0, 100, parent);
    progress.setWindowTitle(title);
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(kShownAfter);
    progress.setAutoReset(false);
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &progress, [&] {
        progress.setValue(percentage);
        stop = progress.wasCanceled();
    });
    timer.start(kBetweenPaintings);
    loop.exec();
    work.join();
    if (error)
        std::rethrow_exception(error);
    return !stopped;
}

} // namespace nuvo
