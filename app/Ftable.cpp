// SPDX-License-Identifier: MIT
#include "app/Ftable.h"

#include "app/Newtable.h"
#include "app/Progressbar.h"

#include <QElapsedTimer>

#include <boost/math/distributions/fisher_f.hpp>

namespace nuvo {
namespace {

constexpr char ftableUsage[] = R"(Usage:
  nuvostat ftable --database DB --table NAME [--denominators N] [--replace]
)";

constexpr char ftableFooter[] = R"(
The table holds quantiles of the F distribution, as the selection of variables
looks them up. Its key is Numerator (1 to 10) and Denominator (1 to N), the
degrees of freedom. The columns "1 Percent", "5 Percent" and "10 Percent" are
the values that are exceeded with that probability, "95 Percent" is the 95th
percentile.

The table is made whole or not at all, in an SQLite file, which is made when it
is not there, or in a PostgreSQL database.

Examples:
  nuvostat ftable --database demo.db --table Fdistribution
  nuvostat ftable --database postgresql://ann@localhost/shop
           --table Fdistribution --denominators 500 --replace)";

} // namespace

FTableCommand::FTableCommand(CLI::App &program)
    : CommandSyntax(program, "ftable", "Make a table of F quantiles", ftableUsage, ftableFooter),
      database_(addDatabase()), table_(addRequired("--table", "NAME", "The table to make")),
      denominators_(addValue("--denominators", "N", "Up to how many; 2500 unless told")),
      replace_(addFlag("--replace", "Replace a table that is there already"))
{
}

FTableOptions FTableCommand::read() const
{
    FTableOptions options;
    options.database = optionText(database_);
    options.table = newTableName(table_);
    if (isGiven(denominators_))
        options.denominators = wholeNumber(denominators_, 1, MaxDenominators);
    options.replace = isGiven(replace_);
    return options;
}

FQuantiles fQuantiles(int numerator, int denominator)
{
    const boost::math::fisher_f_distribution<double> f(numerator, denominator);
    const auto upper = [&f](double probability) { return quantile(complement(f, probability)); };
    return {upper(0.01), upper(0.05), upper(0.10)};
}

QString makeFTable(const FTableOptions &options)
{
    QElapsedTimer clock;
    clock.start();
    const QString numerator = QStringLiteral("Numerator");
    const QString denominator = QStringLiteral("Denominator");
    NewTable table(options.database, options.table);
    table.create({{numerator, ColumnType::Whole},
                  {denominator, ColumnType::Whole},
                  {QStringLiteral("1 Percent"), ColumnType::Floating},
                  {QStringLiteral("5 Percent"), ColumnType::Floating},
                  {QStringLiteral("10 Percent"), ColumnType::Floating},
                  {QStringLiteral("95 Percent"), ColumnType::Floating}},
                 {numerator, denominator}, options.replace);

    constexpr qint64 moment = 500; // milliseconds
    const qint64 rows = qint64(FTableNumerators) * options.denominators;
    ProgressBar bar;
    for (qint64 row = 0; row < rows; ++row) {
        const auto m = qlonglong(row / options.denominators + 1);
        const auto n = qlonglong(row % options.denominators + 1);
        const FQuantiles quantiles = fQuantiles(int(m), int(n));
        table.add({m, n, quantiles.upper1, quantiles.upper5, quantiles.upper10, quantiles.upper5});
        if (bar.shown() && clock.elapsed() >= moment)
            bar.update(int(100 * row / rows), QStringLiteral("%1 rows").arg(row));
    }
    table.commit();
    return QStringLiteral("Made table \"%1\" with %2 rows: numerators 1 to %3, denominators 1 to %4.")
        .arg(options.table, QString::number(rows), QString::number(FTableNumerators),
             QString::number(options.denominators));
}

} // namespace nuvo
