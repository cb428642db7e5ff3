// SPDX-License-Identifier: MIT
#include "bench/Eigenfit.h"

#include <Eigen/Dense>

void eigenHouseholderQr(const double *design, const double *y, int n, int p, double *coefficients)
{
    Eigen::Map<Eigen::VectorXd>(coefficients, p) = Eigen::Map<const Eigen::MatrixXd>(design, n, p)
                                                       .householderQr()
                                                       .solve(Eigen::Map<const Eigen::VectorXd>(y, n));
}

void eigenLdlt(const double *design, const double *y, int n, int p, double *coefficients)
{
    const Eigen::Map<const Eigen::MatrixXd> x(design, n, p);
    const Eigen::MatrixXd products = x.transpose() * x;
    Eigen::Map<Eigen::VectorXd>(coefficients, p) =
        products.ldlt().solve(x.transpose() * Eigen::Map<const Eigen::VectorXd>(y, n));
}
