#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace nuvo {

/// Asks where to save. `kinds` are file dialog filters; the ending of the chosen one is added to a name without one.
/// Empty when nobody chose.
QString askFileName(QWidget *parent, const QString &title, const QStringList &kinds);

} // namespace nuvo
