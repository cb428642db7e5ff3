// SPDX-License-Identifier: MIT
#include "engine/Serverstatements.h"
#include "engine/server/Serverfit.h"

#include <gtest/gtest.h>

namespace {

nuvo::SqlTerm termIn(nuvo::Dialect dialect, const TIndepVar &definition)
{
    const nuvo::SqlNumbers sql(dialect);
    return nuvo::sqlTerm(definition, sql, [&](const QString &name) {
        const QString column = nuvo::quotedName(name, dialect);
        return nuvo::SqlField{sql.number(column, nuvo::FieldKind::Float),
                              sql.present(column, nuvo::FieldKind::Float)};
    });
}

} // namespace

TEST(TermsInSql, AreWrittenAsEachDatabaseWantsThem)
{
    const TIndepVar log = controlOf("Log", "x");
    EXPECT_EQ(termIn(nuvo::Dialect::Postgres, log).value, u("LN(\"x\"::float8)"));
    EXPECT_EQ(termIn(nuvo::Dialect::Mysql, log).value, u("LN((`x` + 0e0))"));
    EXPECT_EQ(termIn(nuvo::Dialect::Other, log).value, u("{fn LOG(CAST(\"x\" AS DOUBLE PRECISION))}"));
    const TIndepVar power = controlOf("Power", "x", "3");
    EXPECT_EQ(termIn(nuvo::Dialect::Postgres, power).value, u("(-POWER(ABS(\"x\"::float8), '3'::float8))"));
    EXPECT_EQ(termIn(nuvo::Dialect::Mysql, power).value, u("(-POWER(ABS((`x` + 0e0)), 3e0))"));
    EXPECT_EQ(termIn(nuvo::Dialect::Other, power).value,
              u("(-{fn POWER({fn ABS(CAST(\"x\" AS DOUBLE PRECISION))}, 3e0)})"));
}

TEST(TermsInSql, AreNullsWhereTheyCannotBeUsed)
{
    const nuvo::SqlTerm root = termIn(nuvo::Dialect::Mysql, controlOf("Sqrt", "x"));
    EXPECT_EQ(root.present, u("`x` IS NOT NULL"));
    EXPECT_TRUE(root.usable.startsWith(root.present + u(" AND ")));
    EXPECT_EQ(root.safeValue(), u("CASE WHEN %1 THEN %2 END").arg(root.usable, root.value));
    const nuvo::SqlTerm plain = termIn(nuvo::Dialect::Mysql, controlOf("None", "x"));
    EXPECT_EQ(plain.usable, plain.present);
    EXPECT_EQ(plain.safeValue(), plain.value);
    EXPECT_TRUE(termIn(nuvo::Dialect::Mysql, controlOf("Scale", "x", "0")).usable.isEmpty());
}

TEST(TermsInSql, KeepANameANameAndANumberItself)
{
    EXPECT_EQ(termIn(nuvo::Dialect::Postgres, controlOf("None", "a\"b; --")).value, u("\"a\"\"b; --\"::float8"));
    for (const double value : {0.1, -1e-300, 1.7976931348623157e308, 3.0, 1 / 3.0}) {
        for (const nuvo::Dialect dialect : {nuvo::Dialect::Postgres, nuvo::Dialect::Mysql, nuvo::Dialect::Other}) {
            QString text = nuvo::SqlNumbers(dialect).literal(value);
            text.remove(u("::float8")).remove(u'\'').remove(u'(').remove(u')');
            EXPECT_EQ(text.toDouble(), value) << text.toStdString();
        }
    }
}

TEST(ServerStatements, AskEachPartByItselfAndTheWholeForTheSample)
{
    const nuvo::SqlTerm x = termIn(nuvo::Dialect::Other, controlOf("None", "x"));
    const nuvo::SqlTerm y = termIn(nuvo::Dialect::Other, controlOf("None", "y"));
    const nuvo::ServerStatements statements({x, y}, {u("whole"), false, {}},
                                            {{u("a"), false, {}}, {u("b"), false, {}}}, u("(z > 1\n)"),
                                            nuvo::SqlNumbers(nuvo::Dialect::Other));
    EXPECT_EQ(statements.counts().count(u(" FROM a WHERE (z > 1")), 1);
    EXPECT_EQ(statements.counts().count(u(" FROM b WHERE (z > 1")), 1);
    EXPECT_EQ(statements.counts().count(u(" UNION ALL ")), 1);
    EXPECT_EQ(statements.sample(10, false).count(u(" FROM whole WHERE (z > 1")), 1);
    EXPECT_FALSE(statements.sample(10, false).contains(u("LIMIT")));
}
