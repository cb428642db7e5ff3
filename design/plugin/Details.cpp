#include "design/plugin/Details.h"

#include "design/Propertyeditors.h"

namespace {

constexpr nuvo::ComponentDetails Components[] = {
    {"TMLRTable", "<engine/Mlrtable.h>", "mlrTable",
     "A table that fits a multiple linear regression to its own records. Bind it with DatabaseName and TableName, "
     "define the response and up to ten control variables; the program calls Open, ReLoad and Execute."},
    {"TMLRQuery", "<engine/Mlrquery.h>", "mlrQuery",
     "An SQL statement that fits a multiple linear regression to its own records. Bind it with DatabaseName and SQL, "
     "define the response and up to ten control variables; the program calls Open, ReLoad and Execute."},
    {"TOptimizeMLR", "<select/Cvmain.h>", "optimizeMLR",
     "Fits every subset of a regression component's control variables and keeps the best models by OptCriteria. The "
     "program calls Run."},
    {"TBackElimMLR", "<select/Bckmain.h>", "backElimMLR",
     "Takes control variables out of a regression component's model, one by one, by their partial F. The program "
     "calls Run."},
    {"TFwdSelectMLR", "<select/Fwdmain.h>", "fwdSelectMLR",
     "Puts control variables into a regression component's model, one by one, by their partial F. The program calls "
     "Run."},
    {"TStepWiseMLR", "<select/Stepmain.h>", "stepWiseMLR",
     "Puts control variables into a regression component's model and takes them out again, by their partial F. The "
     "program calls Run."},
    {"TTable", "<platform/Table.h>", "table",
     "The records of one table or view. Bind it with DatabaseName and TableName; its models show it in Qt's views."},
    {"TQuery", "<platform/Query.h>", "query",
     "The records of an SQL statement that reads. Bind it with DatabaseName and SQL; its models show it in Qt's "
     "views."},
};

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
    {"Dataset", "The regression component on this form whose model is chosen."},
    {"OptCriteria", "How models are ranked: by dominance (larger R², smaller s²), by the smallest s², by the largest "
                    "F."},
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

const nuvo::ComponentDetails *nuvo::componentDetails(const QString &className)
{
    for (const ComponentDetails &details : Components) {
        if (className == QLatin1String(details.className))
            return &details;
    }
    return nullptr;
}

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
