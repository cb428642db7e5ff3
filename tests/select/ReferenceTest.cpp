// SPDX-License-Identifier: MIT
#include "select/Reference.h"

#include "support/Regressions.h"

class Reference : public testing::TestWithParam<const char *>
{
};

TEST_P(Reference, EveryRunIsAsASecondImplementationHasIt)
{
    compareWithReference(QStringLiteral(NUVO_TEST_DATA "/select/%1.json").arg(text(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(Fixtures, Reference, testing::Values("published", "edges", "random"),
                         [](const auto &fixture) { return std::string(fixture.param); });
