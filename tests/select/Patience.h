// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Progress.h"
#include "select/Partialf.h"

#include <memory>

/// Lets a search go round without end, to see what it would do.
struct nuvo::SelectionTestAccess
{
    static void setEndsRepeating(TPartialFSearch &search, bool on) { search.endsRepeating_ = on; }
};

/// Ends a search after so many percentages, as a user would who has waited long enough.
class Patience : public nuvo::Progress
{
public:
    explicit Patience(int calls) : left_(calls) {}
    void Show() override {}
    void Repaint() override {}
    void Close() override {}
    void SetGaugeProgress(unsigned short) override { --left_; }
    void SetGaugeText(const QString &) override {}
    double ProcessedTime() const override { return 0; }
    bool Stopped() const override { return left_ <= 0; }

private:
    int left_;
};

template <class Search>
class Patient : public Search
{
public:
    int patience = 600;

protected:
    std::unique_ptr<nuvo::Progress> MakeProgress() override { return std::make_unique<Patience>(patience); }
};
