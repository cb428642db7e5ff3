// SPDX-License-Identifier: MIT
#pragma once

#include "present/Figures.h"

#include <QDateTime>

/// The figures of Longley's table. Coefficients, their standard errors and sums of squares are certified by NIST; the
/// rest is by R 4.2 (lm, influence.measures, and for the tests regressions of the residuals by lm).
inline nuvo::Figures longleyFigures()
{
    nuvo::Figures figures;
    figures.time = QDateTime(QDate(2000, 1, 1), QTime(0, 0));
    figures.source = QStringLiteral("Longley");
    figures.loaded = figures.current = true;
    figures.observations = 16;
    figures.controls = 6;
    figures.degreesOfFreedom = 9;
    figures.records = {16, 16, 16, 0};
    figures.response.term = QStringLiteral("TOTEMP");
    for (const char *term : {"GNPDEFL", "GNP", "UNEMP", "ARMED", "POP", "YEAR"})
        figures.columns.push_back({QLatin1String(term)});
    figures.coefficients = {{-3482258.63459582, 890420.383607373},
                            {15.0618722713733, 84.9149257747669},
                            {-0.358191792925910e-01, 0.334910077722432e-01},
                            {-2.02022980381683, 0.488399681651699},
                            {-1.03322686717359, 0.214274163161675},
                            {-0.511041056535807e-01, 0.226073200069370},
                            {1829.15146461355, 455.478499142212}};
    for (nuvo::Figures::Coefficient &one : figures.coefficients)
        one.t = one.estimate / one.standardError;
    figures.sums = {836424.055505915, 184172401.944494,  185008826.0,     92936.0061673238,
                    304.854073561965, 0.995479004577296, 330.285339234588};
    nuvo::Inference &inference = figures.inference.emplace();
    for (const nuvo::Figures::Coefficient &one : figures.coefficients) {
        inference.coefficients.push_back(one.estimate);
        inference.standardErrors.push_back(one.standardError);
        inference.tValues.push_back(one.t);
    }
    inference.level = 0.95;
    inference.f = figures.sums.f;
    inference.pValues = {0.00356040366373,  0.863140832809, 0.312681061093,  0.00253509173411,
                         0.000944366764162, 0.826211795764, 0.00303680334163};
    inference.confidence = {{-5496529.48327, -1467987.78592},   {-177.029035298, 207.152779841},
                            {-0.111581102414, 0.0399427438287}, {-3.12506664197, -0.91539296566},
                            {-1.51794870017, -0.548505034175},  {-0.562517214507, 0.4603090032},
                            {798.787515278, 2859.51541395}};
    inference.fPValue = 4.98403052872e-10;
    inference.adjustedRSquared = 0.992465007629;
    inference.logLikelihood = -109.617434808;
    inference.aic = 235.234869617;
    inference.aicc = 255.806298188;
    inference.bic = 241.415579395;
    inference.hqc = 235.551372666;
    inference.vif = {135.53243828, 1788.51348272, 33.618890596, 3.58893019345, 399.151022313, 758.980597407};
    inference.tolerance = {0.0073783074568, 0.000559123545706, 0.0297451814224,
                           0.27863456409,   0.00250531739642,  0.00131755673784};
    inference.standardized = {0.0462820226709, -1.01374634871,  -0.537542577639,
                              -0.204740692344, -0.101221113946, 2.47966438295};
    inference.semipartialCorrelations = {0.00397549036261, -0.0239708367258,  -0.0927088471497,
                                         -0.108074108557,  -0.00506643516623, 0.0900072653958};
    inference.partialCorrelations = {0.0590222675444, -0.335803857852,  -0.809509044959,
                                     -0.849083964187, -0.0751373804636, 0.801139716237};
    inference.sequentialSumsOfSquares = {174397449.779, 4787181.04445, 2263971.10982,
                                         876397.161861, 348589.39965,  1498813.44959};
    inference.partialSumsOfSquares = {2923.97636102, 106306.258895, 1590137.97172,
                                      2160905.48177, 4748.94813184, 1498813.44959};
    inference.conditionIndices = {1,           9.14172051987, 12.2557350493, 25.3366070986, 230.423946002,
                                  1048.080298, 43275.0435872};
    nuvo::Diagnostics &tests = figures.diagnostics.emplace();
    tests.durbinWatson = 2.55948768928;
    tests.press = 2886892.54145;
    tests.predictedRSquared = 0.984395919893;
    tests.breuschPagan = {2.50966320764, 6, 0.867384634857};
    tests.white = {nuvo::Figures::None, nuvo::Figures::None, nuvo::Figures::None}; // 27 terms
    tests.jarqueBera = {0.684135585937, 2, 0.710300049728};
    tests.shapiroWilk = {0.948601797709, 0, 0.467866399754};
    tests.reset = {2.27271031291, 2, 0.173543751149};
    tests.resetDenominator = 7;
    nuvo::Influence &influence = figures.influence.emplace();
    influence.leverage = {0.424536930627, 0.564978297702, 0.362074712366, 0.372227782822,
                          0.615511094174, 0.369573633832, 0.491531539983, 0.504656154499,
                          0.457117043896, 0.33061521381,  0.359881574618, 0.483124130576,
                          0.374308408444, 0.228378470884, 0.372870410073, 0.688614601694};
    influence.studentizedResiduals = {1.18111170245,   -0.446281007591, 0.179589571939,   -1.94170474037,
                                      1.84402668843,   -1.03393056075,  -0.735136459397,  -0.0579290742021,
                                      0.0600561473065, 2.16944818242,   -0.0667710045549, -0.168299643228,
                                      -0.622730871647, -0.303353164935, 1.51478684485,    -1.2533613511};
    influence.cook = {0.140840156508,    0.0405613501956,  0.00293020313369,  0.244192917876,
                      0.613916838192,    0.0888451715064,  0.0786481028238,   0.000549230092685,
                      0.000487859618365, 0.235214398526,   0.000402612842062, 0.00423992719925,
                      0.0355604120039,   0.00432748168352, 0.170388213068,    0.466682597016};
    influence.dffits = {1.0144718054,    -0.508591181984, 0.135299223273,   -1.49515610272,
                        2.33315310268,   -0.791634437047, -0.722789188792,  -0.0584710629749,
                        0.0551084342313, 1.52465920425,   -0.0500653840562, -0.162711943116,
                        -0.481653841584, -0.165034196297, 1.16802419409,    -1.86386859394};
    figures.observed = {60323, 61122, 60171, 61187, 63221, 63639, 64989, 63761,
                        66019, 67857, 68169, 66513, 68655, 69564, 69331, 70551};
    figures.fitted = {60055.6599702, 61216.0139424, 60124.7128321, 61597.1146219, 62911.2854092, 63888.3112154,
                      65153.0489563, 63774.1803569, 66004.6952273, 67401.6059054, 68186.2689271, 66552.0550425,
                      68810.5499736, 69649.6713080, 68989.0684861, 70757.7578251};
    for (std::size_t i = 0; i < 16; ++i)
        figures.residuals.push_back(figures.observed[i] - figures.fitted[i]);
    return figures;
}
