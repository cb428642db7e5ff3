// SPDX-License-Identifier: MIT
#include "platform/Csvline.h"
#include "support/Text.h"

#include <gtest/gtest.h>

TEST(CsvLine, CellsArePartedByCommas)
{
    EXPECT_EQ(nuvo::csvLine({u("record"), u("GNP"), u(""), u("x y")}), u("record,GNP,,x y"));
    EXPECT_EQ(nuvo::csvLine({}), QString());
}

TEST(CsvLine, ACellThatWouldBeReadAsAnotherIsQuoted)
{
    EXPECT_EQ(nuvo::csvLine({u("a,b"), u("say \"a\""), u("two\nlines"), u("a\rb")}),
              u("\"a,b\",\"say \"\"a\"\"\",\"two\nlines\",\"a\rb\""));
}

TEST(CsvLine, BlanksAtTheEndsOfACellAreKept)
{
    EXPECT_EQ(nuvo::csvLine({u(" a"), u("a "), u("\ta"), u(" ")}), u("\" a\",\"a \",\"\ta\",\" \""));
}
