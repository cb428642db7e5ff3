// SPDX-License-Identifier: MIT
#include "workbench/Ascommand.h"

#include "app/Terms.h"
#include "app/Usage.h"

#include <QCoreApplication>
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

void addOption(QStringList &words, const char *option, const QString &value)
{
    const QString name = QLatin1String(option);
    if (value.startsWith(u'-')) // by itself it would be taken for another option
        words.append(name + u'=' + shellWord(value));
    else
        words += {name, shellWord(value)};
}

QStringList beginning()
{
    return {QStringLiteral("nuvostat"), QStringLiteral("fit")};
}

/// What is the same wherever the records are.
void addModel(QStringList &words, const ModelState &state)
{
    if (!state.filter.isEmpty() && !state.isQuery())
        addOption(words, "--filter", state.filter);
    addOption(words, "--response", commandTerm(state.model, 0));
    for (int place = 1; place < RegressionModel::Places; ++place) {
        if (state.model.isDefined(place))
            addOption(words, "--control", commandTerm(state.model, place));
    }
    if (state.records != RecordUse::First)
        addOption(words, "--records",
                  state.records == RecordUse::All ? QStringLiteral("all") : QStringLiteral("server"));
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
    QStringList words = beginning();
    addOption(words, "--database", state.database);
    if (state.isQuery())
        addOption(words, "--sql", state.statement());
    else
        addOption(words, "--table", state.table);
    addModel(words, state);
    return words.join(u' ');
}

QString fitCommand(const ModelState &state, const CsvOrigin &origin)
{
    const CsvCorrections &said = origin.corrections;
    QStringList words = beginning();
    words.append(shellWord(origin.file));
    for (const auto &[name, encoding] : csvEncodings) {
        if (encoding == said.encoding)
            addOption(words, "--encoding", QLatin1String(name));
    }
    if (said.separator)
        addOption(words, "--separator",
                  *said.separator == '\t' ? QStringLiteral("tab") : QString(QLatin1Char(*said.separator)));
    if (said.decimal)
        addOption(words, "--decimal", QString(QLatin1Char(*said.decimal)));
    for (const std::string &null : said.nulls)
        addOption(words, "--null", QString::fromStdString(null));
    addModel(words, state);
    return words.join(u' ');
}

QString csvHindrance(const ModelState &state, const CsvOrigin &origin)
{
    // There the table is called otherwise.
    static const QRegularExpression subquery(QStringLiteral("\\bselect\\b"),
                                             QRegularExpression::CaseInsensitiveOption);
    const QRegularExpression qualified(QRegularExpression::escape(state.table) + QStringLiteral("[\"\\]`]?\\s*\\."),
                                       QRegularExpression::CaseInsensitiveOption);
    if (subquery.match(state.filter).hasMatch() || qualified.match(state.filter).hasMatch())
        return QCoreApplication::translate("Ascommand", "the filter names the table");
    return origin.whyNot();
}

} // namespace nuvo
