// SPDX-License-Identifier: MIT
#include "app/Observationsfile.h"

#include "platform/Csvline.h"
#include "platform/Savefile.h"

#include <QByteArray>
#include <QIODevice>
#include <QLocale>

#include <cmath>

namespace nuvo {
namespace {

QByteArray cell(double value)
{
    return std::isfinite(value) ? QByteArray::number(value, 'g', QLocale::FloatingPointShortest) : QByteArray();
}

} // namespace

void saveObservations(const Figures &figures, const QString &file)
{
    const Influence &influence = *figures.influence;
    QStringList terms(figures.response.term);
    for (const Figures::Variable &column : figures.columns)
        terms += column.term;
    QByteArray text = "record," + csvLine(terms).toUtf8() +
                      ",fitted,residual,leverage,standardizedResidual,studentizedResidual,cook,dffits\n";
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
