#pragma once

#include "app/Json.h"
#include "app/Messagelog.h"
#include "present/Figures.h"
#include "present/Textreport.h"

namespace nuvo {

/// Everything that is known of a regression as it stands: its data, what the load made of them, the figures and the
/// texts of the report where there is a current fit.
Json jsonRegression(const Figures &figures);
Json jsonMessages(const QList<Message> &messages);
Json jsonTexts(const QStringList &texts);

/// The report of a regression for the terminal, or that there is no result; lines ended by LF.
QString textRegression(const Figures &figures, Matrices matrices = Matrices::Left);

} // namespace nuvo
