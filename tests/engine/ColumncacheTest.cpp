// SPDX-License-Identifier: MIT
#include "engine/Twins.h"

TYPED_TEST(Twins, HundredsOfRandomCandidatesAreAlike)
{
    std::mt19937 random(20241121);
    this->fill("y a b c d e", mixedRecords(random, 400, 0.1));
    this->start();
    const std::vector<TIndepVar> terms = manyTerms();
    const auto pick = [&](std::size_t count) { return std::size_t(random() % count); };
    int loaded = 0;
    int failed = 0;
    for (auto &twin : this->twins)
        twin.component.SetResponse(response("None", "y"));
    for (int candidate = 0; candidate < 300 && !this->HasFatalFailure(); ++candidate) {
        for (int k = 1; k <= MaxControls; ++k) {
            if (random() % 3 == 0) {
                const TIndepVar definition = random() % 2 == 0 ? TIndepVar() : terms[pick(terms.size())];
                this->both([&](auto &component) { component.ControlVar(k).Assign(definition); }, text("assign"));
            } else if (random() % 5 == 0) {
                this->both([&](auto &component) { component.ControlVar(k).SetTransformation(text("Undefined")); },
                           text("undefined"));
            }
        }
        this->reload();
        (this->twins[1].component.Loaded() ? loaded : failed) += 1;
        if (random() % 4 != 0)
            this->both([](auto &component) { component.Execute(); }, text("execute"));
        if (random() % 4 != 0)
            this->expectAlike(QStringLiteral("candidate %1").arg(candidate));
    }
    EXPECT_GT(loaded, 100);
    EXPECT_GT(failed, 5);
    this->expectSamePlace();
}

TYPED_TEST(Twins, EverySubsetIsAlike)
{
    std::mt19937 random(7);
    this->fill("y a b c d e", mixedRecords(random, 200, 0.05));
    this->start();
    const std::vector<TIndepVar> terms = {control("None", "a"), control("None", "b"),          control("Log", "c"),
                                          control("None", "e"), control("Quotient", "a", "c"), power("e", "2")};
    for (auto &twin : this->twins) {
        twin.component.SetResponse(response("Scale", "y", "2.5"));
        for (std::size_t k = 0; k < terms.size(); ++k)
            twin.component.SetControl(int(k) + 1, terms[k]);
    }
    for (unsigned subset = 0; subset < 64 && !this->HasFatalFailure(); ++subset) {
        for (std::size_t k = 0; k < terms.size(); ++k) {
            const QString transformation = (subset >> k & 1) != 0 ? terms[k].Transformation() : text("Undefined");
            for (auto &twin : this->twins)
                twin.component.ControlVar(int(k) + 1).SetTransformation(transformation);
        }
        this->reload();
        this->both([](auto &component) { component.Execute(); }, text("execute"));
        this->expectAlike(QString::number(subset, 2));
    }
    this->expectSamePlace();
}

TYPED_TEST(Twins, MoreThan2500RecordsAreAlike)
{
    std::mt19937 random(99);
    this->fill("y a b c d e", mixedRecords(random, 3200, 0.04));
    this->start();
    const std::vector<TIndepVar> terms = {control("None", "a"), control("None", "b"), control("Log", "b"),
                                          control("None", "c"), control("None", "e"), control("Log", "c")};
    for (auto &twin : this->twins) {
        twin.component.SetResponse(response("None", "y"));
        twin.component.SetShowWarnings(true);
    }
    int full = 0;
    int ended = 0;
    for (int candidate = 0; candidate < 12 && !this->HasFatalFailure(); ++candidate) {
        for (std::size_t k = 0; k < terms.size(); ++k) {
            const TIndepVar definition = random() % 2 == 0 ? terms[k] : TIndepVar();
            for (auto &twin : this->twins)
                twin.component.ControlVar(int(k) + 1).Assign(definition);
        }
        this->reload();
        this->both([](auto &component) { component.Execute(); }, text("execute"));
        this->expectAlike(QString::number(candidate));
        (this->twins[1].component.Eof() ? ended : full) += 1;
    }
    EXPECT_GT(full, 0);
    EXPECT_GT(ended, 0);
    this->expectSamePlace();
}

TYPED_TEST(Twins, TermsThatRaiseDoSoAtTheSamePoint)
{
    std::mt19937 random(5);
    this->fill("y a b c d e", mixedRecords(random, 60, 0.1));
    this->db->exec(text("UPDATE data SET e = 'n/a' WHERE id IN (9, 30, 31)"));
    this->db->exec(text("UPDATE data SET b = NULL WHERE id IN (1, 2, 3, 9, 30, 31)"));
    // A term raises also where the response would have rejected the record.
    this->db->exec(text("UPDATE data SET y = NULL, e = 'n/a' WHERE id IN (5, 6, 40)"));
    this->db->exec(text("UPDATE data SET b = 1, a = 'none', y = NULL WHERE id IN (7, 41)"));
    this->start();
    std::vector<TIndepVar> terms = manyTerms();
    for (const TIndepVar &term : termsThatRaise())
        terms.push_back(term);
    for (auto &twin : this->twins)
        twin.component.SetResponse(response("None", "y"));
    for (int candidate = 0; candidate < 300 && !this->HasFatalFailure(); ++candidate) {
        for (int k = 1; k <= 4; ++k) {
            const TIndepVar definition = random() % 3 == 0 ? TIndepVar() : terms[random() % terms.size()];
            for (auto &twin : this->twins)
                twin.component.ControlVar(k).Assign(definition);
        }
        this->reload();
        EXPECT_EQ(this->twins[0].component.ControlsDisabled(), false);
        this->both([](auto &component) { component.Execute(); }, text("execute"));
        this->expectAlike(QString::number(candidate));
    }
    const QString errors = this->twins[0].story.join(u'\n');
    for (const char *error : {"EConvertError \"n/a\"", "EConvertError The exponent", "EDatabaseError No field",
                              "EConvertError The scale", "EStringListError"})
        EXPECT_TRUE(errors.contains(text(error))) << error;
}

TYPED_TEST(Twins, AResponseThatRaisesOrChangesIsAlike)
{
    std::mt19937 random(6);
    this->fill("y a b c d e", mixedRecords(random, 60, 0.1));
    this->db->exec(text("UPDATE data SET e = 'n/a', c = NULL WHERE id = 40"));
    this->start();
    TDependentVar tooShort;
    tooShort.Assign(QStringList());
    for (const TDependentVar &definition :
         {response("None", "y"), response("Log", "b"), response("None", "e"), response("Inverse", "c"),
          response("Scale", "a", "0"), response("Scale", "a", "none"), response("Scale", "e", "3"), tooShort,
          response("None", "nothing"), response("None", "y")}) {
        for (const char *controls : {"a b", "c", "a", "d c", ""}) {
            for (auto &twin : this->twins) {
                for (int k = 1; k <= MaxControls; ++k)
                    twin.component.ControlVar(k).Assign(TIndepVar());
                define(twin.component, controls);
                twin.component.ResponseVarY().Assign(definition);
            }
            this->reload();
            this->both([](auto &component) { component.Execute(); }, text("execute"));
            this->expectAlike(definition.ToQStringList().join(u'|') + text(controls));
        }
    }
}

TYPED_TEST(Twins, RowsThatAreReadAnewAreNoticed)
{
    std::mt19937 random(8);
    this->fill("y a b c d e", mixedRecords(random, 50, 0.1));
    this->start();
    for (auto &twin : this->twins)
        define(twin.component, "a b c");
    const auto run = [&](const char *when) {
        this->reload();
        this->both([](auto &component) { component.Execute(); }, text("execute"));
        this->expectAlike(text(when));
        return this->twins[1].component.GetSSE();
    };
    const double first = run("first");
    this->db->exec(text("UPDATE data SET y = y + a * a"));
    EXPECT_EQ(run("the same snapshot"), first);
    this->both([](auto &component) { component.Refresh(); }, text("refresh"));
    const double second = run("refreshed");
    EXPECT_NE(second, first);
    this->db->exec(text("UPDATE data SET y = y + b * b"));
    this->both(
        [](auto &component) {
            component.Close();
            component.Open();
        },
        text("reopen"));
    EXPECT_NE(run("opened again"), second);
    this->both([](auto &component) { component.Close(); }, text("close"));
    run("closed");
    this->both([](auto &component) { component.WishActive(true); }, text("wish"));
    run("wished open");
    run("and once more");
    this->both([](auto &component) { component.Last(); }, text("somewhere else"));
    run("from somewhere else");
    this->expectSamePlace();
}
