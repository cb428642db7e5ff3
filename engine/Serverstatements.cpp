// SPDX-License-Identifier: MIT
#include "engine/Serverstatements.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace nuvo {

namespace {

QString name(QLatin1Char letter, size_t number)
{
    return letter + QString::number(number);
}

QString sum(const QString &expression)
{
    return QStringLiteral("SUM(%1)").arg(expression);
}

} // namespace

ServerStatements::ServerStatements(std::vector<SqlTerm> terms, ServerSource whole, std::vector<ServerSource> parts,
                                   QString condition, SqlNumbers sql)
    : terms_(std::move(terms)), whole_(std::move(whole)), sources_(std::move(parts)),
      condition_(std::move(condition)), sql_(sql)
{
    if (sources_.empty())
        sources_.push_back(whole_);
}

template <class OfSource>
QString ServerStatements::ofAll(OfSource statement) const
{
    QStringList statements;
    for (const ServerSource &source : sources_)
        statements.append(statement(source, source.nested ? sql_.workedOutOnce() : QString()));
    return statements.join(QLatin1String(" UNION ALL "));
}

QString ServerStatements::from(const ServerSource &source, const QStringList &conditions) const
{
    QStringList all = conditions;
    if (!condition_.isEmpty())
        all.prepend(condition_);
    QString text = QLatin1String(" FROM ") + source.from;
    if (!all.isEmpty())
        text += QLatin1String(" WHERE ") + all.join(QLatin1String(" AND "));
    return text;
}

QString ServerStatements::bit(int term) const
{
    return QStringLiteral("CASE WHEN %1 THEN %2 ELSE 0 END").arg(terms_[size_t(term)].usable).arg(1 << term);
}

QString ServerStatements::counts() const
{
    QStringList bits;
    QStringList inner;
    QStringList outer;
    for (int term = 0; term <= response(); ++term) {
        const SqlTerm &one = terms_[size_t(term)];
        const QString value = name(QLatin1Char('v'), size_t(term));
        const QString lacking = name(QLatin1Char('n'), size_t(term));
        if (one.usable.isEmpty()) {
            outer += {QStringLiteral("NULL"), QStringLiteral("NULL"), QStringLiteral("NULL"), sum(lacking)};
        } else {
            bits.append(bit(term));
            inner.append(QStringLiteral("%1 AS %2").arg(one.safeValue(), value));
            outer += {sum(value), QStringLiteral("MIN(%1)").arg(value), QStringLiteral("MAX(%1)").arg(value)};
            outer += one.usable == one.present ? QStringLiteral("NULL") : sum(lacking);
        }
        if (one.usable != one.present)
            inner.append(QStringLiteral("CASE WHEN %1 THEN 0 ELSE 1 END AS %2").arg(one.present, lacking));
    }
    inner.prepend((bits.isEmpty() ? QStringLiteral("0") : bits.join(QLatin1String(" + "))) + QLatin1String(" AS p"));
    return ofAll([&](const ServerSource &source, const QString &once) {
        return QStringLiteral("SELECT p, COUNT(*), %1 FROM (SELECT %2%3%4) q GROUP BY p")
            .arg(outer.join(QLatin1String(", ")), inner.join(QLatin1String(", ")), once, from(source, {}));
    });
}

QString ServerStatements::shifted(const Column &column) const
{
    const SqlTerm &term = terms_[size_t(column.term)];
    QString value = column.always ? term.value : term.safeValue();
    if (column.shift.exponent != 0)
        value += QLatin1String(" * ") + sql_.literal(std::scalbn(1.0, -column.shift.exponent));
    return column.shift.shift == 0 ? value : QStringLiteral("%1 - %2").arg(value, sql_.literal(column.shift.shift));
}

QString ServerStatements::products(const std::vector<Column> &columns) const
{
    QStringList inner;
    QStringList bits;
    QStringList required;
    QStringList outer{QStringLiteral("COUNT(*)")};
    for (size_t i = 0; i < columns.size(); ++i) {
        const QString u = name(QLatin1Char('u'), i);
        inner.append(QStringLiteral("%1 AS %2").arg(shifted(columns[i]), u));
        outer.append(sum(u));
        if (columns[i].always)
            continue;
        if (columns[i].term == response())
            required.append(terms_[size_t(columns[i].term)].usable);
        else
            bits.append(bit(columns[i].term));
    }
    for (size_t i = 0; i < columns.size(); ++i) {
        for (size_t j = i; j < columns.size(); ++j)
            outer.append(sum(QStringLiteral("u%1 * u%2").arg(i).arg(j)));
    }
    // Where there is one pattern alone, grouping would only cost.
    const bool grouped = !bits.isEmpty();
    outer.prepend(grouped ? QStringLiteral("p") : QStringLiteral("0"));
    if (grouped)
        inner.prepend(bits.join(QLatin1String(" + ")) + QLatin1String(" AS p"));
    return ofAll([&](const ServerSource &source, const QString &once) {
        return QStringLiteral("SELECT %1 FROM (SELECT %2%3%4) q%5")
            .arg(outer.join(QLatin1String(", ")), inner.join(QLatin1String(", ")), once, from(source, required),
                 grouped ? QStringLiteral(" GROUP BY p") : QString());
    });
}

QStringList ServerStatements::usable(const std::vector<Column> &columns) const
{
    QStringList conditions;
    for (const Column &column : columns) {
        if (!column.always)
            conditions.append(terms_[size_t(column.term)].usable);
    }
    return conditions;
}

QString ServerStatements::residuals(const std::vector<Column> &columns, const Combination &combination) const
{
    QStringList inner;
    QStringList names;
    QStringList outer{QStringLiteral("COUNT(*)"), QStringLiteral("SUM(r)")};
    const size_t own = size_t(combination.column) - 1;
    QString residual = name(QLatin1Char('u'), own) + QLatin1String(" - ") + sql_.literal(combination.b[0]);
    for (size_t i = 0; i < columns.size(); ++i) {
        const QString u = name(QLatin1Char('u'), i);
        inner.append(QStringLiteral("%1 AS %2").arg(shifted(columns[i]), u));
        outer.append(i == own ? QStringLiteral("SUM(r * r)") : QStringLiteral("SUM(r * %1)").arg(u));
        if (i != own)
            names.append(u);
        const double b = i + 1 < combination.b.size() && i != own ? combination.b[i + 1] : 0;
        if (b != 0)
            residual += QStringLiteral(" - %1 * %2").arg(sql_.literal(b), u);
    }
    names.prepend(residual + QLatin1String(" AS r"));
    return ofAll([&](const ServerSource &source, const QString &once) {
        return QStringLiteral("SELECT %1 FROM (SELECT %2%4 FROM (SELECT %3%4%5) w) q")
            .arg(outer.join(QLatin1String(", ")), names.join(QLatin1String(", ")), inner.join(QLatin1String(", ")),
                 once, from(source, usable(columns)));
    });
}

QString ServerStatements::sample(int rows, bool partly) const
{
    QStringList bits;
    QStringList selected;
    QStringList conditions;
    QStringList controls;
    for (int term = 0; term <= response(); ++term) {
        const SqlTerm &one = terms_[size_t(term)];
        selected.append(one.safeValue());
        if (one.usable.isEmpty())
            continue;
        bits.append(bit(term));
        (term == response() ? conditions : controls).append(one.usable);
    }
    const QString all = controls.join(QLatin1String(" AND "));
    // A condition that is unknown, because of a null, does not hold either.
    if (partly && !all.isEmpty() && controls.size() == response())
        conditions.append(QStringLiteral("CASE WHEN %1 THEN 0 ELSE 1 END = 1").arg(all));
    else if (!partly && !all.isEmpty())
        conditions.append(all);
    selected.prepend(bits.isEmpty() ? QStringLiteral("0") : bits.join(QLatin1String(" + ")));
    return sql_.limited(QLatin1String("SELECT ") + selected.join(QLatin1String(", ")) + from(whole_, conditions),
                        rows);
}

QString ServerStatements::probe(const ServerSource &source) const
{
    QStringList selected;
    for (const SqlTerm &term : terms_)
        selected.append(term.safeValue());
    return sql_.limited(QLatin1String("SELECT ") + selected.join(QLatin1String(", ")) + from(source, {}), 1);
}

} // namespace nuvo
