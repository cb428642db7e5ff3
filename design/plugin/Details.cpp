// SPDX-License-Identifier: MIT
#include "design/plugin/Details.h"

#include "design/Propertyeditors.h"
#include "design/plugin/Sheet.h"

#include <algorithm>
#include <iterator>

namespace {

struct Detail
{
    const char *property;
    const char *group;
    const char *text;
};

// In the order in which people think of a model: its data, the response, the controls, and how it is shown.
constexpr char Data[] = "Data";
constexpr char Response[] = "Response";
constexpr char Controls[] = "Controls";
constexpr char Choice[] = "Choice";
constexpr char Thresholds[] = "Thresholds";
constexpr char Options[] = "Options";

constexpr Detail Details[] = {
    {"Active", Data,
     "Whether the program opens the dataset when a record is first needed. Switched on here, it is opened at "
     "once, so that an error shows."},
    {"DatabaseName", Data,
     "The path of an SQLite file, a URL (postgresql://user@host:port/name, mysql://…, odbc:DSN), or a "
     "connection that the program registers."},
    {"TableName", Data, "The table or view that is read."},
    {"Filter", Data, "An SQL condition that selects records, as it stands after WHERE; used while Filtered is set."},
    {"Filtered", Data, "Whether Filter is used."},
    {"IndexFieldNames", Data, "Fields that order the records, parted by semicolons; empty: the primary key."},
    {"SQL", Data, "The statement that is read: SELECT, WITH, VALUES or SHOW."},
    {"ResponseVarY", Response,
     "The response variable Y: not used, form, field, not used, not used, scale factor. Double-click "
     "the component, or use the button, to define it in a dialog."},
    {"Description", Options, "Heads the reports."},
    {"ShowLoadProgress", Options, "Whether loading shows a progress dialog."},
    {"ShowWarnings", Options, "Whether warnings are shown: too many records, nothing loaded."},
    {"ReportMessage", Options, "Replaces the last line of the report unless it is empty."},
    {"Records", Data,
     "Which records are used: the first 2500 that can be, every one, read once, or every one, added up by the "
     "database server. A load of every record leaves a sample of 2500 for plots and residuals."},
    {"Dataset", Data, "The regression component on this form whose model is chosen."},
    {"Rule", Choice,
     "How a model is chosen: as these components always did, or as textbooks do, all candidates on the records "
     "that all control variables can use."},
    {"OptCriteria", Choice,
     "How models are ranked: by dominance (larger R², smaller s²), by the smallest s², by the largest "
     "F; or, on one sample, by Cp, AIC, BIC, adjusted R² or PRESS."},
    {"ModelsPerSize", Choice,
     "How many models of each size are listed when all are compared on one sample; 0: one where that "
     "is so."},
    {"P", Thresholds, "For the rule Textbook: the probability from which the threshold is worked out; 0: none."},
    {"PIn", Thresholds,
     "For the rule Textbook: the probability from which the threshold to enter is worked out; 0: none."},
    {"POut", Thresholds,
     "For the rule Textbook: the probability from which the threshold to stay is worked out; not below PIn; 0: "
     "none."},
    {"ModelsToSave", Choice, "How many models the list keeps, at most 20."},
    {"FDistTable", Thresholds,
     "The table component on this form that holds critical values of F; empty: the defaults below."},
    {"FPercent", Thresholds, "The column of FDistTable with the thresholds to enter."},
    {"FDefault", Thresholds, "The threshold where no table gives one."},
    {"FInDefault", Thresholds, "The threshold to enter where no table gives one."},
    {"FOutDefault", Thresholds, "The threshold to stay where no table gives one."},
    {"ShowReport", Options, "Whether a message box shows the report at the end of a run."},
    {"ShowProgress", Options, "Whether a run shows a progress dialog."},
};

const Detail *detailOf(const QString &property)
{
    const auto found = std::find_if(std::begin(Details), std::end(Details), [&property](const Detail &detail) {
        return property == QLatin1String(detail.property);
    });
    return found == std::end(Details) ? nullptr : found;
}

} // namespace

QString nuvo::propertyToolTip(const QString &property)
{
    if (const int k = controlNumber(property); k > 0)
        return QStringLiteral("Control variable X%1: usage, form, first field, second field, exponent, scale factor. "
                              "Use the button to define it in a dialog.")
            .arg(k);
    if (property == QLatin1String(ModelRow))
        return QStringLiteral(
            "The response and the control variables, as reports write them. Use the button to define "
            "them all at once. It is made of the definitions below; a form does not store it.");
    const Detail *detail = detailOf(property);
    return detail == nullptr ? QString() : QString::fromUtf8(detail->text);
}

QString nuvo::propertyGroup(const QString &property)
{
    if (controlNumber(property) > 0)
        return QLatin1String(Controls);
    if (property == QLatin1String(ModelRow))
        return QLatin1String(Response);
    const Detail *detail = detailOf(property);
    return detail == nullptr ? QString() : QLatin1String(detail->group);
}
