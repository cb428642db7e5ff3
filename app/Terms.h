// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace nuvo {

/// What a term of the command line says about a variable. Only what the transformation uses is filled in; numbers
/// stay texts, exactly as they were typed. A response uses `field1` and `scaleFactor` alone.
struct Term
{
    QString
        transformation; ///< "Undefined", "None", "Log", "Inverse", "Sqrt", "Power", "Scale", "Product", "Quotient"
    QString field1;
    QString field2;
    QString exponent;
    QString scaleFactor;

    bool operator==(const Term &) const = default;
};

/// Reads a control variable: F, Ln(F), 1/F, F^1/2, F^K, F/N, F*G or F/G, tried in this order; an empty text is
/// "Undefined". \throws UsageError naming the text and the forms there are.
Term parseControl(const QString &text);

/// Reads a response: F, Ln(F), 1/(F) or F/N. \throws as parseControl().
Term parseResponse(const QString &text);

} // namespace nuvo
