// SPDX-License-Identifier: MIT
#pragma once

#include "support/Print.h"
#include "support/Text.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using Strings = QStringList;

class Designer : public testing::Test
{
protected:
    void SetUp() override
    {
        QFile file(QStringLiteral(SESSION "/seen.json"));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << "the walk left nothing";
        seen_ = QJsonDocument::fromJson(file.readAll()).object();
        ASSERT_FALSE(seen_.isEmpty());
    }

    QJsonValue seen(const char *what) const
    {
        EXPECT_TRUE(seen_.contains(QLatin1String(what))) << what;
        return seen_[QLatin1String(what)];
    }
    bool yes(const char *what) const { return seen(what).toBool(); }
    QString text(const char *what) const { return seen(what).toString(); }
    Strings list(const char *what) const
    {
        Strings strings;
        for (const auto &value : seen(what).toArray())
            strings += value.toString();
        return strings;
    }

    QJsonObject seen_;
};

inline Strings words(const char *text)
{
    return u(text).split(u';');
}
