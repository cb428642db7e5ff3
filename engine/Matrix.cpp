// SPDX-License-Identifier: MIT
#include "engine/Matrix.h"

#include "engine/kernel/Ludecomp.h"
#include "platform/Formats.h"
#include "platform/Messages.h"

#include <algorithm>
#include <utility>

namespace {

QString element(double value)
{
    return QStringLiteral("  ") + FloatToStrFixed(value, 6, 4);
}

// "\n\r" is the line end of every text of the system, in this order.
template <class Row>
void showMatrix(const Row *a, int rows, int columns, const QString &title, int show)
{
    if (show == 0)
        return;
    QString text = QStringLiteral("\n\r");
    for (int i = 0; i < rows; ++i) {
        text += QStringLiteral("\n\r");
        for (int j = 0; j < columns; ++j)
            text += element(a[i][j]);
    }
    const QString shape = QStringLiteral(" is %1 by %2").arg(rows).arg(columns);
    MessageDlg(title + shape + text, TMsgDlgType::mtInformation, mbOK, 0);
}

void showVector(const double *first, int count, const QString &title, int show)
{
    if (show == 0)
        return;
    QString text = QStringLiteral("\n\r");
    for (int i = 0; i < count; ++i)
        text += element(first[i]) + QStringLiteral("\n\r");
    const QString shape = QStringLiteral(" has %1 rows, 1 column. ").arg(count);
    MessageDlg(title + shape + text, TMsgDlgType::mtInformation, mbOK, 0);
}

} // namespace

namespace Matrix {

void ludecomp(TRow11 *a, int np, int, int *indx, double &d)
{
    for (int zeroRows = nuvo::ludecomp<double>(a, np, indx, d); zeroRows > 0; --zeroRows)
        MessageDlg(QStringLiteral("Your matrix is singular"), TMsgDlgType::mtError, mbOK, 0);
}

void lubacksub(const TRow11 *a, int np, int, const int *indx, double *bvec)
{
    nuvo::lubacksub(a, np, indx, bvec);
}

void invertnpbynp(TRow11 *a, TRow11 *ainv, int np, int np2)
{
    TRow12 work[MaxParameters + 1] = {};
    for (int i = 0; i < np; ++i)
        work[i][i] = 1;
    const int show = 0;
    showglnvmatrix(work, np, QStringLiteral("u"), show);
    int indx[MaxParameters];
    double d = 0;
    ludecomp(a, np, np2, indx, d);
    for (int i = 0; i < np; ++i) {
        lubacksub(a, np, np2, indx, work[i].data());
        std::copy_n(work[i].data(), np, ainv[i].data());
    }
}

void transposembynp(const TRow11 *a, TCol2500 *at, int r, int p)
{
    for (int j = 0; j < p; ++j)
        for (int i = 0; i < r; ++i)
            at[j][i] = a[i][j];
}

void addunitmbynp(const TRow11 *x, TRow11 *x1, int r, int p)
{
    for (int i = 0; i < r; ++i) {
        x1[i][0] = 1;
        std::copy_n(x[i].data(), p - 1, x1[i].data() + 1);
    }
}

void multnpbymmbynp(const TCol2500 *a, const TRow11 *bm, TRow11 *cm, int p, int r)
{
    for (int i = 0; i < p; ++i) {
        std::fill_n(cm[i].data(), p, 0.0);
        for (int k = 0; k < r; ++k)
            for (int j = 0; j < p; ++j)
                cm[i][j] += a[i][k] * bm[k][j];
    }
}

void multnpbynpnpbym(const TRow11 *a, const TCol2500 *bm, TCol2500 *cm, int p, int r)
{
    for (int i = 0; i < p; ++i) {
        std::fill_n(cm[i].data(), r, 0.0);
        for (int k = 0; k < p; ++k)
            for (int j = 0; j < r; ++j)
                cm[i][j] += a[i][k] * bm[k][j];
    }
}

void multnpbymmvector(const TCol2500 *a, const double *y, double *bvec, int p, int r)
{
    for (int i = 1; i <= p; ++i)
        bvec[i] = multmvectors(a[i - 1].data(), y, r);
}

void mult1bynpbynpbym(double *vv, const double *bvec, const TCol2500 *a, int p, int r)
{
    double b[MaxParameters + 1];
    std::copy_n(bvec, p + 1, b);
    std::fill_n(vv, r, 0.0);
    for (int i = 1; i <= p; ++i)
        for (int k = 0; k < r; ++k)
            vv[k] += b[i] * a[i - 1][k];
}

void zeroshiftnpvector(double *bvec, int p)
{
    std::copy_n(bvec + 1, p, bvec);
}

double multmvectors(const double *a, const double *bvec, int r)
{
    double sum = 0;
    for (int k = 0; k < r; ++k)
        sum += a[k] * bvec[k];
    return sum;
}

double multnpvectors(const double *a, const double *bvec, int p)
{
    return multmvectors(a + 1, bvec + 1, p);
}

double minmvector(const double *a, int r)
{
    return *std::min_element(a, a + r);
}

double maxmvector(const double *a, int r)
{
    return *std::max_element(a, a + r);
}

void sortmvector(double *a, int r)
{
    for (int i = 0; i < r - 1; ++i)
        for (int j = i + 1; j < r; ++j)
            if (a[j] < a[i])
                std::swap(a[i], a[j]);
}

double min(double x, double y)
{
    return x < y ? x : y;
}

double max(double x, double y)
{
    return x > y ? x : y;
}

void shownpbynpmatrix(const TRow11 *a, int p, const QString &title, int show)
{
    showMatrix(a, p, p, title, show);
}

void showglnvmatrix(const TRow12 *a, int p, const QString &title, int show)
{
    showMatrix(a, p, p, title, show);
}

void showmbynpmatrix(const TRow11 *a, int r, int p, const QString &title, int show)
{
    showMatrix(a, r, p, title, show);
}

void shownpbymmatrix(const TCol2500 *a, int r, int p, const QString &title, int show)
{
    showMatrix(a, p, r, title, show);
}

void shownpvector(const double *bvec, int p, const QString &title, int show)
{
    showVector(bvec + 1, p, title, show);
}

void showmvector(const double *a, int r, const QString &title, int show)
{
    showVector(a, r, title, show);
}

} // namespace Matrix
