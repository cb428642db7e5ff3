// SPDX-License-Identifier: MIT
#include "select/Reference.h"

#include "support/Regressions.h"

#include <QProcess>

/// The second implementation makes a thousand runs over random data, with a seed each, and says what they come to.
class RandomReference : public testing::TestWithParam<int>
{
};

TEST_P(RandomReference, AThousandRunsAreAsASecondImplementationHasThem)
{
    const QTemporaryDir directory;
    const QString file = directory.filePath(QStringLiteral("runs.json"));
    QProcess python;
    python.setProcessChannelMode(QProcess::ForwardedChannels);
    python.start(QStringLiteral(NUVO_PYTHON),
                 {QStringLiteral(NUVO_REFERENCE), QStringLiteral("--random"), QStringLiteral("1000"),
                  QStringLiteral("--seed"), QString::number(GetParam()), file});
    ASSERT_TRUE(python.waitForFinished(-1)) << python.errorString().toStdString();
    ASSERT_EQ(python.exitStatus(), QProcess::NormalExit);
    ASSERT_EQ(python.exitCode(), 0);
    compareWithReference(file);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomReference, testing::Range(1, 5));
