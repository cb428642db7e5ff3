#include "bench/Eigenfit.h"

#include <Eigen/Dense>

void eigenHouseholderQr(const double *x, const double *y, int n, int m, double *coefficients)
{
    Eigen::MatrixXd design(n, m + 1);
    design.col(0).setOnes();
    design.rightCols(m) = Eigen::Map<const Eigen::MatrixXd>(x, n, m);
    Eigen::Map<Eigen::VectorXd>(coefficients, m + 1) =
        design.householderQr().solve(Eigen::Map<const Eigen::VectorXd>(y, n));
}
