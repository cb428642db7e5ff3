// SPDX-License-Identifier: MIT
#include <QFile>
#include <QObject>

/// A plugin that leaves a file in the working directory when it is loaded.
class Sentinel : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "nuvo.test.sentinel")

public:
    Sentinel()
    {
        QFile mark(QStringLiteral("plugin-was-loaded"));
        [[maybe_unused]] const bool left = mark.open(QIODevice::WriteOnly);
    }
};

#include "Sentinelplugin.moc"
