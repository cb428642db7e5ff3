// SPDX-License-Identifier: MIT
#include "app/Terms.h"

#include "app/Usage.h"
#include "support/Print.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <optional>
#include <ostream>
#include <random>

using nuvo::parseControl;
using nuvo::parseResponse;
using nuvo::Term;

namespace nuvo {
// NOLINTNEXTLINE(misc-use-internal-linkage): found by GoogleTest
void PrintTo(const Term &term, std::ostream *out)
{
    *out << term.transformation.toStdString() << " [" << term.field1.toStdString() << "] ["
         << term.field2.toStdString() << "] exponent [" << term.exponent.toStdString() << "] scale ["
         << term.scaleFactor.toStdString() << "]";
}
} // namespace nuvo

namespace {

Term none(const char *field)
{
    return {QStringLiteral("None"), QString::fromUtf8(field), {}, {}, {}};
}
Term log(const char *field)
{
    return {QStringLiteral("Log"), QString::fromUtf8(field), {}, {}, {}};
}
Term inverse(const char *field)
{
    return {QStringLiteral("Inverse"), QString::fromUtf8(field), {}, {}, {}};
}
Term root(const char *field)
{
    return {QStringLiteral("Sqrt"), QString::fromUtf8(field), {}, {}, {}};
}
Term power(const char *field, const char *exponent)
{
    return {QStringLiteral("Power"), QString::fromUtf8(field), {}, QString::fromUtf8(exponent), {}};
}
Term scale(const char *field, const char *factor)
{
    return {QStringLiteral("Scale"), QString::fromUtf8(field), {}, {}, QString::fromUtf8(factor)};
}
Term product(const char *first, const char *second)
{
    return {QStringLiteral("Product"), QString::fromUtf8(first), QString::fromUtf8(second), {}, {}};
}
Term quotient(const char *first, const char *second)
{
    return {QStringLiteral("Quotient"), QString::fromUtf8(first), QString::fromUtf8(second), {}, {}};
}

/// The term, or nothing when the text is refused.
std::optional<Term> control(const QString &text)
{
    try {
        return parseControl(text);
    } catch (const nuvo::UsageError &) {
        return std::nullopt;
    }
}

std::optional<Term> response(const QString &text)
{
    try {
        return parseResponse(text);
    } catch (const nuvo::UsageError &) {
        return std::nullopt;
    }
}

struct Row
{
    const char *text;
    std::optional<Term> asControl; ///< nothing: refused
    std::optional<Term> asResponse;
};

const std::optional<Term> refused;

const Row rows[] = {
    // The forms as reports print them.
    {"GNP", none("GNP"), none("GNP")},
    {"Ln(GNP)", log("GNP"), log("GNP")},
    {"1/GNP", inverse("GNP"), refused},
    {"1/(GNP)", refused, inverse("GNP")},
    {"GNP^1/2", root("GNP"), refused},
    {"GNP^2", power("GNP", "2"), refused},
    {"GNP/1000", scale("GNP", "1000"), scale("GNP", "1000")},
    {"GNP*YEAR", product("GNP", "YEAR"), refused},
    {"GNP/YEAR", quotient("GNP", "YEAR"), refused},

    // Blanks around names, numbers and operators.
    {"  GNP  ", none("GNP"), none("GNP")},
    {"Ln( GNP )", log("GNP"), log("GNP")},
    {" 1 / GNP ", inverse("GNP"), refused},
    {" 1 / ( GNP ) ", refused, inverse("GNP")},
    {"GNP ^ 1 / 2", root("GNP"), refused},
    {"GNP ^ 2", power("GNP", "2"), refused},
    {"GNP / 1000 ", scale("GNP", "1000"), scale("GNP", "1000")},
    {"GNP * YEAR", product("GNP", "YEAR"), refused},
    {" \"GNP\" / \"YEAR\" ", quotient("GNP", "YEAR"), refused},

    // Names that need no quotes: blanks, signs, parentheses, quotes and operators' letters within them.
    {"a b", none("a b"), none("a b")},
    {"Ln", none("Ln"), none("Ln")},
    {"Ln(Ln)", log("Ln"), log("Ln")},
    {"Lnx", none("Lnx"), none("Lnx")},
    {"ln(x)", none("ln(x)"), none("ln(x)")},
    {"LN(x)", none("LN(x)"), none("LN(x)")},
    {"Ln (x)", none("Ln (x)"), none("Ln (x)")},
    {"xLn(y)", none("xLn(y)"), none("xLn(y)")},
    {"Sqrt(x)", none("Sqrt(x)"), none("Sqrt(x)")},
    {"GNP-cap", none("GNP-cap"), none("GNP-cap")},
    {"GNP-cap^2", power("GNP-cap", "2"), refused},
    {"Price (USD)", none("Price (USD)"), none("Price (USD)")},
    {"Ln(Price (USD))", log("Price (USD)"), log("Price (USD)")},
    {"1/(Price (USD))", refused, inverse("Price (USD)")},
    {"Price (USD)/Unit (kg)", quotient("Price (USD)", "Unit (kg)"), refused},
    {"(x)", none("(x)"), none("(x)")},
    {"5a", none("5a"), none("5a")},
    {"1a/2b", quotient("1a", "2b"), refused},
    {"e5", none("e5"), none("e5")},
    {"-", none("-"), none("-")},
    {".", none("."), none(".")},
    {"INF", none("INF"), none("INF")},
    {"GNP/INF", quotient("GNP", "INF"), refused},
    {"nan", none("nan"), none("nan")},
    {"0x10", none("0x10"), none("0x10")},
    {"GNP/0x10", quotient("GNP", "0x10"), refused},
    {"5\" pipe", none("5\" pipe"), none("5\" pipe")},
    {"a\"b/c", quotient("a\"b", "c"), refused},
    {"日本*Größe", product("日本", "Größe"), refused},
    {"１９", none("１９"), none("１９")},
    {"a,b", none("a,b"), none("a,b")},
    {"[a,b]", none("[a,b]"), none("[a,b]")},
    {"{}", none("{}"), none("{}")},
    {"-x", none("-x"), none("-x")},
    {"a.b", none("a.b"), none("a.b")},

    // Names in quotes.
    {"\"1999\"", none("1999"), none("1999")},
    {"\"GNP/cap\"", none("GNP/cap"), none("GNP/cap")},
    {"\"GNP/cap\"^2", power("GNP/cap", "2"), refused},
    {"\"GNP/cap\"^1/2", root("GNP/cap"), refused},
    {"\"a\"\"b\"", none("a\"b"), none("a\"b")},
    {"\"\"\"\"", none("\""), none("\"")},
    {"\"\"", none(""), none("")},
    {"\" a \"", none(" a "), none(" a ")},
    {"\"Ln(x)\"", none("Ln(x)"), none("Ln(x)")},
    {"Ln(\"Ln(x)\")", log("Ln(x)"), log("Ln(x)")},
    {"Ln(\"a/b\")", log("a/b"), log("a/b")},
    {"Ln( \"a)\" )", log("a)"), log("a)")},
    {"1/\"10\"", inverse("10"), refused},
    {"1/(\"10\")", refused, inverse("10")},
    {"1/(\"a/b\")", refused, inverse("a/b")},
    {"1/( \"a\"\"/b\" )", refused, inverse("a\"/b")},
    {"\"1\"/GNP", quotient("1", "GNP"), refused},
    {"\"1\"/\"10\"", quotient("1", "10"), refused},
    {"\"1\"/10", scale("1", "10"), scale("1", "10")},
    {"GNP/\"10\"", quotient("GNP", "10"), refused},
    {"\"1999\"*\"2000\"", product("1999", "2000"), refused},
    {"\"a*b\"*\"c^d\"", product("a*b", "c^d"), refused},
    {"1/\"(x)\"", inverse("(x)"), refused},

    // Numbers are handed on as they are typed.
    {"x^2.0", power("x", "2.0"), refused},
    {"x^+2", power("x", "+2"), refused},
    {"x^-1", power("x", "-1"), refused},
    {"x^0.5", power("x", "0.5"), refused},
    {"x^1e3", power("x", "1e3"), refused},
    {"x^1", power("x", "1"), refused},
    {"x/010", scale("x", "010"), scale("x", "010")},
    {"x/-10", scale("x", "-10"), scale("x", "-10")},
    {"x/.5", scale("x", ".5"), scale("x", ".5")},
    {"x/5.", scale("x", "5."), scale("x", "5.")},
    {"x/1E-3", scale("x", "1E-3"), scale("x", "1E-3")},
    {"x/0", scale("x", "0"), scale("x", "0")},
    {"x/1e999", scale("x", "1e999"), scale("x", "1e999")},
    {"x/1.2.3", quotient("x", "1.2.3"), refused},
    {"x/1e", quotient("x", "1e"), refused},

    // What fits no form.
    {"", Term{QStringLiteral("Undefined"), {}, {}, {}, {}}, refused},
    {" ", refused, refused},
    {"F^abc", refused, refused},
    {"F^INF", refused, refused},
    {"F^\"2\"", refused, refused},
    {"F^1/3", refused, refused},
    {"F^1/2.0", refused, refused},
    {"F^2/2", refused, refused},
    {"F^1,5", refused, refused},
    {"F/1,5", refused, refused},
    {"F/1,000", refused, refused},
    {"1/10", refused, refused},
    {"1/(10)", refused, refused},
    {"1999", refused, refused},
    {"-5", refused, refused},
    {"1e5", refused, refused},
    {"1,5", refused, refused},
    {"2/F", refused, refused},
    {"1.0/F", refused, refused},
    {"2*F", refused, refused},
    {"F*2", refused, refused},
    {"F*G*H", refused, refused},
    {"F/G/H", refused, refused},
    {"F/G/2", refused, refused},
    {"F^2^2", refused, refused},
    {"F*G^2", refused, refused},
    {"1/F^2", refused, refused},
    {"1/F/2", refused, refused},
    {"Ln(F)/2", refused, refused},
    {"Ln(F)*Ln(G)", refused, refused},
    {"G*Ln(F)", refused, refused},
    {"1/Ln(F)", refused, refused},
    {"Ln(F)^2", refused, refused},
    {"Ln(F/G)", refused, refused},
    {"Ln(1/F)", refused, refused},
    {"Ln(Ln(F))", refused, refused},
    {"Ln(10)", refused, refused},
    {"Ln()", refused, refused},
    {"Ln( )", refused, refused},
    {"Ln(", refused, refused},
    {"Ln(F", refused, refused},
    {"Ln(\"F)", refused, refused},
    {"1/()", refused, refused},
    {"1/(F", refused, refused},
    {"1/", refused, refused},
    {"/F", refused, refused},
    {"F/", refused, refused},
    {"F*", refused, refused},
    {"F^", refused, refused},
    {"^2", refused, refused},
    {"*", refused, refused},
    {"/", refused, refused},
    {"^", refused, refused},
    {"^1/2", refused, refused},
    {"\"", refused, refused},
    {"\"F", refused, refused},
    {"\"F\"\"", refused, refused},
    {"\"F\"x", refused, refused},
    {"\"F\" x", refused, refused},
    {"\"F/G", refused, refused},
    {"F*\"G", refused, refused},
};

TEST(Terms, EveryFormAsControlAndAsResponse)
{
    for (const Row &row : rows) {
        SCOPED_TRACE(row.text);
        const QString text = QString::fromUtf8(row.text);
        EXPECT_EQ(control(text), row.asControl);
        EXPECT_EQ(response(text), row.asResponse);
    }
}

TEST(Terms, ARefusalSaysWhatWasTypedAndWhichFormsThereAre)
{
    try {
        parseControl(QStringLiteral("F^abc"));
        FAIL() << "accepted";
    } catch (const nuvo::UsageError &error) {
        EXPECT_TRUE(error.Message().contains(QStringLiteral("\"F^abc\"")));
        EXPECT_TRUE(error.Message().contains(QStringLiteral("F, Ln(F), 1/F, F^1/2, F^K, F/N, F*G or F/G")));
    }
    try {
        parseResponse(QStringLiteral("F^2"));
        FAIL() << "accepted";
    } catch (const nuvo::UsageError &error) {
        EXPECT_TRUE(error.Message().contains(QStringLiteral("\"F^2\"")));
        EXPECT_TRUE(error.Message().contains(QStringLiteral("F, Ln(F), 1/(F) or F/N")));
    }
}

QString quoted(QString name)
{
    return u'"' + name.replace(u'"', QStringLiteral("\"\"")) + u'"';
}

/// A term as a report prints it, with its names in quotes.
QString printed(const Term &term, bool asControl)
{
    QString f = quoted(term.field1);
    if (term.transformation == u"None")
        return f;
    if (term.transformation == u"Log")
        return QStringLiteral("Ln(") + f + u')';
    if (term.transformation == u"Inverse")
        return asControl ? QStringLiteral("1/") + f : QStringLiteral("1/(") + f + u')';
    if (term.transformation == u"Sqrt")
        return f + QStringLiteral("^1/2");
    if (term.transformation == u"Power")
        return f + u'^' + term.exponent;
    if (term.transformation == u"Scale")
        return f + u'/' + term.scaleFactor;
    return f + (term.transformation == u"Product" ? u'*' : u'/') + quoted(term.field2);
}

TEST(Terms, WhatAReportPrintsIsReadBackWhateverTheNames)
{
    const QStringList names{QStringLiteral("GNP"),    QString(),
                            QStringLiteral("1"),      QStringLiteral("1999"),
                            QStringLiteral("Ln(x)"),  QStringLiteral("Ln("),
                            QStringLiteral(")"),      QStringLiteral("1/x"),
                            QStringLiteral("1/(x)"),  QStringLiteral("x^1/2"),
                            QStringLiteral("a*b"),    QStringLiteral("\""),
                            QStringLiteral("\"\""),   QStringLiteral("a\"/\"b"),
                            QStringLiteral("\")"),    QStringLiteral(" a "),
                            QStringLiteral("a b"),    QStringLiteral("\n\r\t"),
                            QStringLiteral("日本語"), QString::fromUcs4(U"\U0001F600"),
                            QString(QChar(0xD800)),   QStringLiteral("a;DROP TABLE b")};
    const QStringList numbers{QStringLiteral("2"),     QStringLiteral("-3"),     QStringLiteral("1.50"),
                              QStringLiteral("1e-10"), QStringLiteral("+.5E+3"), QStringLiteral("007")};
    QList<Term> controls;
    QList<Term> responses;
    for (const QString &name : names) {
        for (const QString &transformation :
             {QStringLiteral("None"), QStringLiteral("Log"), QStringLiteral("Inverse")})
            responses.append({transformation, name, {}, {}, {}});
        controls.append({QStringLiteral("Sqrt"), name, {}, {}, {}});
        for (const QString &number : numbers) {
            responses.append({QStringLiteral("Scale"), name, {}, {}, number});
            controls.append({QStringLiteral("Power"), name, {}, number, {}});
        }
        for (const QString &second : names) {
            controls.append({QStringLiteral("Product"), name, second, {}, {}});
            controls.append({QStringLiteral("Quotient"), name, second, {}, {}});
        }
    }
    for (const Term &term : responses) {
        EXPECT_EQ(response(printed(term, false)), term) << printed(term, false).toStdString();
        EXPECT_EQ(control(printed(term, true)), term) << printed(term, true).toStdString();
    }
    for (const Term &term : controls) {
        EXPECT_EQ(control(printed(term, true)), term) << printed(term, true).toStdString();
        EXPECT_EQ(response(printed(term, true)), std::nullopt) << printed(term, true).toStdString();
    }
}

TEST(Terms, AnyTextIsReadOrRefusedAndWhatIsReadIsReadBack)
{
    const QString alphabet = QStringLiteral("\"\"//**^^()LLnn112.,eE+- xyF\n\\é");
    std::mt19937 random(20240601);
    std::uniform_int_distribution<int> length(0, 14);
    std::uniform_int_distribution<qsizetype> letter(0, alphabet.size() - 1);
    int read = 0;
    for (int i = 0; i < 200000; ++i) {
        QString text;
        for (int n = length(random); n > 0; --n)
            text += alphabet[letter(random)];
        for (const bool asControl : {true, false}) {
            try {
                const Term term = asControl ? parseControl(text) : parseResponse(text);
                if (term.transformation == u"Undefined")
                    continue;
                ++read;
                const QString again = printed(term, asControl);
                ASSERT_EQ(asControl ? control(again) : response(again), term) << text.toStdString();
            } catch (const nuvo::UsageError &error) {
                ASSERT_TRUE(error.Message().contains(text));
                ASSERT_TRUE(error.Message().contains(QStringLiteral("F, Ln(F), 1/")));
            }
        }
    }
    EXPECT_GT(read, 10000);
}

} // namespace
