// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Progress.h"
#include "support/Regressions.h"

#include <functional>
#include <memory>

/// What a load tells about its progress, call by call, instead of a window.
struct ProgressLog
{
    QStringList calls;
    bool shown = false;
    bool stopped = false;
    int made = 0;
    int alive = 0;
    /// What happens when it is shown ("show") and at every text from then on.
    std::function<void(const QString &)> meanwhile;
};

class RecordedProgress : public nuvo::Progress
{
public:
    explicit RecordedProgress(ProgressLog &log) : log_(log)
    {
        ++log_.made;
        ++log_.alive;
        log_.shown = false;
    }
    ~RecordedProgress() override { --log_.alive; }

    void Show() override
    {
        log_.shown = true;
        Call(text("show"));
    }
    bool Shown() const override { return log_.shown; }
    void SetGaugeProgress(unsigned short progress) override { log_.calls.append(QString::number(progress)); }
    void SetGaugeText(const QString &status) override { Call(status); }
    bool Stopped() const override { return log_.stopped; }

private:
    void Call(const QString &call)
    {
        log_.calls.append(call);
        if (log_.meanwhile && log_.shown)
            log_.meanwhile(call);
    }

    ProgressLog &log_;
};

template <class Component>
class Watched : public Component
{
public:
    ProgressLog log;

protected:
    std::unique_ptr<nuvo::Progress> MakeLoadProgress() override { return std::make_unique<RecordedProgress>(log); }
};

template <class Component>
class LoadingForms : public RegressionOver<Component>
{
};
using LoadingComponents = testing::Types<TMLRTable, TMLRQuery>;
struct LoadingNames
{
    template <class Component>
    static std::string GetName(int)
    {
        return std::is_same_v<Component, TMLRTable> ? "Table" : "Query";
    }
};
TYPED_TEST_SUITE(LoadingForms, LoadingComponents, LoadingNames);

using Loading = RegressionOver<TMLRTable>;
using LoadProgressTold = RegressionOver<Watched<TMLRTable>>;
using LoadProgressShown = RegressionOver<TMLRTable>;
using DuringALoad = RegressionOver<Watched<TMLRTable>>;

inline Row numbered(int i)
{
    return {double(i), double(i % 7)};
}

inline Message overLimit(bool table, int records)
{
    const QString count = QString::number(records);
    return {table ? text("Brevant analyzes a maximum of 2500\n\rrecords. There are ") + count +
                        text(" records in\n\rin your dataset. You can use table filters\n\rto limit the number of "
                             "eligible records.\n\r\n\rLoading the first 2500 records...")
                  : text("Brevant analyzes a maximum of 2500\n\rRecords. There are ") + count +
                        text(" records\n\rrecords in your dataset. You can make\n\ryour query more specific to limit "
                             "the\n\rnumber of records returned.\n\r\n\rLoading the first 2500 records..."),
            TMsgDlgType::mtWarning, mbOK, 0};
}

inline QString recordsLoaded(int n)
{
    return QStringLiteral("Records Loaded: %1").arg(n);
}
