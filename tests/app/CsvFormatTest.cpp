// SPDX-License-Identifier: MIT
#include "app/Csv.h"
#include "platform/Errors.h"
#include "support/Print.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <QStringEncoder>
#include <QTemporaryDir>

// How a CSV file is written: recognised from its bytes, or told.

namespace {

using nuvo::CsvCorrections;
using nuvo::CsvEncoding;
using nuvo::CsvFormat;

CsvFormat formatOf(const QByteArray &bytes, const CsvCorrections &corrections = {})
{
    return nuvo::CsvRecogniser({bytes.constData(), size_t(bytes.size())}, true, corrections).format();
}

nuvo::CsvReasons reasonsOf(const QByteArray &bytes, const CsvCorrections &corrections = {})
{
    return nuvo::CsvRecogniser({bytes.constData(), size_t(bytes.size())}, true, corrections).reasons();
}

QByteArray utf16(const QString &text, QStringConverter::Encoding encoding, bool mark)
{
    QStringEncoder encoder(encoding, mark ? QStringConverter::Flag::WriteBom : QStringConverter::Flag::Default);
    return encoder(text);
}

class CsvFile : public testing::Test
{
protected:
    QString write(const QByteArray &bytes)
    {
        QString name = directory_.filePath(u("file.csv"));
        QFile file(name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(bytes), bytes.size());
        return name;
    }
    /// The columns, "x:real", each with what is told of a cell that does not fit.
    QString survey(const QByteArray &bytes, const CsvCorrections &corrections = {})
    {
        try {
            nuvo::CsvReader reader(write(bytes), corrections);
            const nuvo::CsvSurvey survey = nuvo::surveyCsv(reader);
            format = survey.format;
            QStringList columns;
            for (const nuvo::CsvColumn &column : survey.columns) {
                const char *types[] = {"whole", "real", "text"};
                QString told = column.name + u':' + u(types[int(column.type)]);
                if (column.intruderLine > 0)
                    told += u("(%1: %2 %3)").arg(column.intruderLine).arg(column.intruder, column.intruderLike);
                columns.append(told);
            }
            return columns.join(u' ');
        } catch (const EPlatformError &error) {
            return error.Message().remove(directory_.path() + u'/');
        }
    }
    QStringList cells(const QByteArray &bytes, const CsvCorrections &corrections = {})
    {
        QStringList all;
        nuvo::CsvReader reader(write(bytes), corrections);
        while (reader.next()) {
            for (size_t i = 0; i < reader.cellCount(); ++i)
                all.append(nuvo::decoded(reader.cell(i), reader.format().encoding));
        }
        return all;
    }

    QTemporaryDir directory_;
    CsvFormat format;
};

} // namespace

TEST(CsvRecogniser, AByteOrderMarkNamesTheEncoding)
{
    EXPECT_EQ(formatOf("\xEF\xBB\xBF"
                       "a,b\n")
                  .encoding,
              CsvEncoding::Utf8);
    EXPECT_EQ(formatOf(utf16(u("a,b\n1,2\n"), QStringConverter::Utf16LE, true)).encoding,
              CsvEncoding::Utf16LittleEndian);
    EXPECT_EQ(formatOf(utf16(u("a,b\n1,2\n"), QStringConverter::Utf16BE, true)).encoding,
              CsvEncoding::Utf16BigEndian);
    EXPECT_TRUE(reasonsOf(utf16(u("a\n"), QStringConverter::Utf16BE, true)).encoding.contains(u("byte-order mark")));
}

TEST(CsvRecogniser, WithoutAMarkBytesTellTheEncoding)
{
    EXPECT_EQ(formatOf(utf16(u("größe;b\n1,5;2\n"), QStringConverter::Utf16LE, false)).encoding,
              CsvEncoding::Utf16LittleEndian);
    EXPECT_EQ(formatOf(utf16(u("größe;b\n1,5;2\n"), QStringConverter::Utf16BE, false)).encoding,
              CsvEncoding::Utf16BigEndian);
    EXPECT_EQ(formatOf("größe,b\n").encoding, CsvEncoding::Utf8);
    EXPECT_EQ(formatOf("gr\xF6\xDF"
                       "e,b\n")
                  .encoding,
              CsvEncoding::Windows1252);
    EXPECT_EQ(formatOf("").encoding, CsvEncoding::Utf8);
    EXPECT_EQ(formatOf(QByteArray("a,b\n1,\0\n", 8)).encoding, CsvEncoding::Utf8);
}

TEST(CsvRecogniser, ACharacterThatTheEndOfTheBytesCutsIsNoForeignByte)
{
    const std::string_view bytes = "a,b\n\xE2\x82";
    EXPECT_EQ(nuvo::CsvRecogniser(bytes, false).format().encoding, CsvEncoding::Utf8);
    EXPECT_EQ(nuvo::CsvRecogniser(bytes, true).format().encoding, CsvEncoding::Windows1252);
}

TEST(CsvRecogniser, SeparatorsAreThoseOfTheHeaderRowUnlessRecordsContradict)
{
    EXPECT_EQ(formatOf("a,b;c\n1,2;3\n").separator, ',');
    EXPECT_EQ(formatOf("a;b;c\td\n1;2;3\t4\n").separator, ';');
    EXPECT_EQ(formatOf("a\tb;c\td\n1\t2\t3\n").separator, '\t');
    EXPECT_EQ(formatOf("a\n1\n").separator, ',');
    // A comma within a name.
    EXPECT_EQ(formatOf("Name;Preis, netto;Menge\nx;1,5;2\ny;2;3\n").separator, ';');
    EXPECT_TRUE(reasonsOf("Name;Preis, netto;Menge\nx;1,5;2\ny;2;3\n").separator.contains(u("3 cells")));
    EXPECT_EQ(formatOf("\"a;b\",c\n1,2\n").separator, ',');
    EXPECT_TRUE(reasonsOf("a;b;c\n").separator.contains(u("2 semicolons and no comma")));
    // What agrees with nothing is told by the reader, by the header row's separator.
    EXPECT_EQ(formatOf("a,b\n1;2;3,4,5\n1\n").separator, ',');
}

TEST(CsvRecogniser, BarsAndBlanksPartTheCellsOfAHeaderRowWithoutAnotherSeparator)
{
    EXPECT_EQ(formatOf("a|b\n1|2\n").separator, '|');
    EXPECT_EQ(formatOf("a|b\nx|2,5\n"), (CsvFormat{CsvEncoding::Utf8, '|', ','}));
    EXPECT_TRUE(reasonsOf("a|b|c\n1|2|3\n").separator.contains(u("3 cells")));
    EXPECT_EQ(formatOf("a|b\n1|2\n3\n").separator, ',');
    EXPECT_EQ(formatOf("a,b|c\n1,2|3\n").separator, ',');
    EXPECT_EQ(formatOf("\"a\" \"b c\"\n1 2.5\n3 NA\n").separator, ' ');
    EXPECT_EQ(formatOf("a b\n1 2,5\n"), (CsvFormat{CsvEncoding::Utf8, ' ', ','}));
    // Names of two words, and a title.
    EXPECT_EQ(formatOf("full name\nAnn Smith\nBob Jones\n").separator, ',');
    EXPECT_EQ(formatOf("my numbers\n1\n2\n").separator, ',');
}

TEST(CsvRecogniser, TheNamesOfRowsNeedNoCellInTheHeaderRow)
{
    EXPECT_TRUE(formatOf("\"a\" \"b\"\n\"1\" 41 190\n\"2\" 36 NA\n").rowNames);
    EXPECT_EQ(formatOf("\"a\" \"b\"\n\"1\" 41 190\n").separator, ' ');
    EXPECT_TRUE(formatOf("a\tb\n1\t41\t190\n").rowNames);
    EXPECT_TRUE(formatOf("\"a\",\"b\"\n\"1\",41,190\n").rowNames);
    EXPECT_TRUE(formatOf("a,b\nAnn,41,190\n").rowNames);
    // Decimal commas that nobody quoted, a separator at the end of each record, a title.
    EXPECT_FALSE(formatOf("a,b\n1,5,2\n2,5,3\n").rowNames);
    EXPECT_FALSE(formatOf("a;b\n1;2;\n2;3;\n").rowNames);
    EXPECT_FALSE(formatOf("a;b\n1;2;\n2;3;a note\n").rowNames);
    EXPECT_FALSE(formatOf("a;b\n1;2;3\n1;3;4\n").rowNames);
    EXPECT_FALSE(formatOf("Prices\na;b\n1;2\n").rowNames);
    EXPECT_FALSE(formatOf("a;b\n1;2\n").rowNames);
}

TEST(CsvRecogniser, AFirstLineCanNameTheSeparator)
{
    const nuvo::CsvRecogniser recogniser("sep=;\r\na;b,c\r\n1,5;2\r\n", true);
    EXPECT_EQ(recogniser.format(), (CsvFormat{CsvEncoding::Utf8, ';', ','}));
    EXPECT_EQ(recogniser.markLength(), 7U);
    EXPECT_EQ(recogniser.firstLine(), 2);
    CsvCorrections told;
    told.separator = ',';
    EXPECT_EQ(formatOf("sep=;\na,b\n", told).separator, ',');
    EXPECT_EQ(formatOf("sep=x,b\n1,2\n").separator, ',');
}

TEST(CsvRecogniser, ADecimalCommaNeedsANumberThatHasNoOtherMeaning)
{
    EXPECT_EQ(formatOf("a;b\n1,5;x\n2;y\n").decimal, ',');
    EXPECT_EQ(formatOf("a;b\n0,125;x\n").decimal, ',');
    EXPECT_EQ(formatOf("a;b\n1234,567;x\n").decimal, ',');
    EXPECT_EQ(formatOf("a;b\n-1,5e3;x\n").decimal, ',');
    EXPECT_EQ(formatOf("a\tb\n1,25\t3\n").decimal, ',');
    EXPECT_EQ(formatOf("a;b\n1,234;2,345\n").decimal, '.');
    EXPECT_TRUE(reasonsOf("a;b\n1,234;2,345\n").decimal.contains(u("--decimal")));
    EXPECT_EQ(formatOf("a;b\n1,234;2,5\n").decimal, ',');
    EXPECT_EQ(reasonsOf("a;b\n1.234;2\n").decimal,
              u("points could be decimal or part thousands; --decimal says which"));
    EXPECT_EQ(reasonsOf("a;b\n1.234;2.5\n").decimal, u("line 2 has \"2.5\""));
    // A column of another kind says nothing.
    EXPECT_EQ(formatOf("a;b\n1,5;2\nx,y;3\n").decimal, '.');
    EXPECT_EQ(formatOf("a;b\n1.5;1,5\n").decimal, '.');
    EXPECT_EQ(formatOf("a;b\n1.234;1,5\n").decimal, ',');
    EXPECT_EQ(formatOf("a,b\n\"1,5\",2\n").decimal, '.');
    EXPECT_EQ(reasonsOf("a;b\nx;2\n1;1,5\n").decimal, u("line 3 has \"1,5\""));
}

TEST(CsvRecogniser, WhatIsToldIsTaken)
{
    CsvCorrections told;
    told.separator = '|';
    told.decimal = ',';
    told.encoding = CsvEncoding::Latin1;
    EXPECT_EQ(formatOf("a|b\n1.5|2\n", told), (CsvFormat{CsvEncoding::Latin1, '|', ','}));
    EXPECT_EQ(reasonsOf("a|b\n", told).separator, u("as told"));
    // The rest is recognised beside it.
    CsvCorrections separator;
    separator.separator = '|';
    EXPECT_EQ(formatOf("a|b\n1,5|2\n", separator), (CsvFormat{CsvEncoding::Utf8, '|', ','}));
}

TEST(CsvRecogniser, AnyBytesHaveAFormat)
{
    std::string bytes;
    unsigned seed = 5;
    for (int round = 0; round < 2000; ++round) {
        bytes.clear();
        for (int n = round % 50; n > 0; --n) {
            seed = seed * 1664525 + 1013904223;
            bytes += "\"\";,\t\n\r1.5,x\xFF\xFE\0\xC3\xA4"[(seed >> 16) % 17];
        }
        const CsvFormat format = nuvo::CsvRecogniser(bytes, round % 2 == 0).format();
        EXPECT_TRUE(format.decimal == '.' || format.decimal == ',');
        EXPECT_TRUE(format.separator == ',' || format.separator == ';' || format.separator == '\t');
    }
}

TEST_F(CsvFile, OfUtf16IsReadWhereverABufferEnds)
{
    for (const auto encoding : {QStringConverter::Utf16LE, QStringConverter::Utf16BE}) {
        for (const bool mark : {true, false}) {
            EXPECT_EQ(cells(utf16(u("größe;b\n1,5;\"😀\n€\"\n"), encoding, mark)),
                      (QStringList{u("größe"), u("b"), u("1,5"), u("😀\n€")}));
        }
        // A character of two units on either side of a read.
        for (int filler = (1 << 19) - 4; filler < (1 << 19) + 2; ++filler)
            EXPECT_EQ(cells(utf16(u("a;b\n%1😀;€\n").arg(QString(filler, u'x')), encoding, true)).last(), u("€"))
                << filler;
    }
    EXPECT_EQ(survey(utf16(u("a;b\n1,5;2\n"), QStringConverter::Utf16LE, true).chopped(1)),
              u("\"file.csv\", line 2: the file ends within a character of UTF-16, little-endian."));
}

TEST_F(CsvFile, WithDecimalCommasHasColumnsOfNumbers)
{
    EXPECT_EQ(survey("a;b;c\n1,5;2;x\n-,25;3;\n1e-3;4;z\n"), u("a:real b:whole c:text"));
    EXPECT_EQ(format.decimal, ',');
    EXPECT_EQ(nuvo::csvFloating("-1,5e3", ','), -1500.0);
    EXPECT_EQ(nuvo::csvFloating("0,1", ','), 0.1);
    EXPECT_THROW(nuvo::csvFloating("1.5", ','), EPlatformError);
    EXPECT_THROW(nuvo::csvFloating("1,5,5", ','), EPlatformError);
    CsvCorrections point;
    point.decimal = '.';
    EXPECT_EQ(survey("a;b\n1,5;2\n", point), u("a:text(2: 1,5 has a decimal comma) b:whole"));
    CsvCorrections comma;
    comma.decimal = ',';
    EXPECT_EQ(survey("a,b\n\"1,234\",2\n", comma), u("a:real b:whole"));
}

TEST_F(CsvFile, SaysWhatTheWholeOfItTells)
{
    // Behind what the recogniser looks at.
    const QByteArray lines = QByteArray("1;x\n").repeated(400000);
    EXPECT_EQ(survey("a;b\n" + lines + "1,5;y\n"), u("a:real b:text"));
    EXPECT_EQ(format.decimal, ',');
    EXPECT_EQ(survey("a;b\n1,5;x\n" + lines + "1.5;y\n"), u("a:text(2: 1,5 has a decimal comma) b:text"));
    EXPECT_EQ(survey("a;b\n" + lines + "1;\xE4\n"), u("a:whole b:text"));
    EXPECT_EQ(format.encoding, CsvEncoding::Windows1252);
    CsvCorrections utf8;
    utf8.encoding = CsvEncoding::Utf8;
    EXPECT_EQ(survey("a;b\n1;\xE4\n", utf8),
              u("\"file.csv\", line 2: some byte is no UTF-8, which the file was said to be."));
}

TEST_F(CsvFile, NamesThousandsSeparatorsAndDates)
{
    const QString thousands = u(" has thousands separators");
    EXPECT_EQ(survey("a\n1\n\"1,234.5\"\n"), u("a:text(3: 1,234.5%1)").arg(thousands));
    EXPECT_EQ(survey("a;b\n1,5;1.234,5\n"), u("a:real b:text(2: 1.234,5%1)").arg(thousands));
    EXPECT_EQ(survey("a;b\n1,5;1.234\n"), u("a:real b:text(2: 1.234%1)").arg(thousands));
    EXPECT_EQ(survey("a;b\n2;1,234\n"), u("a:whole b:text(2: 1,234%1 or a decimal comma)").arg(thousands));
    EXPECT_EQ(survey("a;b\n2;1 234 567\n"), u("a:whole b:text(2: 1 234 567%1)").arg(thousands));
    EXPECT_EQ(survey("a;b\n2;1\u00A0234,5\n"), u("a:whole b:text(2: 1\u00A0234,5%1)").arg(thousands));
    EXPECT_EQ(survey("a;b\n2;1'234.5\n"), u("a:whole b:text(2: 1'234.5%1)").arg(thousands));
    for (const char *date :
         {"2024-01-31", "31.12.2024", "12/31/99", "1/2/2024", "2024-01-31 12:30:00", "2024-01-31T12:30Z"})
        EXPECT_EQ(survey(QByteArray("a;b\n2;") + date + '\n'), u("a:whole b:text(2: %1 is a date)").arg(u(date)));
    for (const char *share : {"12%", "12.5 %", "-3,5%"})
        EXPECT_EQ(survey(QByteArray("a;b\n2;") + share + '\n'),
                  u("a:whole b:text(2: %1 is a percentage)").arg(u(share)));
    EXPECT_EQ(survey("a;b\n2;12:30\n"), u("a:whole b:text(2: 12:30 is a time of day)"));
    for (const char *other : {"1.2.3", "2024-13-45", "12,34,5", "0,123,4", "1,23x", "00123", "v1,5"})
        EXPECT_EQ(survey(QByteArray("a;b\n2;") + other + '\n'), u("a:whole b:text")) << other;
}

TEST_F(CsvFile, OfAnotherKindIsNamed)
{
    EXPECT_TRUE(survey("SQLite format 3\0...").startsWith(u("\"file.csv\" is an SQLite database, no CSV file")));
    EXPECT_TRUE(survey("PK\x03\x04...").contains(u("save the sheet as CSV")));
}

TEST_F(CsvFile, OfLatin1KeepsWhatWindowsWritesOtherwise)
{
    CsvCorrections latin;
    latin.encoding = CsvEncoding::Latin1;
    EXPECT_EQ(cells("a\n\x80\xE4\n", latin).last(), u("\u0080ä"));
    EXPECT_EQ(cells("a\n\x80\xE4\n").last(), u("€ä"));
}
