// SPDX-License-Identifier: MIT
#pragma once

#include "select/Selections.h"

#include "engine/Progress.h"

#include <memory>

/// What a search told its progress.
struct Progress : nuvo::Progress
{
    explicit Progress(QStringList &log) : log_(log) {}
    ~Progress() override { log_.append(text("gone")); }
    void Show() override { log_.append(text("show")); }
    void Repaint() override { log_.append(text("repaint")); }
    void Close() override { log_.append(text("close")); }
    void SetGaugeProgress(unsigned short progress) override { log_.append(QString::number(progress)); }
    void SetGaugeText(const QString &words) override { log_.append(words); }
    double ProcessedTime() const override { return 3723 / 86400.0; }
    bool Stopped() const override { return false; }

private:
    QStringList &log_;
};

template <class Search>
class Told : public Search
{
public:
    QStringList log;

protected:
    std::unique_ptr<nuvo::Progress> MakeProgress() override { return std::make_unique<Progress>(log); }
};

template <class Search>
QStringList toldBy(Told<Search> &search, TMLRTable &table)
{
    search.SetTable(&table);
    search.Run();
    return search.log;
}
