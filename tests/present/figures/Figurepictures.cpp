// SPDX-License-Identifier: MIT
#include "present/figures/Figurefile.h"
#include "present/figures/Figurepainter.h"
#include "present/figures/Smallfit.h"

#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <cstdio>
#include <ctime>

// Pictures of every kind of figure, to look at: figurepictures samples.db DIRECTORY
namespace {

nuvo::FigureData read(const char *table, const char *response, const QStringList &terms)
{
    QSqlQuery query(QStringLiteral("SELECT %1, %2 FROM %3")
                        .arg(QLatin1String(response), terms.join(QStringLiteral(", ")), QLatin1String(table)));
    Column y;
    std::vector<Column> x(std::size_t(terms.size()));
    std::vector<qint64> records;
    for (qint64 record = 1; query.next(); ++record) {
        bool complete = true;
        for (int j = 0; j <= terms.size(); ++j)
            complete = complete && !query.isNull(j);
        if (!complete)
            continue;
        records.push_back(record);
        y.push_back(query.value(0).toDouble());
        for (int j = 1; j <= terms.size(); ++j)
            x[std::size_t(j - 1)].push_back(query.value(j).toDouble());
    }
    return smallFit(QLatin1String(response), y, terms, x, records);
}

void draw(const nuvo::FigureData &data, const QString &name, const QDir &directory)
{
    const auto save = [&](const nuvo::Figure &figure, const char *way, QSize size, double ratio, bool dark,
                          const std::set<qint64> &selected = {}) {
        QImage image = nuvo::figureImage(figure, {size, u'.', dark, {}, selected}, ratio);
        image.setDevicePixelRatio(1);
        image.save(directory.filePath(
            QStringLiteral("%1-%2-%3.png").arg(name, nuvo::figureFileName(figure), QLatin1String(way))));
    };
    double slowest = 0;
    for (const nuvo::Figure &figure : nuvo::fitFigures(data)) {
        save(figure, "usual", {800, 600}, 1, false);
        save(figure, "double", {640, 480}, 2, false, {data.records.empty() ? 5 : data.records[4]});
        save(figure, "dark", {640, 480}, 1, true, {data.records.empty() ? 5 : data.records[4]});
        save(figure, "small", {320, 200}, 1, false);
        save(figure, "large", {2000, 1400}, 1, false);
        QImage image(800, 600, QImage::Format_RGB32);
        QPainter painter(&image);
        const nuvo::FigurePainter figures(figure, image.size(), nuvo::FigureStyle::ofSheet(image.size()));
        const std::clock_t start = std::clock();
        for (int k = 0; k < 5; ++k)
            figures.Paint(painter);
        slowest = std::max(slowest, double(std::clock() - start) * 1000 / CLOCKS_PER_SEC / 5);
    }
    nuvo::saveFigures(nuvo::fitFigures(data), directory.filePath(name + QLatin1String("-svg")),
                      nuvo::FigureFormat::Svg);
    nuvo::saveFigures(nuvo::fitFigures(data), directory.filePath(name + QLatin1String("-pdf")),
                      nuvo::FigureFormat::Pdf);
    std::printf("%s: %zu observations, slowest figure %.2f ms of processor time\n", qPrintable(name), data.y.size(),
                slowest);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
    const QApplication application(argc, argv);
    if (argc != 3)
        return 2;
    const QDir directory(QString::fromLocal8Bit(argv[2]));
    directory.mkpath(QStringLiteral("."));
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
    database.setDatabaseName(QString::fromLocal8Bit(argv[1]));
    if (!database.open())
        return 1;
    const auto fields = [](const char *names) { return QString::fromLatin1(names).split(u' '); };
    draw(read("Longley", "TOTEMP", fields("GNPDEFL GNP UNEMP ARMED POP YEAR")), QStringLiteral("longley"), directory);
    draw(read("Airquality", "Ozone", fields("Radiation Wind Temp")), QStringLiteral("air"), directory);
    draw(scatteredData(2500), QStringLiteral("many"), directory);
    return 0;
}
