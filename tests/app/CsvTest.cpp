// SPDX-License-Identifier: MIT
#include "app/Csv.h"

#include "platform/Errors.h"
#include "support/Print.h"

#include <gtest/gtest.h>

#include <QStringList>
#include <QTemporaryDir>

#include <cmath>
#include <random>

namespace {

class Csv : public testing::Test
{
protected:
    QString write(const QByteArray &bytes)
    {
        QString name = directory_.filePath(QStringLiteral("file.csv"));
        QFile file(name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(bytes), bytes.size());
        return name;
    }

    /// The records, each as its cells between brackets; the error's sentence in place of the rest.
    QStringList read(const QByteArray &bytes)
    {
        QStringList records;
        try {
            nuvo::CsvReader reader(write(bytes));
            while (reader.next()) {
                QString record = QString::number(reader.line()) + u':';
                for (size_t i = 0; i < reader.cellCount(); ++i)
                    record +=
                        u'[' + QString::fromUtf8(reader.cell(i).data(), qsizetype(reader.cell(i).size())) + u']';
                records.append(record);
            }
        } catch (const EPlatformError &error) {
            records.append(error.Message().remove(directory_.path() + u'/'));
        }
        return records;
    }

    /// Names and types of the columns, "income:real"; the error's sentence when it is refused.
    QString typesOf(const QByteArray &bytes)
    {
        try {
            nuvo::CsvReader reader(write(bytes));
            const nuvo::CsvSurvey survey = nuvo::surveyCsv(reader);
            QStringList columns;
            for (const nuvo::CsvColumn &column : survey.columns) {
                const char *types[] = {"whole", "real", "text"};
                columns.append(column.name + u':' + QString::fromLatin1(types[int(column.type)]));
            }
            return columns.join(u' ');
        } catch (const EPlatformError &error) {
            return error.Message().remove(directory_.path() + u'/');
        }
    }

    QTemporaryDir directory_;
};

QStringList lines(std::initializer_list<const char *> texts)
{
    QStringList list;
    for (const char *text : texts)
        list.append(QString::fromUtf8(text));
    return list;
}

TEST_F(Csv, LineFeedsCarriageReturnsAndBothEndLines)
{
    const QStringList expected = lines({"1:[a][b]", "2:[1][2]", "3:[3][4]"});
    EXPECT_EQ(read("a,b\n1,2\n3,4\n"), expected);
    EXPECT_EQ(read("a,b\r\n1,2\r\n3,4\r\n"), expected);
    EXPECT_EQ(read("a,b\r1,2\r3,4\r"), expected);
    EXPECT_EQ(read("a,b\r\n1,2\n3,4"), expected);
}

TEST_F(Csv, QuotesHoldSeparatorsQuotesAndLineBreaks)
{
    EXPECT_EQ(read("a,\"b,c\"\n\"say \"\"hi\"\"\",\"\"\n\"x\ny\r\nz\",\"\"\"\"\nq,r\n"),
              lines({"1:[a][b,c]", "2:[say \"hi\"][]", "3:[x\ny\r\nz][\"]", "6:[q][r]"}));
}

TEST_F(Csv, BlanksAroundQuotesAreLeftOutAndOthersAreKept)
{
    EXPECT_EQ(read("a, \"b\" , c \n 1 ,\" 2 \",3\n"), lines({"1:[a][b][ c ]", "2:[ 1 ][ 2 ][3]"}));
}

TEST_F(Csv, AQuoteWithinACellIsACharacter)
{
    EXPECT_EQ(read("size,x\n5\" pipe,6\"\n"), lines({"1:[size][x]", "2:[5\" pipe][6\"]"}));
}

TEST_F(Csv, EmptyLinesAreLeftOutButNotWhereARecordHasOneCell)
{
    EXPECT_EQ(read("\n\na,b\n\n1,2\n  \n3,4\n\n"), lines({"3:[a][b]", "5:[1][2]", "7:[3][4]"}));
    EXPECT_EQ(read("a\n1\n\n3\n"), lines({"1:[a]", "2:[1]", "3:[]", "4:[3]"}));
}

TEST_F(Csv, AByteOrderMarkIsLeftOut)
{
    EXPECT_EQ(read("\xEF\xBB\xBF"
                   "a,b\n1,2\n"),
              lines({"1:[a][b]", "2:[1][2]"}));
    EXPECT_EQ(read("\xEF\xBB\xBF\"a\",b\n"), lines({"1:[a][b]"}));
}

TEST_F(Csv, SemicolonsAndTabsPartTheCellsWhereTheFirstLineHasNoComma)
{
    EXPECT_EQ(read("a;b\n1,5;2\n"), lines({"1:[a][b]", "2:[1,5][2]"}));
    EXPECT_EQ(read("a\tb\n1\t\n"), lines({"1:[a][b]", "2:[1][]"}));
    EXPECT_EQ(read("a;b,c\n1;2,3\n"), lines({"1:[a;b][c]", "2:[1;2][3]"}));
    EXPECT_EQ(read("\"a,x\";b\n1;2\n"), lines({"1:[a,x][b]", "2:[1][2]"}));
    EXPECT_EQ(read("a\n1\n"), lines({"1:[a]", "2:[1]"}));
}

TEST_F(Csv, ARaggedRowIsToldWithItsLineAndBothCounts)
{
    EXPECT_EQ(read("a,b\n1,\"x\ny\"\n1,2,3\n").last(),
              QStringLiteral("\"file.csv\", line 4: 3 cells where the header row has 2."));
    const QString title = QStringLiteral("; a title or a comment above the header row has to be taken out.");
    EXPECT_EQ(read("Sales\nby Ann\n\na,b\n1,2\n").last(),
              QStringLiteral("\"file.csv\", line 4: 2 cells where the header row has 1") + title);
    EXPECT_EQ(read("Sales, 2024\na,b,c\n1,2,3\n").last(),
              QStringLiteral("\"file.csv\", line 2: 3 cells where the header row has 2") + title);
    EXPECT_EQ(read("a,b\n1\n").last(), QStringLiteral("\"file.csv\", line 2: 1 cell where the header row has 2."));
}

TEST_F(Csv, WhatIsNoTableOfTextIsToldWithItsLine)
{
    EXPECT_EQ(read("a,b\n1,\"2\n3,4\n").last(),
              QStringLiteral("\"file.csv\", line 2: the quote that opens here is never closed."));
    EXPECT_EQ(read("a,b\n1,2\n\"1\"x,2\n").last(),
              QStringLiteral("\"file.csv\", line 3: text behind a closing quote."));
    EXPECT_EQ(read("a,b\n1,\"2\"\"\"\"\n").last(),
              QStringLiteral("\"file.csv\", line 2: the quote that opens here is never closed."));
    EXPECT_EQ(read(QByteArray("a,b\n1,\0\n", 8)).last(),
              QStringLiteral("\"file.csv\", line 2: a zero byte, which no text file has."));
}

TEST_F(Csv, EmptyCellsCountTowardsTheBoundOfARecord)
{
    const QString refused = QStringLiteral("the record that begins here has more than 100000 cells.");
    EXPECT_EQ(read(QByteArray(100000, ',')).last(), QStringLiteral("\"file.csv\", line 1: ") + refused);
    EXPECT_EQ(typesOf("a,b\n" + QByteArray(20000000, ',')), QStringLiteral("\"file.csv\", line 2: ") + refused);
    EXPECT_TRUE(read(QByteArray(99999, ',')).last().startsWith(QStringLiteral("1:[][]")));
}

TEST_F(Csv, OnlyTheStartOfTheFileHasAByteOrderMark)
{
    const QByteArray mark = "\xEF\xBB\xBF";
    EXPECT_EQ(typesOf(mark + mark + "a," + mark + "b\n1,2\n"), QStringLiteral("\uFEFFa:whole \uFEFFb:whole"));
    EXPECT_EQ(nuvo::csvText((mark + "x").toStdString(), nuvo::CsvEncoding::Utf8), QStringLiteral("\uFEFFx"));
    EXPECT_EQ(nuvo::csvText((mark + mark).toStdString(), nuvo::CsvEncoding::Utf8), QStringLiteral("\uFEFF\uFEFF"));
}

TEST_F(Csv, AQuoteThatIsNeverClosedInALongFileEndsAtTheBound)
{
    const QByteArray bytes = "a,b\n1,\"" + QByteArray(70 << 20, 'x');
    EXPECT_TRUE(
        read(bytes).last().contains(QStringLiteral("line 2: the record that begins here is longer than 64 MiB")));
}

TEST_F(Csv, CellsAreWholeWhereverABufferEnds)
{
    // Records of all lengths around the size of a read, with two-byte line ends and doubled quotes at every place.
    for (int filler = (1 << 20) - 40; filler < (1 << 20) + 4; ++filler) {
        const QByteArray bytes = "a,b\r\n" + QByteArray(filler, 'x') + ",\"1\"\"2\r\n3\" \r\n,\r\n";
        nuvo::CsvReader reader(write(bytes));
        ASSERT_TRUE(reader.next());
        ASSERT_TRUE(reader.next());
        ASSERT_EQ(reader.cell(0).size(), size_t(filler));
        ASSERT_EQ(reader.cell(1), "1\"2\r\n3");
        ASSERT_TRUE(reader.next());
        ASSERT_EQ(reader.line(), 4);
        ASSERT_FALSE(reader.next());
    }
}

TEST_F(Csv, RewindingReadsTheSameAgain)
{
    nuvo::CsvReader reader(write("\xEF\xBB\xBF"
                                 "a;b\n1;2\n"));
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(reader.next());
        EXPECT_EQ(reader.cell(0), "a");
        ASSERT_TRUE(reader.next());
        EXPECT_EQ(reader.cell(1), "2");
        EXPECT_EQ(reader.line(), 2);
        EXPECT_FALSE(reader.next());
        reader.rewind();
    }
}

TEST_F(Csv, AFileThatIsNotThereADirectoryAndADeviceAreRefused)
{
    EXPECT_THROW(nuvo::CsvReader(directory_.filePath(QStringLiteral("none.csv"))), EPlatformError);
    EXPECT_THROW(nuvo::CsvReader(directory_.path()), EPlatformError);
    EXPECT_THROW(nuvo::CsvReader(QStringLiteral("/dev/null")), EPlatformError);
}

TEST_F(Csv, AColumnHasTheTypeThatAllItsCellsHave)
{
    const struct
    {
        const char *cells;
        const char *type;
    } rows[] = {
        {"1 2 3", "whole"},
        {"-1 0 +5", "whole"},
        {"9223372036854775807 -9223372036854775808", "whole"},
        {"9223372036854775808", "real"},
        {"1 2.5", "real"},
        {"1.0", "real"},
        {".5 5. -0.25", "real"},
        {"1e3 1E-3 +1.5e+10", "real"},
        {"1e-400 1", "real"},
        {"1e400 1", "text"},
        {"0 0.5 -0.5", "real"},
        {"007", "text"},
        {"-007", "text"},
        {"00.5", "text"},
        {"10115 00123", "text"},
        {"1 x", "text"},
        {"1 NA", "whole"},
        {"1.5 NA", "real"},
        {"NA", "text"},
        {"1 nan Inf -inf +INFINITY", "real"},
        {"NaN", "text"},
        {"NaN x", "text"},
        {"infinite 1", "text"},
        {"na 1", "text"},
        {"1,000", "text"},
        {"$5", "text"},
        {"5%", "text"},
        {"0x10", "text"},
        {"1e", "text"},
        {"1e+", "text"},
        {".", "text"},
        {"-", "text"},
        {"+", "text"},
        {"+-5", "text"},
        {"--5", "text"},
        {"1.2.3", "text"},
        {"2024-01-31", "text"},
        {"TRUE FALSE", "text"},
    };
    for (const auto &row : rows) {
        QByteArray quoted = "x,y\n";
        QByteArray blanks = "x,y\n";
        for (const QByteArray &cell : QByteArray(row.cells).split(' ')) {
            quoted += '"' + cell + "\",\n";
            blanks += " \"" + cell + "\"\t,\n";
        }
        const QString expected = QStringLiteral("x:%1 y:text").arg(QString::fromLatin1(row.type));
        EXPECT_EQ(typesOf(quoted), expected) << row.cells;
        EXPECT_EQ(typesOf(blanks), expected) << row.cells;
    }
    EXPECT_EQ(typesOf("x,y\n 1 ,\n2 ,\n"), QStringLiteral("x:whole y:text"));
    EXPECT_EQ(typesOf("x,y\n"), QStringLiteral("x:text y:text"));
}

TEST_F(Csv, NullsAreEmptyCellsAndNAWithBlanksAndQuotesAside)
{
    for (const char *cell : {"", " ", "NA", " NA\t"}) {
        EXPECT_EQ(nuvo::csvText(cell, nuvo::CsvEncoding::Utf8), std::nullopt);
        EXPECT_EQ(nuvo::csvWhole(cell), std::nullopt);
        EXPECT_EQ(nuvo::csvFloating(cell), std::nullopt);
    }
    EXPECT_EQ(nuvo::csvText("na", nuvo::CsvEncoding::Utf8), QStringLiteral("na"));
    EXPECT_EQ(nuvo::csvText(" N A ", nuvo::CsvEncoding::Utf8), QStringLiteral(" N A "));
    EXPECT_EQ(nuvo::csvFloating("NaN"), std::nullopt);
}

TEST_F(Csv, NumbersAreReadExactly)
{
    EXPECT_EQ(nuvo::csvWhole(" +9223372036854775807 "), 9223372036854775807);
    EXPECT_EQ(nuvo::csvWhole("-9223372036854775808"), std::numeric_limits<qint64>::min());
    EXPECT_EQ(nuvo::csvFloating("0.1"), 0.1);
    EXPECT_EQ(nuvo::csvFloating("+1e-400"), 0.0);
    EXPECT_EQ(nuvo::csvFloating("5e-324"), 5e-324);
    EXPECT_EQ(nuvo::csvFloating("-Inf"), -HUGE_VAL);
    EXPECT_EQ(nuvo::csvFloating("179769313486231570000000000000000000000000000000"), 1.7976931348623157e47);
    EXPECT_THROW(nuvo::csvWhole("1.5"), EPlatformError);
    EXPECT_THROW(nuvo::csvFloating("x"), EPlatformError);
}

TEST_F(Csv, BytesThatAreNoUtf8MakeTheWholeFileWindows1252)
{
    nuvo::CsvReader reader(write("Gr\xF6\xDF"
                                 "e,n\n\x80\x93x\x94,1\n"));
    const nuvo::CsvSurvey survey = nuvo::surveyCsv(reader);
    EXPECT_EQ(survey.format.encoding, nuvo::CsvEncoding::Windows1252);
    EXPECT_EQ(survey.columns[0].name, QStringLiteral("Größe"));
    EXPECT_EQ(nuvo::csvText("\x80\x93x\x94", nuvo::CsvEncoding::Windows1252), QStringLiteral("€“x”"));
    EXPECT_EQ(typesOf("Größe,n\n€,1\n"), QStringLiteral("Größe:text n:whole"));
}

TEST_F(Csv, AFirstColumnWithoutANameHoldsThoseOfTheRows)
{
    EXPECT_EQ(typesOf("\"\",\"x\"\n\"1\",5\n\"2\",6\n"), QStringLiteral("row:whole x:whole"));
    EXPECT_EQ(typesOf("\"x\" \"y\"\n\"1\" 5 1.5\n\"2\" 6 NA\n"), QStringLiteral("row:whole x:whole y:real"));
    EXPECT_EQ(read("x\ty\nAnn\t5\t7\n"), lines({"1:[][x][y]", "2:[Ann][5][7]"}));
    EXPECT_EQ(typesOf(",x,Row\na,5,1\nb,6,1\n"), QStringLiteral("row_2:text x:whole Row:whole"));
}

TEST_F(Csv, AColumnNeedsANameOfItsOwn)
{
    const QString nameless = QStringLiteral("Column 2 of \"file.csv\" has no name in the header row; give it one, or "
                                            "take out what stands above the header "
                                            "row.");
    EXPECT_EQ(typesOf("a,,c\n1,2,3\n"), nameless);
    EXPECT_EQ(typesOf("a,\" \",c\n1,2,3\n"), nameless);
    EXPECT_EQ(
        typesOf("Größe,b,GRÖßE\n1,2,3\n"),
        QStringLiteral("The header row of \"file.csv\" has the name \"GRÖßE\" twice; upper and lower case are the "
                       "same to a database. Give each a name of its own."));
    EXPECT_EQ(typesOf(""), QStringLiteral("The file \"file.csv\" is empty."));
    EXPECT_EQ(typesOf("\n\n"), QStringLiteral("The file \"file.csv\" is empty."));
    EXPECT_EQ(typesOf(" a , \"b c\" \n1,2\n"), QStringLiteral("a:whole b c:whole"));
}

TEST_F(Csv, AColumnWithoutNameAndValuesIsLeftOut)
{
    EXPECT_EQ(typesOf("a,b,,\n1,x,,\n2,y,NA,\n"), QStringLiteral("a:whole b:text"));
    EXPECT_EQ(typesOf(",a,,b\n,1,,2.5\n"), QStringLiteral("a:whole b:real"));
    EXPECT_EQ(typesOf(",,\n,,\n"), QStringLiteral("No column of \"file.csv\" has a name or a value."));
    nuvo::CsvReader reader(write("a,,b,\n1,,2,\n"));
    const nuvo::CsvSurvey survey = nuvo::surveyCsv(reader);
    EXPECT_EQ(survey.leftOut, 2U);
    EXPECT_EQ(survey.columns.at(1).cell, 2U);
}

TEST_F(Csv, ALineThatNamesTheSeparatorIsNoRecord)
{
    EXPECT_EQ(read("sep=;\r\na;b,c\r\n1;2\r\n"), lines({"2:[a][b,c]", "3:[1][2]"}));
    EXPECT_EQ(read("\xEF\xBB\xBFsep=,\na\n1\n"), lines({"2:[a]", "3:[1]"}));
}

TEST_F(Csv, CellsThatStandForMissingValuesAreNullsWhereThatIsSaid)
{
    nuvo::CsvCorrections told;
    told.nulls = {".", "-999", "N/A"};
    nuvo::CsvReader reader(write("a,.,c\n1,-999,N/A\n\" . \",2,x\n-9990,2,x\n"), told);
    const nuvo::CsvSurvey survey = nuvo::surveyCsv(reader);
    EXPECT_EQ(survey.columns.at(0).type, nuvo::ColumnType::Whole);
    EXPECT_EQ(survey.columns.at(1).name, QStringLiteral("."));
    EXPECT_EQ(survey.columns.at(1).type, nuvo::ColumnType::Whole);
    reader.rewind();
    reader.next();
    reader.next();
    EXPECT_EQ(reader.cell(0), "1");
    EXPECT_EQ(reader.cell(1), "");
    EXPECT_EQ(reader.cell(2), "");
}

TEST_F(Csv, ATextAmongNumbersIsRemembered)
{
    nuvo::CsvReader reader(write("a,b\n1,x\n2,y\nn/a,5\n?,z\n"));
    const nuvo::CsvSurvey survey = nuvo::surveyCsv(reader);
    EXPECT_EQ(survey.rows, 4);
    EXPECT_EQ(survey.columns[0].intruder, QStringLiteral("n/a"));
    EXPECT_EQ(survey.columns[0].intruderLine, 4);
    EXPECT_EQ(survey.columns[1].intruderLine, 0);
}

TEST_F(Csv, WhatIsWrittenByTheBookIsReadBack)
{
    std::mt19937 random(7);
    const QByteArray alphabet = "\"\",,;;\t\n\r xyz1\xC3\xA4";
    for (int round = 0; round < 300; ++round) {
        std::vector<std::vector<QByteArray>> table(1 + random() % 5, std::vector<QByteArray>(2 + random() % 3));
        QByteArray bytes;
        for (size_t row = 0; row < table.size(); ++row) {
            for (size_t column = 0; column < table[0].size(); ++column) {
                QByteArray &cell = table[row][column];
                for (size_t n = random() % 6; n > 0; --n)
                    cell += alphabet[qsizetype(random() % size_t(alphabet.size()))];
                bytes += (column == 0 ? "\"" : ",\"") + QByteArray(cell).replace("\"", "\"\"") + '"';
            }
            bytes += row % 2 == 0 ? "\r\n" : "\n";
        }
        nuvo::CsvReader reader(write(bytes));
        for (const auto &row : table) {
            ASSERT_TRUE(reader.next()) << bytes.toStdString();
            for (size_t column = 0; column < row.size(); ++column)
                ASSERT_EQ(reader.cell(column), row[column].toStdString()) << bytes.toStdString();
        }
        ASSERT_FALSE(reader.next());
    }
}

TEST_F(Csv, AnyBytesAreReadOrRefused)
{
    std::mt19937 random(11);
    const QByteArray alphabet = "\"\"\",,;\t\n\r xy1.NA\xFF\xC3\xA4";
    int read = 0;
    for (int round = 0; round < 3000; ++round) {
        QByteArray bytes;
        for (size_t n = random() % 60; n > 0; --n)
            bytes += alphabet[qsizetype(random() % size_t(alphabet.size()))];
        try {
            nuvo::CsvReader reader(write(bytes));
            const nuvo::CsvSurvey survey = nuvo::surveyCsv(reader);
            reader.rewind();
            qint64 rows = -1;
            while (reader.next()) {
                ++rows;
                if (rows == 0)
                    continue;
                ASSERT_EQ(reader.cellCount(), survey.columns.size() + survey.leftOut);
                for (const nuvo::CsvColumn &column : survey.columns) {
                    const std::string_view cell = reader.cell(column.cell);
                    if (column.type == nuvo::ColumnType::Whole)
                        nuvo::csvWhole(cell);
                    else if (column.type == nuvo::ColumnType::Floating)
                        nuvo::csvFloating(cell, survey.format.decimal);
                    else
                        nuvo::csvText(cell, survey.format.encoding);
                }
            }
            ASSERT_EQ(rows, survey.rows);
            ++read;
        } catch (const EPlatformError &error) {
            ASSERT_FALSE(error.Message().contains(QStringLiteral("changed"))) << bytes.toStdString();
        }
    }
    EXPECT_GT(read, 100);
}

} // namespace
