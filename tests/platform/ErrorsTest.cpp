// SPDX-License-Identifier: MIT
#include "platform/Errors.h"

#include <gtest/gtest.h>

TEST(Errors, KeepTheirMessageInAnyScript)
{
    const QString text = QStringLiteral("No field \"Größe\" in table \"таблица\".");
    try {
        throw EDatabaseError(text);
    } catch (const EPlatformError &error) {
        EXPECT_EQ(error.Message(), text);
    }
}
