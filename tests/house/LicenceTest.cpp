// SPDX-License-Identifier: MIT
#include "house/Files.h"

#include <gtest/gtest.h>

namespace {

/// Whether a comment says so in the first line, or in the second where the first one names an interpreter.
bool saysLicence(const std::vector<std::string> &lines)
{
    const std::size_t at = !lines.empty() && lines[0].rfind("#!", 0) == 0 ? 1 : 0;
    if (lines.size() <= at)
        return false;
    for (const char *comment : {"//", "#", "--"}) {
        if (lines[at] == std::string(comment) + " SPDX-License-Identifier: MIT")
            return true;
    }
    return false;
}

} // namespace

TEST(Licence, EveryFileSaysIt)
{
    const std::vector<std::string> files = projectFiles();
    EXPECT_GT(files.size(), 500U);
    for (const std::string &file : files) {
        // What the packages carry as it stands says it in its own way.
        if (file.rfind("packaging/", 0) == 0 && file.ends_with(".in"))
            continue;
        EXPECT_TRUE(saysLicence(linesOf(file)))
            << file << " does not begin with a comment SPDX-License-Identifier: MIT";
    }
}

TEST(LicenceCheck, NoticesAFileThatDoesNot)
{
    EXPECT_TRUE(saysLicence({"// SPDX-License-Identifier: MIT"}));
    EXPECT_TRUE(saysLicence({"#!/bin/sh", "# SPDX-License-Identifier: MIT"}));
    EXPECT_FALSE(saysLicence({}));
    EXPECT_FALSE(saysLicence({"#!/bin/sh"}));
    EXPECT_FALSE(saysLicence({"#include <vector>", "// SPDX-License-Identifier: MIT"}));
    EXPECT_FALSE(saysLicence({"// SPDX-License-Identifier: Apache-2.0"}));
}
