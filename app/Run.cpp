// SPDX-License-Identifier: MIT
#include "app/Run.h"

#include "app/Console.h"
#include "app/Formreader.h"
#include "app/Interruptible.h"
#include "app/Regressionoutput.h"
#include "app/Selectionoutput.h"
#include "engine/Regression.h"
#include "platform/Dataset.h"
#include "platform/Errors.h"
#include "present/Textreport.h"
#include "select/Corvane.h"

#include <QWidget>

namespace nuvo {
namespace {

constexpr char runUsage[] = R"(Usage:
  nuvostat run FORM.ui [--format text|report|json]
)";

constexpr char runFooter[] = R"(
FORM.ui is a form of Qt Designer with our components on it. In the form's order
every regression component is opened, loaded and fitted, then every selection
component is run. Nothing else of the form is made, and no file is opened
because the form names it, except the databases of its components; a relative
path of a database is looked for beside the form, then in the working directory.

Examples:
  nuvostat run longley.ui
  nuvostat run longley.ui --format json)";

class FormRun
{
public:
    explicit FormRun(const RunOptions &options) : options_(options), form_(loadForm(options.form)) {}

    bool run()
    {
        QList<TDataSet *> regressions;
        QList<TCorvane *> selections;
        for (TComponent *component : form_->findChildren<TComponent *>()) {
            if (auto *selection = qobject_cast<TCorvane *>(component))
                selections.append(selection);
            else if (dynamic_cast<TRegression *>(component) != nullptr)
                regressions.append(static_cast<TDataSet *>(component));
        }
        if (regressions.isEmpty() && selections.isEmpty())
            throw EPlatformError(
                QStringLiteral("The form \"%1\" has no regression and no selection component.").arg(options_.form));
        for (const TCorvane *selection : selections) {
            if (selection->Regression() == nullptr)
                throw EPlatformError(
                    QStringLiteral("%1 on the form \"%2\" is bound to nothing: its Dataset is \"%3\".")
                        .arg(selection->Name(), options_.form, selection->Dataset()));
        }
        for (TDataSet *dataset : regressions)
            perform(*dataset, [&] { fit(*dataset); });
        for (TCorvane *selection : selections)
            perform(*selection, [&] { choose(*selection); });
        writeOutput(output());
        return succeeded_;
    }

private:
    /// An error says which component it is about.
    template <class Action>
    void perform(const TComponent &component, const Action &action) const
    {
        try {
            action();
        } catch (const EPlatformError &error) {
            throw EPlatformError(
                QStringLiteral("%1 on the form \"%2\": %3").arg(component.Name(), options_.form, error.Message()));
        }
    }

    void fit(TDataSet &dataset)
    {
        auto &regression = dynamic_cast<TRegression &>(dataset);
        const MessageLog log;
        dataset.Open();
        {
            const InterruptibleLoads interruptible(regression);
            const bool loaded = regression.ReLoad();
            interruptible.check();
            if (loaded)
                regression.Execute();
        }
        succeeded_ = succeeded_ && regression.ResultsCurrent();
        if (options_.format == OutputFormat::Json)
            put(regressions_, dataset, jsonRegression(figures(regression, Asked())), log);
        else
            put(dataset, textRegression(figures(regression, Asked()), options_.format));
    }

    void choose(TCorvane &selection)
    {
        const MessageLog log([&selection](const Message &message) { return isOwnReport(selection, message); });
        selection.Run();
        succeeded_ = succeeded_ && selection.Regression()->Loaded();
        if (options_.format == OutputFormat::Json)
            put(selections_, selection, jsonSelection(selection), log);
        else
            put(selection, textSelection(selection, options_.format));
    }

    static void put(Json &array, const TComponent &component, const Json &figures, const MessageLog &log)
    {
        Json one = Json::object();
        one["name"] = jsonText(component.Name());
        one.update(figures);
        one["messages"] = jsonMessages(log.messages());
        array.push_back(std::move(one));
    }

    void put(const TComponent &component, const QString &text)
    {
        const QString name = withoutControls(component.Name());
        if (!text_.isEmpty())
            text_ += u'\n';
        text_ += name + u'\n' + QString(displayWidth(name), u'=') + QStringLiteral("\n\n") + text;
    }

    QString output() const
    {
        if (options_.format != OutputFormat::Json)
            return text_;
        Json object = Json::object();
        object["form"] = jsonText(options_.form);
        object["regressions"] = regressions_;
        object["selections"] = selections_;
        return jsonLines(object);
    }

    const RunOptions &options_;
    std::unique_ptr<QWidget> form_;
    Json regressions_ = Json::array();
    Json selections_ = Json::array();
    QString text_;
    bool succeeded_ = true;
};

} // namespace

RunCommand::RunCommand(CLI::App &program)
    : CommandSyntax(program, "run", "Fit and select what a form of Qt Designer holds", runUsage, runFooter),
      form_(addRequired("FORM.ui", "", "The form to load")), format_(addFormat())
{
}

RunOptions RunCommand::read() const
{
    return {optionText(form_), outputFormat(format_)};
}

bool runForm(const RunOptions &options)
{
    return FormRun(options).run();
}

} // namespace nuvo
