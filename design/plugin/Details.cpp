#include "design/plugin/Details.h"

#include "design/Propertyeditors.h"

namespace {

struct ToolTip
{
    const char *property;
    const char *text;
};

constexpr ToolTip ToolTips[] = {
    {"Active",
     "Whether the program opens the dataset when a record is first needed. Switched on here, it is opened at "
     "once, so that an error shows."},
    {"DatabaseName",
     "The path of an SQLite file, a URL (postgresql://user@host:port/name, mysql://…, odbc:DSN), or a "
     "connection that the program registers."},
    {"TableName", "The table or view that is read."},
    {"Filter", "An SQL condition that selects records, as it stands after WHERE; used while Filtered is set."},
    {"Filtered", "Whether Filter is used."},
    {"IndexFieldNames", "Fields that order the records, parted by semicolons; empty: the primary key."},
    {"SQL", "The statement that is read: SELECT, WITH, VALUES or SHOW."},
    {"ResponseVarY", "The response variable Y: not used, form, field, not used, not used, scale factor. Double-click "
                     "the component, or use the button, to define it in a dialog."},
    {"Description", "Heads the reports."},
    {"ShowLoadProgress", "Whether loading shows a progress dialog."},
    {"ShowWarnings", "Whether warnings are shown: too many records, nothing loaded."},
    {"ReportMessage", "Replaces the last line of the report unless it is empty."},
    {"Records",
     "Which records are used: the first 2500 that can be, every one, read once, or every one, added up by the "
     "database server. A load of every record leaves a sample of 2500 for plots and residuals."},
    {"Dataset", "The regression component on this form whose model is chosen."},
    {"Rule",
     "How a model is chosen: as these components always did, or as textbooks do, all candidates on the records "
     "that all control variables can use."},
    {"OptCriteria", "How models are ranked: by dominance (larger R², smaller s²), by the smallest s², by the largest "
                    "F; or, on one sample, by Cp, AIC, BIC, adjusted R² or PRESS."},
    {"ModelsPerSize",
     "How many models of each size are listed when all are compared on one sample; 0: one where that "
     "is so."},
    {"P", "For the rule Textbook: the probability from which the threshold is worked out; 0: none."},
    {"PIn", "For the rule Textbook: the probability from which the threshold to enter is worked out; 0: none."},
    {"POut",
     "For the rule Textbook: the probability from which the threshold to stay is worked out; not below PIn; 0: "
     "none."},
    {"ModelsToSave", "How many models the list keeps, at most 20."},
    {"FDistTable", "The table component on this form that holds critical values of F; empty: the defaults below."},
    {"FPercent", "The column of FDistTable with the thresholds to enter."},
    {"FDefault", "The threshold where no table gives one."},
    {"FInDefault", "The threshold to enter where no table gives one."},
    {"FOutDefault", "The threshold to stay where no table gives one."},
    {"ShowReport", "Whether a message box shows the report at the end of a run."},
    {"ShowProgress", "Whether a run shows a progress dialog."},
};

} // namespace

QString nuvo::propertyToolTip(const QString &property)
{
    if (const int k = controlNumber(property); k > 0)
        return QStringLiteral("Control variable X%1: usage, form, first field, second field, exponent, scale factor. "
                              "Use the button to define it in a dialog.")
            .arg(k);
    for (const ToolTip &toolTip : ToolTips) {
        if (property == QLatin1String(toolTip.property))
            return QString::fromUtf8(toolTip.text);
    }
    return {};
}
