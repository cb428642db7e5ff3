// SPDX-License-Identifier: MIT
#include "workbench/Ascommand.h"

#include "app/Terms.h"
#include "app/Usage.h"

#include <QRegularExpression>

namespace nuvo {

namespace {

QString quotedName(QString name)
{
    return u'"' + name.replace(u'"', QLatin1String("\"\"")) + u'"';
}

/// What the term has to be read as.
Term expected(const RegressionModel &model, int place)
{
    const Transformation &transformation = *model.transformation(place);
    Term term;
    term.transformation = model.keyword(place);
    term.field1 = model.field(place);
    if (transformation.second == Second::Field2)
        term.field2 = model.secondField(place);
    else if (transformation.second == Second::Exponent)
        term.exponent = model.number(place);
    else if (transformation.second == Second::ScaleFactor)
        term.scaleFactor = model.number(place);
    return term;
}

bool isReadAs(const QString &text, const Term &term, int place)
{
    try {
        return (place == 0 ? parseResponse(text) : parseControl(text)) == term;
    } catch (const UsageError &) {
        return false;
    }
}

/// A word of a shell's line.
QString shellWord(QString text)
{
    static const QRegularExpression plain(QStringLiteral("\\A[A-Za-z0-9_@%+=:,./-]+\\z"));
    if (plain.match(text).hasMatch())
        return text;
    return u'\'' + text.replace(u'\'', QLatin1String("'\\''")) + u'\'';
}

} // namespace

QString commandTerm(const RegressionModel &model, int place)
{
    const Transformation *const transformation = model.transformation(place);
    if (transformation == nullptr)
        return quotedName(model.field(place)); // a keyword that nobody knows counts as none
    const Term term = expected(model, place);
    const auto written = [&](const QString &first, const QString &second) {
        return transformation->before.toString() + first + transformation->behind.toString() +
               (transformation->second == Second::Field2 ? second : term.exponent + term.scaleFactor);
    };
    const QString plain = written(term.field1, term.field2);
    return isReadAs(plain, term, place) ? plain : written(quotedName(term.field1), quotedName(term.field2));
}

QString fitCommand(const ModelState &state)
{
    QStringList words{QStringLiteral("nuvostat"), QStringLiteral("fit")};
    const auto add = [&words](const char *option, const QString &value) {
        words += {QLatin1String(option), shellWord(value)};
    };
    add("--database", state.database);
    if (state.isQuery())
        add("--sql", state.statement());
    else
        add("--table", state.table);
    if (!state.filter.isEmpty() && !state.isQuery())
        add("--filter", state.filter);
    add("--response", commandTerm(state.model, 0));
    for (int place = 1; place < RegressionModel::Places; ++place) {
        if (state.model.isDefined(place))
            add("--control", commandTerm(state.model, place));
    }
    if (state.records != RecordUse::First)
        add("--records", state.records == RecordUse::All ? QStringLiteral("all") : QStringLiteral("server"));
    return words.join(u' ');
}

} // namespace nuvo
