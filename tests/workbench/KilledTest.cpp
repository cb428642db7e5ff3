// SPDX-License-Identifier: MIT
#include "workbench/Killing.h"

TEST(KilledAtAnyMoment, TheSittingComesBackAsItWas)
{
    killAtRandomMoments(3);
}
