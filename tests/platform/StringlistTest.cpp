// SPDX-License-Identifier: MIT
#include "platform/Stringlist.h"

#include "platform/Errors.h"

#include <gtest/gtest.h>

namespace {

TStringList abc()
{
    return TStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
}

} // namespace

TEST(StringList, HoldsItsStringsInOrder)
{
    TStringList list;
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(list.Add(QStringLiteral("x")), 0);
    EXPECT_EQ(list.Add(QString()), 1);
    list.Insert(0, QStringLiteral("first"));
    list.Insert(3, QStringLiteral("last"));
    EXPECT_EQ(list.ToQStringList(),
              QStringList({QStringLiteral("first"), QStringLiteral("x"), QString(), QStringLiteral("last")}));
    list.Put(2, QStringLiteral("y"));
    list.Delete(0);
    EXPECT_EQ(list.ToQStringList(), QStringList({QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("last")}));
    EXPECT_EQ(list[1], QStringLiteral("y"));
    list.Clear();
    EXPECT_EQ(list.Count(), 0);
}

TEST(StringList, FindsAStringUpperAndLowerCaseToldApart)
{
    const TStringList list({QStringLiteral("Defined"), QStringLiteral("Undefined"), QStringLiteral("Undefined")});
    EXPECT_EQ(list.IndexOf(QStringLiteral("Undefined")), 1);
    EXPECT_EQ(list.IndexOf(QStringLiteral("undefined")), -1);
}

TEST(StringList, RefusesEveryIndexOutsideAndStaysAsItWas)
{
    TStringList list = abc();
    for (const int index : {-1, 3, 1000, -2147483647 - 1, 2147483647}) {
        EXPECT_THROW(list.Strings(index), EStringListError) << index;
        EXPECT_THROW(list[index], EStringListError) << index;
        EXPECT_THROW(list.Put(index, QStringLiteral("x")), EStringListError) << index;
        EXPECT_THROW(list.Delete(index), EStringListError) << index;
    }
    EXPECT_THROW(list.Insert(-1, QStringLiteral("x")), EStringListError);
    EXPECT_THROW(list.Insert(4, QStringLiteral("x")), EStringListError);
    EXPECT_EQ(list.ToQStringList(), abc().ToQStringList());
    EXPECT_THROW(TStringList().Strings(0), EStringListError);
}

TEST(StringList, AnIndexErrorSaysWhatWasAskedAndWhatIsThere)
{
    try {
        abc().Strings(7);
        FAIL();
    } catch (const EStringListError &error) {
        EXPECT_EQ(error.Message(), QStringLiteral("No position 7 in a list of 3 strings, which count from 0."));
    }
}

TEST(StringList, AssigningCopiesHoweverManyThereAre)
{
    TStringList list = abc();
    TStringList copy;
    copy.Add(QStringLiteral("gone"));
    copy.Assign(list);
    list.Put(0, QStringLiteral("changed"));
    EXPECT_EQ(copy.ToQStringList(), abc().ToQStringList());
    copy.Assign(QStringList());
    EXPECT_EQ(copy.Count(), 0);
    list.Assign(list);
    EXPECT_EQ(list.Count(), 3);
}
