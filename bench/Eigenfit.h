// SPDX-License-Identifier: MIT
#pragma once

// Eigen, compiled by itself for AVX2 and FMA as somebody who measures it would. A design matrix has n rows and p
// columns, one after the other, the first of ones.

/// Coefficients, the constant first, by HouseholderQR.
void eigenHouseholderQr(const double *design, const double *y, int n, int p, double *coefficients);

/// The same by LDLT of the cross products in plain doubles.
void eigenLdlt(const double *design, const double *y, int n, int p, double *coefficients);
