// SPDX-License-Identifier: MIT
// What nearly every source includes, read once for all of them. A file says for itself what it needs: it has to
// compile without this as well (option NUVO_PRECOMPILE).
#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QList>
#include <QLocale>
#include <QPainter>
#include <QPointer>
#include <QString>
#include <QStringBuilder>
#include <QStringList>
#include <QVariant>
#include <QVariantList>
#include <QWidget>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>
