// SPDX-License-Identifier: MIT
#include "platform/Version.h"

#include <gtest/gtest.h>

#include <string>

TEST(Version, OfTheLibraryIsThatOfItsHeaders)
{
    EXPECT_STREQ(nuvo::libraryVersion(), NUVO_VERSION_TEXT);
    EXPECT_EQ(nuvo::libraryVersionNumber(), NUVO_VERSION_NUMBER);
}

TEST(Version, NumberGrowsWithEachPartOfTheText)
{
    const std::string parts = std::to_string(NUVO_VERSION_NUMBER >> 16) + '.' +
                              std::to_string(NUVO_VERSION_NUMBER >> 8 & 0xff) + '.' +
                              std::to_string(NUVO_VERSION_NUMBER & 0xff);
    EXPECT_EQ(parts, NUVO_VERSION_TEXT);
}

TEST(Version, IsThatOfTheProject)
{
    EXPECT_STREQ(NUVO_VERSION_TEXT, PROJECT_VERSION_TEXT);
}
