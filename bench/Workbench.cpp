// SPDX-License-Identifier: MIT
#include "design/model/Modeleditor.h"
#include "platform/Modal.h"
#include "present/figures/Figurespage.h"
#include "present/statistics/Pageview.h"
#include "workbench/Livefit.h"
#include "workbench/Mainwindow.h"
#include "workbench/Pages.h"
#include "workbench/Recordspage.h"

#include <QApplication>
#include <QDialog>
#include <QDragEnterEvent>
#include <QElapsedTimer>
#include <QMimeData>
#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>
#include <QUrl>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <utility>
#include <vector>

// From a CSV file that is dropped on the workbench to what is painted, in milliseconds: the preview, the grid of
// records, with a model the summary, then the figures. A person's time between them is left out. bench_workbench
// FILE.csv RUNS RESPONSE FIELD…; on the platform that QT_QPA_PLATFORM names.

namespace {

/// Waits until a widget, or what is on it, has been painted since then.
class Painted : public QObject
{
public:
    explicit Painted(QWidget &widget) : widget_(widget) { QCoreApplication::instance()->installEventFilter(this); }
    ~Painted() override { QCoreApplication::instance()->removeEventFilter(this); }

    /// Returns with the end of the round of events in which the painting was.
    void wait()
    {
        while (!painted_)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            const auto *const widget = qobject_cast<QWidget *>(watched);
            painted_ = painted_ || widget == &widget_ || (widget != nullptr && widget_.isAncestorOf(widget));
        }
        return false;
    }

private:
    QWidget &widget_;
    bool painted_ = false;
};

struct Times
{
    double preview = 0, records = 0, summary = 0, figures = 0, total = 0, processor = 0;
};

Times oneRun(const QString &file, const QString &response, const QStringList &fields)
{
    const QTemporaryDir folder;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    nuvo::MainWindow window(folder.path());
    {
        Painted shown(window);
        window.show();
        shown.wait();
    }
    Times times;
    QElapsedTimer clock;
    const std::clock_t processor = std::clock();
    const auto lap = [&clock] {
        const double passed = double(clock.nsecsElapsed()) / 1e6;
        clock.restart();
        return passed;
    };
    SetModalRunner([&](QDialog &dialog) {
        Painted shown(dialog);
        dialog.show();
        shown.wait();
        times.preview = lap();
        dialog.hide();
        return int(QDialog::Accepted);
    });
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file)});
    nuvo::Pages &pages = window.ShownPages();
    {
        Painted records(*pages.Records().View().viewport());
        QDragEnterEvent enter({100, 100}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &enter);
        QDropEvent drop(QPointF(100, 100), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        clock.start();
        QApplication::sendEvent(&window, &drop);
        records.wait();
        times.records = lap();
    }
    {
        Painted summary(*pages.Summary().viewport());
        clock.restart();
        window.Editor().MakeResponse(response);
        window.Editor().AddFields(fields);
        if (!window.Fit().HasFit()) {
            std::fprintf(stderr, "bench_workbench: there is no fit\n");
            std::exit(1);
        }
        pages.setCurrentWidget(&pages.Summary());
        summary.wait();
        times.summary = lap();
    }
    {
        Painted figures(pages.FiguresPage().View());
        clock.restart();
        pages.setCurrentWidget(&pages.FiguresPage());
        figures.wait();
        times.figures = lap();
    }
    times.total = times.preview + times.records + times.summary + times.figures;
    times.processor = 1000.0 * double(std::clock() - processor) / CLOCKS_PER_SEC;
    SetModalRunner({});
    return times;
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 5) {
        std::fprintf(stderr, "usage: bench_workbench FILE.csv RUNS RESPONSE FIELD...\n");
        return 2;
    }
    std::vector<Times> runs;
    for (int run = 0; run < std::max(1, arguments[2].toInt()); ++run)
        runs.push_back(oneRun(arguments[1], arguments[3], arguments.mid(4)));
    const auto median = [&runs](double Times::*figure) {
        std::vector<double> values;
        for (const Times &one : runs)
            values.push_back(one.*figure);
        std::nth_element(values.begin(), values.begin() + std::ptrdiff_t(values.size() / 2), values.end());
        return values[values.size() / 2];
    };
    std::printf("median of %zu runs, milliseconds on %s\n", runs.size(), qPrintable(QGuiApplication::platformName()));
    const std::pair<const char *, double Times::*> figures[] = {{"dropped, preview painted", &Times::preview},
                                                                {"read, records painted", &Times::records},
                                                                {"model, summary painted", &Times::summary},
                                                                {"figures painted", &Times::figures},
                                                                {"all of it", &Times::total},
                                                                {"processor time of all of it", &Times::processor}};
    for (const auto &[what, figure] : figures)
        std::printf("%-28s %8.1f\n", what, median(figure));
    return 0;
}
