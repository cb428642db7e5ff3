// SPDX-License-Identifier: MIT
#include "design/model/Numbertext.h"

#include "design/model/Modelwords.h"
#include "platform/Errors.h"
#include "platform/Formats.h"

#include <QLocale>

#include <cmath>

namespace nuvo {

double typedNumber(const QString &text)
{
    double value = 0;
    if (!TryStrToFloat(QString(text).replace(QLocale().decimalPoint(), QLatin1String(".")), value) ||
        !std::isfinite(value))
        throw EConvertError(ModelWords::tr("\"%1\" is not a number").arg(text));
    // "1,000" is a thousand in some countries and one in others.
    bool grouped = false;
    const double withGroups = QLocale().toDouble(text.trimmed(), &grouped);
    if (grouped && withGroups != value)
        throw EConvertError(ModelWords::tr("\"%1\" is not a number: digits are written without groups").arg(text));
    return value;
}

QString storedNumber(const QString &typed)
{
    return QString(typed).replace(QLocale().decimalPoint(), QLatin1String(".")).replace(u',', u'.');
}

QString shownNumber(const QString &stored)
{
    double value = 0;
    return TryStrToFloat(stored, value) ? QString(stored).replace(QLatin1String("."), QLocale().decimalPoint())
                                        : stored;
}

} // namespace nuvo
