#pragma once

/// Coefficients (the constant first) of y on m columns of n values each, one column after the other in x, by Eigen's
/// HouseholderQR. Compiled by itself for AVX2 and FMA, as somebody who measures Eigen would.
void eigenHouseholderQr(const double *x, const double *y, int n, int m, double *coefficients);
