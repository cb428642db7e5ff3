// SPDX-License-Identifier: MIT
#include "platform/Sqltext.h"
#include "platform/Errors.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

using nuvo::Dialect;

namespace {

QString statementRefusal(const char *sql, Dialect dialect = Dialect::Sqlite)
{
    return errorOf<EDatabaseError>([&] { nuvo::readingStatement(u(sql), dialect); });
}

bool conditionPasses(const char *condition, Dialect dialect = Dialect::Sqlite)
{
    return errorOf<EDatabaseError>([&] { nuvo::checkCondition(u(condition), dialect); }).isEmpty();
}

} // namespace

TEST(QuotedNames, DoubleTheQuoteWhateverTheNameHolds)
{
    EXPECT_EQ(nuvo::quotedName(u("plain"), Dialect::Sqlite), u("\"plain\""));
    EXPECT_EQ(nuvo::quotedName(u("a\"b"), Dialect::Postgres), u("\"a\"\"b\""));
    EXPECT_EQ(nuvo::quotedName(u("\"quoted\""), Dialect::Sqlite), u("\"\"\"quoted\"\"\""));
    EXPECT_EQ(nuvo::quotedName(u("x.y"), Dialect::Postgres), u("\"x.y\""));
    EXPECT_EQ(nuvo::quotedName(u("a`b"), Dialect::Mysql), u("`a``b`"));
    EXPECT_EQ(nuvo::quotedName(u("drop table t; --"), Dialect::Sqlite), u("\"drop table t; --\""));
}

TEST(Statements, ThatReadAreTaken)
{
    for (const char *sql :
         {"SELECT 1", "  select 1", "WITH a AS (SELECT 1) SELECT * FROM a", "VALUES (1)", "show server_version",
          "(SELECT 1) UNION (SELECT 2)", "-- first\nSELECT 1", "/* a; b */ SELECT 1", "SELECT ';'", "SELECT 1;",
          "SELECT 1 ; -- end;\n ; ", "WITH a AS (SELECT 'INSERT') VALUES (1)", "SELECT \"drop;\" FROM t",
          "with recursive n(i) as (values (1) union all select i + 1 from n) select * from n", "SELECT [a;b] FROM t",
          "SELECT replace(a, 'b', 'c') FROM t"})
        EXPECT_EQ(statementRefusal(sql), QString()) << sql;
}

TEST(Statements, ThatDoMoreThanReadAreRefused)
{
    for (const char *sql : {"DELETE FROM t", "insert into t values (1)", "UPDATE t SET a = 1", "DROP TABLE t",
                            "PRAGMA user_version = 1", "EXPLAIN SELECT 1", "ATTACH 'x' AS y", "COPY t TO '/x'",
                            "WITH a AS (SELECT 1) INSERT INTO t SELECT * FROM a", "BEGIN", "(DELETE FROM t)",
                            "WITH a AS (SELECT 1) DELETE FROM t", "/* SELECT */ DELETE FROM t", "TABLE t", "1"})
        EXPECT_TRUE(statementRefusal(sql).startsWith(u("Only statements that read are taken"))) << sql;
    EXPECT_EQ(statementRefusal("drop table t"),
              u("Only statements that read are taken (SELECT, WITH, VALUES, SHOW), not \"drop\"."));
}

TEST(Statements, AreOneAndHaveAnEnd)
{
    EXPECT_EQ(statementRefusal("SELECT 1; DROP TABLE t"), u("The SQL text holds more than one statement."));
    EXPECT_EQ(statementRefusal("SELECT 1; -- x\n SELECT 2"), u("The SQL text holds more than one statement."));
    for (const char *sql : {"", "  ", ";", "-- nothing", "/* nothing */"})
        EXPECT_EQ(statementRefusal(sql), u("There is no SQL text.")) << sql;
    EXPECT_EQ(statementRefusal("SELECT 'a"), u("A quoted text in the SQL text has no closing '."));
    EXPECT_EQ(statementRefusal("SELECT \"a"), u("A quoted name in the SQL text has no closing \"."));
    EXPECT_EQ(statementRefusal("SELECT [a"), u("A quoted name in the SQL text has no closing ]."));
    EXPECT_EQ(statementRefusal("SELECT 1 /* a"), u("A comment in the SQL text has no end."));
    EXPECT_EQ(statementRefusal("SELECT $x$ a", Dialect::Postgres),
              u("A quoted text in the SQL text has no closing $x$."));
    EXPECT_TRUE(statementRefusal("SELECT ?").startsWith(u("Parameters are written with a name")));
    EXPECT_EQ(errorOf<EDatabaseError>([] { nuvo::readingStatement(u("SELECT 1") + QChar(), Dialect::Sqlite); }),
              u("The SQL text holds a zero character."));
}

TEST(Statements, LoseCommentsAndSemicolonsAtTheEnd)
{
    EXPECT_EQ(nuvo::readingStatement(u("SELECT 1 -- one\n+ 2; -- end"), Dialect::Sqlite).text, u("SELECT 1  \n+ 2"));
    EXPECT_EQ(nuvo::readingStatement(u("SELECT 1/* a /* b */ c */"), Dialect::Postgres).text, u("SELECT 1"));
    EXPECT_EQ(nuvo::readingStatement(u("SELECT 'it''s -- here' ; "), Dialect::Sqlite).text,
              u("SELECT 'it''s -- here'"));
    EXPECT_FALSE(nuvo::readingStatement(u("SHOW all"), Dialect::Postgres).wrappable);
}

TEST(Statements, TakeNamedParametersOutsideLiterals)
{
    const nuvo::ReadingStatement statement =
        nuvo::readingStatement(u("SELECT a::text, ':no', \":nor\", $$:never$$ FROM t WHERE a > :least AND b = "
                                 ":name_2 -- :not\n OR c=:least"),
                               Dialect::Postgres);
    EXPECT_EQ(statement.parameters, QStringList({u("least"), u("name_2"), u("least")}));
    EXPECT_EQ(statement.with({u("1"), u("'x'"), u("2")}),
              u("SELECT a::text, ':no', \":nor\", $$:never$$ FROM t WHERE a > 1 AND b = 'x'  \n OR c=2"));
    EXPECT_EQ(nuvo::parameterNames(u("SELECT :a, :B, :A"), Dialect::Other), QStringList({u("a"), u("B")}));
    EXPECT_EQ(nuvo::readingStatement(u("SELECT e'\\':a', b ? 'c'"), Dialect::Postgres).parameters, QStringList());
}

TEST(Conditions, ThatAreOneExpressionPass)
{
    for (const char *condition : {"a > 1", "(a > 1) OR (b < 2)", "a = ';' AND b = ')'", "a > 1 -- comment ) ;",
                                  "\"a;b)\" = 1", "a IN (SELECT b FROM c)", "a /* ) */ > 1", "[a)] = 1"})
        EXPECT_TRUE(conditionPasses(condition)) << condition;
}

TEST(Conditions, ThatReachBeyondTheirParenthesesAreRefused)
{
    for (const char *condition : {"1=1) OR (1=1", "1; DROP TABLE t", "1) --", ")(", "(", "a = 'x", "a /* b", "", "  ",
                                  "-- x", "a = :p", "'a' = \"a", "1=1)) UNION SELECT ((1", "a = $$;"})
        EXPECT_FALSE(conditionPasses(condition)) << condition;
    EXPECT_TRUE(conditionPasses("a = $$ ) ; $$", Dialect::Postgres));
    EXPECT_FALSE(conditionPasses("a = $$ ) ; $$", Dialect::Sqlite));
    EXPECT_FALSE(conditionPasses("a = 'x\\') OR (b = 'c'", Dialect::Sqlite));
    EXPECT_FALSE(conditionPasses("a = E'x\\'' ) OR ( b = 'c'", Dialect::Postgres));
    EXPECT_FALSE(conditionPasses("a /* /* */ ) OR (1=1 */", Dialect::Sqlite));
    EXPECT_TRUE(conditionPasses("a > 1 /* /* */ ) OR (1=1 */", Dialect::Postgres));
    EXPECT_FALSE(conditionPasses("a /*! > 1) OR (1=1 */", Dialect::Mysql));
    EXPECT_FALSE(nuvo::quotedName(u("x"), Dialect::Other).isEmpty());
}

TEST(Conditions, SayWhatIsWrongWithThem)
{
    EXPECT_EQ(errorOf<EDatabaseError>([] { nuvo::checkCondition(u("1=1) OR (1=1"), Dialect::Sqlite); }),
              u("The filter \"1=1) OR (1=1\" is not one condition: its parentheses do not match."));
    EXPECT_EQ(errorOf<EDatabaseError>([] { nuvo::checkCondition(u("1; DROP TABLE t"), Dialect::Sqlite); }),
              u("The filter \"1; DROP TABLE t\" is not one condition: it holds a semicolon."));
    EXPECT_EQ(errorOf<EDatabaseError>([] { nuvo::checkCondition(u("a > ? AND b = '?'"), Dialect::Sqlite); }),
              u("The filter \"a > ? AND b = '?'\" is not one condition: it holds a parameter (?)."));
    EXPECT_EQ(errorOf<EDatabaseError>([] { nuvo::checkCondition(u("b = '?'"), Dialect::Sqlite); }), QString());
    EXPECT_EQ(errorOf<EDatabaseError>([] { nuvo::checkCondition(u("j ? 'key'"), Dialect::Postgres); }), QString())
        << "an operator there";
}
