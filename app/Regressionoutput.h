#pragma once

#include "app/Json.h"
#include "app/Messagelog.h"
#include "present/Textreport.h"

class TRegression;

namespace nuvo {

/// Everything that is known of a regression as it stands: its data, what the load made of them, the figures and the
/// texts of the report where there is a current fit. \pre the dataset is open
Json jsonRegression(TRegression &regression);
Json jsonMessages(const QList<Message> &messages);
Json jsonTexts(const QStringList &texts);

/// The report of a regression for the terminal, or that there is no result; lines ended by LF. \pre as above
QString textRegression(TRegression &regression, Matrices matrices = Matrices::Left);

} // namespace nuvo
