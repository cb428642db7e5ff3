#include "app/Observationsfile.h"

#include "platform/Savefile.h"

#include <QByteArray>
#include <QIODevice>
#include <QLocale>

#include <cmath>

namespace nuvo {
namespace {

/// A cell of the header; in quotes where it would not be one cell else.
QByteArray cell(const QString &name)
{
    QByteArray text = name.toUtf8();
    if (text.contains(',') || text.contains('"') || text.contains('\n') || text.contains('\r') ||
        text.trimmed().size() != text.size())
        text = '"' + text.replace("\"", "\"\"") + '"';
    return text;
}

QByteArray cell(double value)
{
    return std::isfinite(value) ? QByteArray::number(value, 'g', QLocale::FloatingPointShortest) : QByteArray();
}

} // namespace

void saveObservations(const Figures &figures, const QString &file)
{
    const Influence &influence = *figures.influence;
    QByteArray text = "record," + cell(figures.response.term);
    for (const Figures::Variable &column : figures.columns)
        text += ',' + cell(column.term);
    text += ",fitted,residual,leverage,standardizedResidual,studentizedResidual,cook,dffits\n";
    for (std::size_t i = 0; i < figures.record.size(); ++i) {
        text += QByteArray::number(qlonglong(figures.record[i])) + ',' + cell(figures.observed[i]);
        for (const Figures::Numbers &column : figures.x)
            text += ',' + cell(column[i]);
        for (const Figures::Numbers *column :
             {&figures.fitted, &figures.residuals, &influence.leverage, &influence.standardizedResiduals,
              &influence.studentizedResiduals, &influence.cook, &influence.dffits})
            text += ',' + cell((*column)[i]);
        text += '\n';
    }
    saveFile(file, [&text](QIODevice &device) { return device.write(text) == text.size(); });
}

} // namespace nuvo
