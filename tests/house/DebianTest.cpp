// SPDX-License-Identifier: MIT
#include "house/Files.h"

#include <gtest/gtest.h>

namespace {

/// What only Debian has: its tools, its folders for each processor.
bool reliesOnDebian(const std::string &line)
{
    for (const char *word : {"apt-get", "dpkg", "-linux-gnu"}) {
        if (line.find(word) != std::string::npos)
            return true;
    }
    return false;
}

/// What installs what is missing and what makes packages may; and what tries these.
bool mayKnowDebian(const std::string &file)
{
    for (const char *place : {"scripts/", "packaging/", "cmake/NuvoPackages.cmake", "tests/house/", ".ci/"}) {
        if (file.rfind(place, 0) == 0)
            return true;
    }
    return false;
}

} // namespace

TEST(Debian, IsReliedOnByScriptsAndPackagingAlone)
{
    int looked = 0;
    for (const std::string &file : projectFiles()) {
        if (mayKnowDebian(file))
            continue;
        ++looked;
        int number = 0;
        for (const std::string &line : linesOf(file)) {
            ++number;
            EXPECT_FALSE(reliesOnDebian(line)) << file << ':' << number << ": " << line;
        }
    }
    EXPECT_GT(looked, 500);
}

TEST(DebianCheck, NoticesAPathOfItsOwn)
{
    EXPECT_TRUE(reliesOnDebian("set(plugins /usr/lib/x86_64-linux-gnu/qt6/plugins)"));
    EXPECT_TRUE(reliesOnDebian("execute_process(COMMAND dpkg --print-architecture)"));
    EXPECT_FALSE(reliesOnDebian("add(\"app/.*\", 5);"));
    EXPECT_TRUE(mayKnowDebian("scripts/install"));
    EXPECT_FALSE(mayKnowDebian("app/Main.cpp"));
}
