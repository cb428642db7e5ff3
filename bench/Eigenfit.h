#pragma once

/// Coefficients (the constant first) of y on m columns of n values each, one column after the other in x, by Eigen's
/// HouseholderQR. Compiled by itself for AVX2 and FMA, as somebody who measures Eigen would.
void eigenHouseholderQr(const double *x, const double *y, int n, int m, double *coefficients);

/// The same from a matrix of n rows and p columns that has the column of ones in front: the fit without the copying.
void eigenHouseholderQrOf(const double *design, const double *y, int n, int p, double *coefficients);

/// The same by LDLT of the cross products in plain doubles.
void eigenLdltOf(const double *design, const double *y, int n, int p, double *coefficients);
