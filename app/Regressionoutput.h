// SPDX-License-Identifier: MIT
#pragma once

#include "app/Format.h"
#include "app/Json.h"
#include "app/Messagelog.h"
#include "present/Figures.h"
#include "present/Page.h"

namespace nuvo {

/// Everything that is known of a regression as it stands: its data, what the load made of them, the figures and the
/// texts of the report where there is a current fit.
Json jsonRegression(const Figures &figures);
Json jsonMessages(const QList<Message> &messages);
Json jsonTexts(const QStringList &texts);

/// A regression for the terminal, or that there is no result; lines ended by LF: as Text the page of statistics, as
/// Report the report of the report window, in which `style` has a say about the matrices alone.
QString textRegression(const Figures &figures, OutputFormat format, const PageStyle &style = {});

} // namespace nuvo
