// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Columncache.h"
#include "support/Regressions.h"

#include <QSignalSpy>

#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <vector>

// Loads and fits with the cache beside the same ones without it: nothing that can be observed differs, to the last
// bit.

inline std::uint64_t bits(double value)
{
    return std::bit_cast<std::uint64_t>(value);
}

/// Everything that a component shows, in the order in which somebody might ask.
inline QStringList everything(TRegression &regression)
{
    QStringList out;
    const auto add = [&](const char *name, auto... values) {
        QString line = text(name);
        ((line += u' ' + QString::number(bits(double(values)), 16)), ...);
        out.append(line);
    };
    const int n = regression.GetNumObs();
    const int m = regression.GetNumVars();
    add("state", n, m, regression.GetDOF(), regression.RecordsRead(), regression.RecordsUsed(),
        regression.RecordsSkipped(), regression.Loaded(), regression.Computed(), regression.ResultsCurrent(),
        regression.LoadStopped());
    add("y", regression.GetyMax(), regression.GetyMin(), regression.GetyBar(), regression.GetyStdErr());
    for (int j = 1; j <= m; ++j) {
        out.append(regression.GetcVar(j).ToQStringList().join(u'|'));
        add("x", regression.GetxMax(j), regression.GetxMin(j), regression.GetxBar(j), regression.GetxStdErr(j));
    }
    add("mse", regression.GetMSE());
    add("sums", regression.GetSSE(), regression.GetSSR(), regression.GetSST(), regression.GetRSquared(),
        regression.GetSyx(), regression.GetF(), regression.GetMSE());
    for (int i = 0; i <= m; ++i) {
        add("b", regression.Getb(i));
        for (int j = 0; j <= m; ++j)
            add("matrices", regression.GetCovar(i, j), regression.GetCorr(i, j));
    }
    for (int i = 1; i <= n; ++i) {
        add("observation", regression.Gety(i), regression.Gete(i), regression.GetyHat(i));
        for (int j = 1; j <= m; ++j)
            add("value", regression.Getx(i, j));
    }
    for (const int column : regression.DependentColumns())
        add("dependent", column);
    return out;
}

/// What a call throws: the kind of error and its words.
template <class Call>
QString thrownBy(Call call)
{
    try {
        call();
        return {};
    } catch (const EConvertError &error) {
        return text("EConvertError ") + error.Message();
    } catch (const EDatabaseError &error) {
        return text("EDatabaseError ") + error.Message();
    } catch (const EStringListError &error) {
        return text("EStringListError ") + error.Message();
    }
}

inline std::shared_ptr<nuvo::ColumnCache> cacheFor(TRegression &regression)
{
    std::vector<TIndepVar> terms;
    for (int k = 1; k <= MaxControls; ++k)
        terms.push_back(regression.ControlVar(k));
    return std::make_shared<nuvo::ColumnCache>(regression.DataSet(), terms);
}

/// Two components on the same records, of which one has the cache.
template <class Component>
class Twins : public testing::Test
{
protected:
    struct Twin
    {
        Component component;
        QSignalSpy loads{&component, &Component::LoadEnded};
        QSignalSpy fits{&component, &Component::Fitted};
        QStringList story;
    };

    void fill(const char *columns, const std::vector<Row> &rows) { makeTable(*db, "data", columns, rows); }

    void start()
    {
        for (Twin &twin : twins)
            bind(twin.component, *db, "data");
        twins[0].component.SetColumnCache(cacheFor(twins[0].component));
    }

    /// Does the same with both, and says what differs.
    void both(const std::function<void(Component &)> &act, const QString &what)
    {
        for (Twin &twin : twins) {
            messages.shown.clear();
            QString line = what + text(": ") + thrownBy([&] { act(twin.component); });
            for (const Message &message : messages.shown)
                line += text(" [") + message.text + u']';
            twin.story.append(line);
        }
        EXPECT_EQ(twins[0].story.last(), twins[1].story.last());
    }

    void expectAlike(const QString &when)
    {
        const QStringList cached = everything(twins[0].component);
        const QStringList plain = everything(twins[1].component);
        ASSERT_EQ(cached.size(), plain.size()) << when.toStdString();
        for (qsizetype i = 0; i < plain.size(); ++i)
            ASSERT_EQ(cached[i], plain[i]) << when.toStdString();
        ASSERT_EQ(twins[0].loads, twins[1].loads) << when.toStdString();
        ASSERT_EQ(twins[0].fits.size(), twins[1].fits.size()) << when.toStdString();
    }

    void reload()
    {
        bool loaded[2] = {};
        int at = 0;
        both([&](Component &component) { loaded[at++] = component.ReLoad(); }, text("reload"));
        EXPECT_EQ(loaded[0], loaded[1]);
    }

    void expectSamePlace()
    {
        twins[0].component.SetColumnCache(nullptr);
        EXPECT_EQ(twins[0].component.RecNo(), twins[1].component.RecNo());
        EXPECT_EQ(twins[0].component.Eof(), twins[1].component.Eof());
        EXPECT_EQ(twins[0].component.Bof(), twins[1].component.Bof());
        // Next() from the same place comes to the same place.
        for (Twin &twin : twins)
            twin.component.Next();
        EXPECT_EQ(twins[0].component.RecNo(), twins[1].component.RecNo());
    }

    std::unique_ptr<TestDatabase> db = TestDatabase::make(TestDatabase::Sqlite);
    Messages messages;
    Twin twins[2];
};
using TwinComponents = testing::Types<TMLRTable, TMLRQuery>;
struct TwinNames
{
    template <class Component>
    static std::string GetName(int)
    {
        return std::is_same_v<Component, TMLRTable> ? "Table" : "Query";
    }
};
TYPED_TEST_SUITE(Twins, TwinComponents, TwinNames);

using Tables = Twins<TMLRTable>;

/// Records with nulls, zeros and negative numbers; column d is constant wherever b is there.
inline std::vector<Row> mixedRecords(std::mt19937 &random, int count, double nulls)
{
    std::normal_distribution<double> normal;
    std::uniform_real_distribution<double> uniform;
    std::vector<Row> rows;
    for (int i = 0; i < count; ++i) {
        const double a = 3 + normal(random);
        const double b = std::fabs(normal(random)) + (i % 11 == 0 ? 0 : 0.5);
        const double c = double(i % 7) - (i % 13 == 0 ? 4 : 0);
        const bool noB = uniform(random) < nulls;
        Row row = {2 + a - b + 0.1 * normal(random), a, b, c, noB ? normal(random) : 4.0, 100 + uniform(random)};
        if (noB)
            row[2] = null;
        for (const std::size_t at : {0u, 1u, 3u, 5u}) {
            if (uniform(random) < nulls / 3)
                row[at] = null;
        }
        rows.push_back(row);
    }
    return rows;
}

/// Definitions over columns y a b c d e, all nine transformations among them and some that are none.
inline std::vector<TIndepVar> manyTerms()
{
    return {control("None", "a"),
            control("None", "b"),
            control("Log", "b"),
            control("Inverse", "a"),
            control("Sqrt", "b"),
            power("c", "2"),
            power("a", "3"),
            scaled("Scale", "e", "7"),
            scaled("Scaled", "e", "7"),
            control("Product", "a", "e"),
            control("Quotient", "a", "c"),
            control("None", "c"),
            control("None", "d"),
            control("Inactive", "e"),
            control("Log", "c"),
            power("a", "0")};
}

/// Terms that raise, at once or at some records only.
inline std::vector<TIndepVar> termsThatRaise()
{
    TIndepVar tooShort;
    tooShort.Assign(QStringList{text("Active"), text("None")});
    return {control("None", "nothing"),
            power("a", "much"),
            power("b", "1.5"),
            control("Product", "a", "nowhere"),
            scaled("Scale", "a", "some"),
            scaled("Scale", "b", "0"),
            tooShort};
}
