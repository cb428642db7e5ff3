// SPDX-License-Identifier: MIT
#pragma once

class QString;

/// Carries out every run of a fixture file of tests/data/select with the real components over real databases and
/// compares what they did with what the file expects: the trace event by event, the steps, the message boxes, the
/// report, and the model that they leave behind. Decisions and texts must be the same, numbers agree to 1e-9 of their
/// size. Each run is one scoped trace by its name.
void compareWithReference(const QString &path);
