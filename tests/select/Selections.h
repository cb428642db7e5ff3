// SPDX-License-Identifier: MIT
#pragma once

#include "select/Bkmain.h"
#include "select/Cvmain.h"
#include "select/Fwdmain.h"
#include "select/Stepmain.h"
#include "support/Regressions.h"

#include <QLoggingCategory>

/// Collects what the category nuvo.select says while it lives.
class Trace
{
public:
    Trace()
    {
        QLoggingCategory::setFilterRules(QStringLiteral("nuvo.select.debug=true"));
        before_ = qInstallMessageHandler(&Trace::take);
        current() = this;
    }
    Trace(const Trace &) = delete;
    Trace &operator=(const Trace &) = delete;
    ~Trace()
    {
        current() = nullptr;
        qInstallMessageHandler(before_);
        QLoggingCategory::setFilterRules(QString());
    }

    QStringList lines;

    /// The lines of one kind, "decision".
    QStringList of(const char *kind) const { return lines.filter(QRegularExpression(QLatin1Char('^') + text(kind))); }

private:
    static Trace *&current()
    {
        static Trace *trace = nullptr;
        return trace;
    }
    static void take(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        if (qstrcmp(context.category, "nuvo.select") == 0)
            current()->lines.append(message);
        else
            current()->before_(type, context, message);
    }

    QtMessageHandler before_;
};

/// The value of a key in a line of a trace; empty when it is not there.
inline QString traced(const QString &line, const char *key)
{
    for (const QString &word : line.split(u' ')) {
        if (word.startsWith(text(key) + u'='))
            return word.section(u'=', 1);
    }
    return {};
}

/// Heat of hardening cement by four of its compounds (Woods, Steinour and Starke 1932; Hald 1952).
inline const std::vector<Row> &cement()
{
    static const std::vector<Row> rows = {
        {78.5, 7, 26, 6, 60},   {74.3, 1, 29, 15, 52},  {104.3, 11, 56, 8, 20}, {87.6, 11, 31, 8, 47},
        {95.9, 7, 52, 6, 33},   {109.2, 11, 55, 9, 22}, {102.7, 3, 71, 17, 6},  {72.5, 1, 31, 22, 44},
        {93.1, 2, 54, 18, 22},  {115.9, 21, 47, 4, 26}, {83.8, 1, 40, 23, 34},  {113.3, 11, 66, 9, 12},
        {109.4, 10, 68, 8, 12},
    };
    return rows;
}

/// A regression component with a search bound to it, over tables of a database of its own.
template <class Component, class Search>
class SelectionOver : public RegressionOver<Component>
{
protected:
    SelectionOver() { bindTo(search, this->regression); }

    /// Defines, loads and fits, as a program does before it lets a model be chosen.
    void prepare(const char *controls)
    {
        define(this->regression, controls);
        ASSERT_TRUE(this->regression.ReLoad());
        this->regression.Execute();
        this->messages.shown.clear();
    }
    void fillCement()
    {
        this->fill("y a b c d", cement());
        prepare("a b c d");
    }
    QStringList transformations()
    {
        QStringList list;
        for (int k = 1; k <= MaxControls; ++k)
            list.append(this->regression.ControlVar(k).Transformation());
        return list;
    }

    static void bindTo(TCorvane &selector, TMLRTable &table) { selector.SetTable(&table); }
    static void bindTo(TCorvane &selector, TMLRQuery &query) { selector.SetQuery(&query); }

    Search search;
};
