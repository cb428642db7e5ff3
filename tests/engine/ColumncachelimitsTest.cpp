// SPDX-License-Identifier: MIT
#include "engine/Recordload.h"
#include "engine/Twins.h"
#include "support/Recordlimits.h"

TEST_F(Tables, AFilterIsNoticed)
{
    std::mt19937 random(9);
    fill("y a b c d e", mixedRecords(random, 90, 0.1));
    start();
    for (Twin &twin : twins)
        define(twin.component, "a c");
    for (const char *filter : {"", "a > 3", "c < 3", "y = -1000", ""}) {
        both(
            [&](TMLRTable &component) {
                component.SetFilter(text(filter));
                component.SetFiltered(*filter != '\0');
            },
            text(filter));
        for (int time = 0; time < 2; ++time) {
            reload();
            both([](TMLRTable &component) { component.Execute(); }, text("execute"));
            expectAlike(text(filter));
        }
    }
    expectSamePlace();
}

TEST_F(Tables, RowsBeyondWhatADatasetKeepsAreAlike)
{
    std::mt19937 random(10);
    std::vector<Row> rows = mixedRecords(random, 3000, 0.05);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (i % 8 != 0)
            rows[i][0] = null; // most have no response
    }
    fill("y a b c d e", rows);
    nuvo::RecordLimits limits;
    limits.blockRows = 32;
    limits.headRows = 128;
    limits.windowRows = 64;
    for (Twin &twin : twins)
        setRecordLimits(twin.component, limits);
    start();
    for (const char *controls : {"a", "a b", "b c e", "a", "c", "a b c d e"}) {
        for (Twin &twin : twins) {
            for (int k = 1; k <= MaxControls; ++k)
                twin.component.ControlVar(k).Assign(TIndepVar());
            define(twin.component, controls);
        }
        reload();
        both([](TMLRTable &component) { component.Execute(); }, text("execute"));
        expectAlike(text(controls));
        EXPECT_EQ(twins[0].component.RecordsRead(), 3000);
    }
    expectSamePlace();
}

TEST_F(Tables, WhatIsBeyondTheCacheIsLoadedFromTheRecords)
{
    // 40000 records of which a term accepts few, so that the walk goes past what is kept.
    db->exec(text("PRAGMA synchronous = OFF"));
    db->exec(text("CREATE TABLE data (id INTEGER PRIMARY KEY, y DOUBLE PRECISION, a DOUBLE PRECISION, b DOUBLE "
                  "PRECISION)"));
    db->exec(text("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 40000) "
                  "INSERT INTO data SELECT i, i % 17, i % 23, CASE WHEN i % 1000 < 7 THEN i % 29 END FROM n"));
    start();
    for (const char *controls : {"a", "a b", "b", "b a", "a"}) {
        for (Twin &twin : twins) {
            for (int k = 1; k <= MaxControls; ++k)
                twin.component.ControlVar(k).Assign(TIndepVar());
            define(twin.component, controls);
        }
        reload();
        both([](TMLRTable &component) { component.Execute(); }, text("execute"));
        expectAlike(text(controls));
    }
    EXPECT_EQ(twins[0].component.RecordsRead(), 2500);
    expectSamePlace();
}

TEST_F(Tables, MoreSetsAndTermsThanAreKeptAreAlike)
{
    // Eight columns with nulls of their own make 256 sets of usable records.
    std::mt19937 random(11);
    std::normal_distribution<double> normal;
    std::vector<Row> rows;
    for (int i = 0; i < 60; ++i) {
        Row row;
        for (int j = 0; j < 9; ++j)
            row.push_back(j > 0 && i == 7 * j % 60 ? std::optional<double>() : normal(random));
        rows.push_back(row);
    }
    fill("y a b c d e f g h", rows);
    start();
    for (Twin &twin : twins)
        twin.component.SetResponse(response("None", "y"));
    for (unsigned round = 0; round < 2; ++round) {
        for (unsigned subset = 1; subset < 256 && !HasFatalFailure(); subset += 2) {
            for (int k = 0; k < 8; ++k) {
                const char name[2] = {char('a' + k), '\0'};
                for (Twin &twin : twins)
                    twin.component.ControlVar(k + 1).Assign((subset >> k & 1) != 0 ? control("None", name)
                                                                                   : TIndepVar());
            }
            reload();
            both([](TMLRTable &component) { component.Execute(); }, text("execute"));
            expectAlike(QString::number(subset, 2));
        }
    }
    for (int factor = 1; factor < 200 && !HasFatalFailure(); ++factor) {
        for (Twin &twin : twins)
            twin.component.ControlVar(1 + factor % 3)
                .Assign(scaled("Scale", "a", QByteArray::number(factor).constData()));
        reload();
        both([](TMLRTable &component) { component.Execute(); }, text("execute"));
        expectAlike(QString::number(factor));
    }
}

TEST_F(Tables, AnEmptyTableAndFewRecordsAreAlike)
{
    fill("y a b", {});
    start();
    for (Twin &twin : twins)
        define(twin.component, "a b");
    reload();
    expectAlike(text("empty"));
    for (const char *row : {"(1, 1, 2)", "(2, 4, 3)", "(4, 5, 3)", "(3, 1, 0)"}) {
        db->exec(text("INSERT INTO data (y, a, b) VALUES ") + text(row));
        both([](TMLRTable &component) { component.Refresh(); }, text("refresh"));
        reload();
        both([](TMLRTable &component) { component.Execute(); }, text("execute"));
        expectAlike(text(row));
    }
    EXPECT_TRUE(twins[0].story.join(u'\n').contains(text("There are 0 degrees of freedom.")));
    EXPECT_TRUE(twins[0].story.join(u'\n').contains(text("invariant")));
    expectSamePlace();
}

TEST_F(Tables, ALoadThatShowsItsProgressIsAlike)
{
    std::mt19937 random(12);
    fill("y a b c d e", mixedRecords(random, 30, 0.1));
    start();
    for (Twin &twin : twins)
        define(twin.component, "a c");
    for (const bool show : {false, true, false}) {
        for (Twin &twin : twins)
            twin.component.SetShowLoadProgress(show);
        reload();
        both([](TMLRTable &component) { component.Execute(); }, text("execute"));
        expectAlike(show ? text("shown") : text("not shown"));
    }
}

TEST_F(Tables, WhatWasLoadedStaysWhenTheCacheGoes)
{
    std::mt19937 random(13);
    fill("y a b c d e", mixedRecords(random, 80, 0.1));
    start();
    for (Twin &twin : twins)
        define(twin.component, "a c");
    reload();
    both([](TMLRTable &component) { component.Execute(); }, text("execute"));
    twins[0].component.SetColumnCache(nullptr);
    expectAlike(text("gone"));
    both([](TMLRTable &component) { component.Execute(); }, text("execute"));
    expectAlike(text("fitted again"));
    reload();
    both([](TMLRTable &component) { component.Execute(); }, text("execute"));
    expectAlike(text("loaded again"));
    const auto first = cacheFor(twins[0].component);
    twins[0].component.SetColumnCache(first);
    reload();
    twins[0].component.SetColumnCache(cacheFor(twins[0].component));
    reload();
    twins[0].component.SetColumnCache(first);
    reload();
    both([](TMLRTable &component) { component.Execute(); }, text("execute"));
    expectAlike(text("two of them"));
}

TEST_F(Tables, ARegressionCanGoBeforeItsCache)
{
    fill("y a b", {{1, 2, 3}, {2, 3, 5}, {4, 1, 1}, {3, 3, 2}});
    auto component = std::make_unique<TMLRTable>();
    bind(*component, *db, "data");
    define(*component, "a");
    const auto held = cacheFor(*component);
    component->SetColumnCache(held);
    EXPECT_TRUE(component->ReLoad());
    component.reset();
}

TEST_F(Tables, TheDatabaseIsAskedOnce)
{
    // What others write meanwhile does not show even where a dataset would have to read again.
    std::mt19937 random(14);
    fill("y a b c d e", mixedRecords(random, 2000, 0.1));
    nuvo::RecordLimits limits;
    limits.blockRows = 32;
    limits.headRows = 64;
    limits.windowRows = 64;
    setRecordLimits(twins[0].component, limits);
    start();
    TMLRTable &component = twins[0].component;
    define(component, "a b c");
    ASSERT_TRUE(component.ReLoad());
    component.Execute();
    const double sse = component.GetSSE();
    db->exec(text("DROP TABLE data"));
    component.ControlVar(2).SetTransformation(text("Undefined"));
    EXPECT_TRUE(component.ReLoad());
    component.Execute();
    EXPECT_GT(component.GetSSE(), sse);
    component.ControlVar(2).SetTransformation(text("None"));
    EXPECT_TRUE(component.ReLoad());
    component.Execute();
    EXPECT_EQ(component.GetSSE(), sse);
    component.SetColumnCache(nullptr); // cannot go where it should, and keeps quiet about it
    EXPECT_EQ(component.GetSSE(), sse);
}

// The cache by itself.

TEST_F(Tables, LoadsOfTheCacheAreThoseOfTheRecords)
{
    std::mt19937 random(21);
    fill("y a b c d e", mixedRecords(random, 120, 0.1));
    TMLRTable &table = twins[0].component;
    bind(table, *db, "data");
    const std::vector<TIndepVar> terms = {control("None", "a"), control("Log", "b"), control("Quotient", "a", "c"),
                                          control("None", "b")};
    const TDependentVar of = response("None", "y");
    nuvo::RecordLoad records(table);
    nuvo::ColumnCache cache(table, terms);
    for (std::size_t from = 0; from < terms.size(); ++from) {
        for (std::size_t count = 0; from + count <= terms.size(); ++count) {
            const nuvo::ModelDefinitions definitions{{terms.data() + from, count}, of};
            const nuvo::LoadedRecords plain = records.load(definitions);
            const std::optional<nuvo::LoadedRecords> cached = cache.load(definitions);
            ASSERT_TRUE(cached.has_value());
            const nuvo::Observations &got = cached->observations;
            const nuvo::Observations &wanted = plain.observations;
            EXPECT_EQ(cached->read, plain.read);
            ASSERT_EQ(got.n(), wanted.n());
            ASSERT_EQ(got.m(), wanted.m());
            for (int i = 1; i <= got.n(); ++i) {
                EXPECT_EQ(got.record(i), wanted.record(i));
                EXPECT_EQ(bits(got.y().values[i - 1]), bits(wanted.y().values[i - 1]));
                for (int j = 1; j <= got.m(); ++j)
                    EXPECT_EQ(bits(got.x(j).values[i - 1]), bits(wanted.x(j).values[i - 1]));
            }
            cache.standBehind();
            EXPECT_TRUE(table.Eof());
        }
    }
    const TIndepVar unknown = control("None", "nothing");
    EXPECT_THROW((void)records.load({{&unknown, 1}, of}), EDatabaseError);
    EXPECT_FALSE(cache.load({{&unknown, 1}, of}).has_value()) << "the records raise it";
}
