// SPDX-License-Identifier: MIT
#pragma once

#include "support/Text.h"
#include "workbench/Livefit.h"
#include "workbench/Mainwindow.h"
#include "workbench/Nearrecords.h"
#include "workbench/Sitting.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>

class QAction;

/// The longest time that the event loop was kept from its work while this lives. What other programs keep its thread
/// from a processor is not counted, where the system tells it.
class LoopGap
{
public:
    LoopGap();
    /// In milliseconds, the time since it worked last counted.
    qint64 largest() const { return std::max(largest_, gap()); }
    /// The same, and begins anew.
    qint64 take()
    {
        const qint64 taken = largest();
        begin();
        largest_ = 0;
        return taken;
    }

private:
    void begin();
    qint64 gap() const;

    QTimer timer_;
    QElapsedTimer since_;
    qint64 waited_ = 0; ///< for a processor until then
    qint64 largest_ = 0;
};

/// The workbench in a folder of its own, as somebody has it who opens what others have made.
class HostileWindow : public testing::Test
{
protected:
    QTemporaryDir folder;
    std::unique_ptr<nuvo::MainWindow> window;
    std::function<int(QDialog &)> answer; ///< to a dialog; none: OK
    QStringList asked;                    ///< names of the dialogs that were shown

    void SetUp() override;
    void TearDown() override;
    void begin();
    /// Writes a file into the folder; its path.
    QString write(const char *name, const QByteArray &content) const;
    /// An SQLite file in the folder made by these statements; its path.
    QString database(const char *name, const QStringList &statements) const;
    void drop(const QString &file) const;
    QAction &action(const char *text) const;
    QString message() const;
    /// Whether it came to be, events running. Minutes are for a machine that has much else to do; nothing takes them.
    bool wait(const std::function<bool()> &what, int milliseconds = 300000) const;
    /// Whether the window has not stood still: it shows another page when told to.
    bool isAlive() const;
    void defineModel(const char *response, const char *control) const;
    nuvo::Sitting &sitting() const { return window->CurrentSitting(); }
    nuvo::LiveFit &fit() const { return window->Fit(); }
    /// Presses Escape in the window of a progress as soon as that is there.
    void pressEscape(QTimer &timer) const;
    /// Text of a cell of the grid, once it is read.
    QString cell(int row, int column) const;
};
