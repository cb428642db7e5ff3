#include "app/Ftable.h"

#include "app/Newtable.h"
#include "app/Progressbar.h"

#include <QElapsedTimer>

#include <boost/math/distributions/fisher_f.hpp>

namespace nuvo {

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
