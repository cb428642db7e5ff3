// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"
#include "present/figures/Axis.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace nuvo {

/// What a figure shows. Those marked "per term" exist once for each term of the model.
enum class FigureKind {
    ResponseByTerm,       ///< per term: response, fitted line with the other terms at their means, its band
    ResidualByFitted,     ///< residuals by fitted value
    ResidualByOrder,      ///< residuals by record
    ResidualByTerm,       ///< per term: residuals by its values
    NormalQuantiles,      ///< standardized residuals by normal quantiles
    ScaleLocation,        ///< square root of the absolute standardized residuals by fitted value
    ResidualByLeverage,   ///< standardized residuals by leverage, with contours of Cook's distance
    AddedVariable,        ///< per term: response and term, each without what the other terms explain
    ObservedByFitted,     ///< response by fitted value
    ResidualDistribution, ///< histogram of the residuals with the normal curve
    CriterionBySize,      ///< a selection's criterion by number of terms
};

/// What a line stands for; it decides colour and stroke.
enum class FigureRole {
    Fit,     ///< solid, accented
    Zero,    ///< thin, quiet
    Contour, ///< dashed, quiet
};

struct FigureLine
{
    FigureRole role = FigureRole::Fit;
    std::vector<double> x, y; ///< its points, joined
    QString name;             ///< in the key; empty: not there. Lines of the same name have one entry.
    QString label;            ///< written beside the line where it leaves the frame
};

/// The area between two curves.
struct FigureBand
{
    std::vector<double> x, low, high;
    QString name;
};

struct FigureBar
{
    double from = 0, to = 0, height = 0;
    std::vector<qint64> records; ///< of the observations that it counts
};

/// A figure as such: titles, points, lines, what the key says. Neither size nor colour nor device; FigurePainter
/// draws it, TFigureView shows it. Values that are NaN or infinite stand for points that do not exist and are not
/// drawn.
struct NUVO_EXPORT Figure
{
    FigureKind kind = FigureKind::ResidualByFitted;
    int term = 0; ///< from 1, of the kinds that exist per term; else 0
    QString title, xTitle, yTitle;

    std::vector<double> x, y;    ///< points, of the same number
    std::vector<qint64> records; ///< ordinal of each point's record, from 1; empty where points are no observations
    QStringList labels;          ///< what each point is; empty: "Record" and its ordinal
    QString pointName;           ///< in the key

    std::vector<FigureLine> lines;
    std::vector<FigureBand> bands;
    std::vector<FigureBar> bars;
    QString barName;

    AxisRange xValues, yValues; ///< what the frame has to hold
    bool xWhole = false;        ///< ticks at whole numbers only
    bool yFromZero = false;     ///< the frame begins at 0
    bool xFromZero = false;
    QString note; ///< why there is nothing to draw; else empty

    /// Whether point i exists.
    bool HasPoint(std::size_t i) const;
    /// Of all points, those that do not exist included.
    std::size_t PointCount() const { return x.size(); }
};

/// What the figures of a fit are made from. n observations, m terms. A vector that is empty leaves out the figures
/// that need it; a value that does not exist is a NaN.
struct FigureData
{
    QString response;
    QStringList terms;                                             ///< m
    std::vector<qint64> records;                                   ///< n ordinals from 1; empty: 1 to n
    std::vector<double> y, fitted, residuals;                      ///< n
    std::vector<std::vector<double>> x;                            ///< m columns of n
    std::vector<double> leverage, standardized, studentized, cook; ///< n
    std::vector<std::vector<double>> partial; ///< m columns of n: residuals of each term on the other terms
    std::vector<double> coefficients;         ///< m + 1, the constant first
    std::vector<double> standardErrors;       ///< m + 1; NaN of a dependent term
    double s = 0;                             ///< standard error of the estimate; NaN where it does not exist
    double level = 0.95;                      ///< of the confidence band
    double quantile = 0; ///< of Student's t with n - m - 1 at (1 + level) / 2; 0 or NaN: no bands
};

/// The figures of a fit, in the order of FigureKind, per term in the order of the terms. Empty data give no figures.
NUVO_EXPORT std::vector<Figure> fitFigures(const FigureData &data);

/// One of them. \pre 1 <= term <= m for the kinds that exist per term; not CriterionBySize.
///
/// The line of ResponseByTerm is ȳ + b(x - x̄), its band at x ± quantile sqrt(s²/n + (x - x̄)² se(b)²): at the means of
/// the other terms, mean and coefficient are uncorrelated. That of AddedVariable goes through the origin with the
/// slope b and the band |x| quantile se(b). Normal quantiles are at (i - a)/(n + 1 - 2a), a = 3/8 up to 10
/// observations, else 1/2, and the line goes through the quartiles. Contours of Cook's distance D are ±sqrt(D p (1 -
/// h)/h), p = m + 1 (Belsley, Kuh, Welsch 1980), for 0.5 and 1, and for 4/n where no observation reaches 0.5. The
/// normal curve has mean 0 and deviation s, scaled to counts; bins are as wide as Freedman and Diaconis (1981) say,
/// rounded to 1, 2 or 5 times a power of ten.
NUVO_EXPORT Figure fitFigure(const FigureData &data, FigureKind kind, int term = 0);

/// A model of a selection.
struct SizedModel
{
    int size = 0;     ///< number of terms
    double value = 0; ///< its criterion
    QString terms;    ///< "x1, x4"
};

/// The criterion of the models by their size; the best of each size are joined by a line.
NUVO_EXPORT Figure criterionFigure(const std::vector<SizedModel> &models, const QString &criterion,
                                   bool smallestIsBest);

/// What a figure's files are called, without an ending: "response-x1", "residual-fitted", "residual-order",
/// "residual-x1", "normal-quantiles", "scale-location", "residual-leverage", "added-x1", "observed-fitted",
/// "residual-distribution", "criterion-size"; the number is that of the term.
NUVO_EXPORT QString figureFileName(const Figure &figure);

/// The figure in words, for those who cannot see it: title, axes with their ranges, number of points, lines.
NUVO_EXPORT QString figureInWords(const Figure &figure, QChar point = u'.');

/// What a point is and its values in words, several lines: "Record 17", "Fitted value: 12.5", "Residual: −0.3".
NUVO_EXPORT QString pointInWords(const Figure &figure, std::size_t i, QChar point = u'.');
/// The same of a bar: from where to where, and how many it counts.
NUVO_EXPORT QString barInWords(const Figure &figure, std::size_t i, QChar point = u'.');

} // namespace nuvo
