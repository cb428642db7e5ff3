// SPDX-License-Identifier: MIT
// The example's page of Qt Quick, with its program's entry out of the way.
#define main quickMain
#include "examples/Quick.cpp" // NOLINT(bugprone-suspicious-include)
#undef main

#include <QTimer>

namespace {

QString picture;

/// As soon as the program's own event loop runs, its window is taken down and the program ends.
void takePicture()
{
    QTimer::singleShot(500, qApp, [] {
        bool saved = false;
        for (QWindow *window : QGuiApplication::topLevelWindows()) {
            if (auto *view = qobject_cast<QQuickView *>(window))
                saved = view->grabWindow().save(picture);
        }
        QCoreApplication::exit(saved ? 0 : 1);
    });
}
Q_COREAPP_STARTUP_FUNCTION(takePicture)

} // namespace

// Picture of the page of Qt Quick: quickpicture PICTURE, in the folder of samples.db
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("QT_SCALE_FACTOR", "2");
    qputenv("LC_ALL", "C.UTF-8");
    if (argc != 2)
        return 2;
    picture = QString::fromLocal8Bit(argv[1]);
    return quickMain(argc, argv);
}
