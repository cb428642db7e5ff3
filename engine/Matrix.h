// SPDX-License-Identifier: MIT
#pragma once

#include "engine/kernel/Maxdata.h"
#include "platform/Export.h"

#include <array>

class QString;

using TRow11 = std::array<double, MaxParameters>;     ///< one row of a parameter-wide matrix
using TRow12 = std::array<double, MaxParameters + 1>; ///< one row of the work matrix of an inversion
using TCol2500 = std::array<double, MaxObservations>; ///< one row of a parameters by observations matrix

/// Small dense linear algebra in double precision, sized for a regression.
///
/// In the names m stands for observations and np for parameters; in the arguments r is the number of observations
/// (rows, at most 2500) and p the number of parameters (at most 11). Square matrices take their dimension twice.
///
/// Shapes. A matrix is a pointer to its first row; element (i, j), counted from 1, is a[i - 1][j - 1]:
///   p by p and r by p  rows of TRow11      p by r  rows of TCol2500
/// An m-vector points at its element 1, which is y[0]. An np-vector points at position 0, so that its element i is
/// bvec[i]: position 0 is there and can be used (zeroshiftnpvector). Index vectors hold row numbers counted from 1.
///
/// Sizes are not checked, nothing is allocated and nothing raises: divisions by zero and NaNs take their course.
/// Results must not overlap arguments unless said. All routines may run in several threads at once, as far as the
/// message handler may.
namespace Matrix {

/// Replaces a by its LU factors; indx(j) is the row that changed places with row j, d = +1 or -1 the parity of the
/// exchanges. Crout's method with implicit pivoting (see engine/kernel/Ludecomp.h). For each row of zeros the error
/// message "Your matrix is singular" is shown and the work goes on; a zero pivot becomes 1e-20.
NUVO_EXPORT void ludecomp(TRow11 *a, int np, int np2, int *indx, double &d);

/// Solves A z = bvec in place from the LU factors of A. bvec(1) is bvec[0] here: a row of the work matrix.
NUVO_EXPORT void lubacksub(const TRow11 *a, int np, int np2, const int *indx, double *bvec);

/// The inverse of a by LU; a is left holding its factors. Row i of ainv is the solution for unit vector i, which is
/// column i of the inverse: the inverse itself for the symmetric matrices of a fit, its transpose otherwise.
NUVO_EXPORT void invertnpbynp(TRow11 *a, TRow11 *ainv, int np, int np2);

/// at(j, i) = a(i, j)
NUVO_EXPORT void transposembynp(const TRow11 *a, TCol2500 *at, int r, int p);

/// Row i of x1 = (1, x(i, 1), ..., x(i, p - 1))
NUVO_EXPORT void addunitmbynp(const TRow11 *x, TRow11 *x1, int r, int p);

/// cm = a bm: p by r times r by p
NUVO_EXPORT void multnpbymmbynp(const TCol2500 *a, const TRow11 *bm, TRow11 *cm, int p, int r);

/// cm = a bm: p by p times p by r
NUVO_EXPORT void multnpbynpnpbym(const TRow11 *a, const TCol2500 *bm, TCol2500 *cm, int p, int r);

/// bvec = a y: p by r times an m-vector; position 0 of bvec stays as it is
NUVO_EXPORT void multnpbymmvector(const TCol2500 *a, const double *y, double *bvec, int p, int r);

/// vv(k) = sum of bvec(i) a(i, k) over i = 1..p, an m-vector; vv may overlap bvec
NUVO_EXPORT void mult1bynpbynpbym(double *vv, const double *bvec, const TCol2500 *a, int p, int r);

/// Moves positions 1..p of an np-vector down to 0..p - 1; position p keeps its value
NUVO_EXPORT void zeroshiftnpvector(double *bvec, int p);

/// The sum of a(k) bvec(k) over m-vectors, k = 1..r
NUVO_EXPORT double multmvectors(const double *a, const double *bvec, int r);

/// The sum of a(k) bvec(k) over np-vectors, k = 1..p; position 0 takes no part
NUVO_EXPORT double multnpvectors(const double *a, const double *bvec, int p);

/// The smallest and largest of a(1..r), r >= 1; a later value counts only when strictly smaller or larger, so that
/// NaNs after the first element are passed over
NUVO_EXPORT double minmvector(const double *a, int r);
/// The largest, likewise.
NUVO_EXPORT double maxmvector(const double *a, int r);

/// Sorts a(1..r) ascending by exchanges, r^2 / 2 comparisons
NUVO_EXPORT void sortmvector(double *a, int r);

/// The smaller of two; y where one of them is a NaN.
NUVO_EXPORT double min(double x, double y);
/// The larger of two; y where one of them is a NaN.
NUVO_EXPORT double max(double x, double y);

/// For diagnosis: unless show is 0, an information message of the title, the shape and the elements with 4 decimals
/// and 6 significant digits, rows and vector elements on lines of their own.
NUVO_EXPORT void shownpbynpmatrix(const TRow11 *a, int p, const QString &title, int show);
/// The same of a p by p matrix in rows of the work matrix.
NUVO_EXPORT void showglnvmatrix(const TRow12 *a, int p, const QString &title, int show);
/// The same of an r by p matrix.
NUVO_EXPORT void showmbynpmatrix(const TRow11 *a, int r, int p, const QString &title, int show);
/// The same of a p by r matrix.
NUVO_EXPORT void shownpbymmatrix(const TCol2500 *a, int r, int p, const QString &title, int show);
/// The same of positions 1..p of an np-vector.
NUVO_EXPORT void shownpvector(const double *bvec, int p, const QString &title, int show);
/// The same of elements 1..r of an m-vector.
NUVO_EXPORT void showmvector(const double *a, int r, const QString &title, int show);

} // namespace Matrix
