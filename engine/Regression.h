// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Mlrtypes.h"
#include "engine/Progress.h"
#include "engine/kernel/Maxdata.h"
#include "platform/Export.h"
#include "platform/Messages.h"

#include <QString>
#include <QStringList>

#include <array>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

class TDataSet;

namespace nuvo {
class ColumnCache;
class Fit;
class FitFigures;
class Observations;
enum class RobustKind;
struct LeftOut;
struct Prediction;
struct Sums;
struct TestResult;

/// Which records of its dataset a regression is of: the first 2500 that can be used, or every one, read once or added
/// up by the database itself.
enum class RecordUse { First, All, Server };
} // namespace nuvo

/// A message that a component's ShowWarnings governs: shows nothing and returns 0 when `show` is false, else shows a
/// message box and returns the button pressed.
NUVO_EXPORT int MlrMessageDlg(bool show, const QString &message, TMsgDlgType type, unsigned buttons, int helpContext);

/// A multiple linear regression over a dataset's own records: y = b0 + b1 x1 + ... + bm xm by least squares.
///
/// A client sets the definitions, calls ReLoad(), then Execute(), then reads the results. Observations i count from 1
/// to SampleSize() (at most 2500), columns j from 1 to m = GetNumVars() (at most 10), coefficients from 0, the
/// constant, to m. As long as Records is FirstRecords, the observations are all that the fit is of, and SampleSize()
/// is n = GetNumObs(). With AllRecords and ServerRecords n can be any number: the observations are a sample of at
/// most 2500, and so is what is of single observations or needs their residuals (residuals, fitted values, influence,
/// diagnostics, robust errors, plots); everything else is of all n records. The columns are the defined control
/// variables in the order ControlVar01 to ControlVar10, undefined ones skipped. No accessor checks its index. The
/// plain ones return what the last load and run left, also after a definition was changed.
///
/// Messages go through MessageDlg; conversion and database errors of a definition pass through to the caller. While a
/// load shows its progress, and during a Series, events of the application run: ReLoad(), Execute() and property
/// writes are then refused with an EDatabaseError, and destroying the component ends the load. A load that throws
/// makes the component unloaded and leaves the observations and figures of the load before as they were.
class NUVO_EXPORT TRegression
{
public:
    /// The two kinds of component, table and query, differ in their words.
    enum class Form { Table, Query };

    TRegression(const TRegression &) = delete;
    TRegression &operator=(const TRegression &) = delete;
    virtual ~TRegression();

    /// The dataset whose records are fitted: the component itself.
    TDataSet &DataSet();
    /// Whether this is a table or a query.
    Form DataSetForm() const;
    /// What the report heads its data with: the table's name, or the first line of the SQL text.
    virtual QString DataSourceName() const = 0;

    // The model. A writer copies into the owned definition and makes the component unloaded and not computed;
    // changing the definition itself does neither.

    /// Control variable k, 1 to 10. \pre 1 <= k <= 10.
    TIndepVar &ControlVar(int k);
    /// The same.
    const TIndepVar &ControlVar(int k) const;
    /// Copies a definition into control variable k.
    void SetControl(int k, const TIndepVar &definition);
    /// The response.
    TDependentVar &ResponseVarY();
    /// The same.
    const TDependentVar &ResponseVarY() const;
    /// Copies a definition into the response.
    void SetResponse(const TDependentVar &definition);

    /// What the regression is about: a line in the head of reports.
    const QString &Description() const;
    /// Nothing is unloaded by that.
    void SetDescription(const QString &text);
    /// Replaces the report window's footer unless it is empty.
    const QString &ReportMessage() const;
    /// Nothing is unloaded by that.
    void SetReportMessage(const QString &text);
    /// Whether a load shows a progress dialog.
    bool ShowLoadProgress() const;
    /// \throws EDatabaseError while the component is loading or fitting.
    void SetShowLoadProgress(bool show);
    /// Whether the warnings "more than 2500 records" and "NOT loaded" are shown.
    bool ShowWarnings() const;
    /// \throws EDatabaseError while the component is loading or fitting.
    void SetShowWarnings(bool show);

    /// Changing it makes the component unloaded and not computed.
    nuvo::RecordUse UseOfRecords() const;
    /// \throws EDatabaseError while the component is loading or fitting.
    void SetUseOfRecords(nuvo::RecordUse use);

    // The run.

    /// Reads the records anew; whether usable observations were loaded: at least one, and neither the response nor a
    /// column is constant.
    ///
    /// Every record is read in a thread of its own and on a connection of its own, from the database and not from the
    /// rows of the dataset, which stays where it is. Meanwhile the application's events run, but for keys and clicks
    /// where no dialog is shown to take them; the component refuses to be changed, closed, loaded or fitted, and can
    /// be destroyed. \throws EDatabaseError and EConvertError as the records raise it.
    bool ReLoad();
    /// The same without waiting for it, where every record is to be read: returns at once, and the component's signal
    /// LoadEnded tells the end. What ReLoad() would throw then is shown in a message box before. Until the end the
    /// component refuses what it refuses during ReLoad(). With FirstRecords this is ReLoad().
    /// \throws EDatabaseError for what is wrong before anything is read.
    void StartReLoad();
    /// Ends a read of every record that is under way, as Escape does; that load counts as stopped. One that was begun
    /// by StartReLoad() has ended on return, and LoadEnded was sent; ReLoad() returns false soon. Does nothing at any
    /// other time.
    void StopLoad();
    /// Fits. Never loads: on an unloaded component it only says so, if ShowWarnings().
    void Execute();
    /// b0 + the sum of b(j) values[j] over j = 1..k; values[0] is not read.
    double Predict(const double *values, int k) const;

    /// Whether the last load found usable observations and no property write has changed a definition since.
    bool Loaded() const;
    /// Whether Execute() has completed since a property write last changed a definition. ReLoad() alone leaves it.
    bool Computed() const;
    /// Whether the results are those of the observations loaded now.
    bool ResultsCurrent() const;
    /// The fit as a value, with the observations that it is of; null unless ResultsCurrent().
    std::shared_ptr<const nuvo::Fit> CurrentFit() const;

    // What the last load made of the records.

    /// Records that were walked. Where the database added up, those that came for the sample.
    qint64 RecordsRead() const;
    /// Records that the fit is of, n.
    qint64 RecordsUsed() const;
    /// Records that could not be transformed: of those walked, or of all that the database counted.
    qint64 RecordsSkipped() const;
    /// Whether there were records behind those walked, which the fit is not of.
    bool MoreRecords() const;
    /// Records in the dataset, where every one was read; empty where only a count would tell.
    std::optional<qint64> RecordsTotal() const;
    /// For the response, then for each column, those of them that it cannot use, whatever the others can: nulls and
    /// values that it cannot take apart, with the ordinals of the first ones. Counted while a load reads; after one
    /// that had its records at hand already (a model selection's), when first asked for, by a walk over the records
    /// that leaves the dataset where it is. Empty before the first load, and where the records of such a load are
    /// not open any more.
    /// \throws EDatabaseError when reading fails, and while a load or a Series is under way.
    std::vector<nuvo::LeftOut> LeftOut();
    /// Whether the last load was ended by Escape or StopLoad(); it then counts as not loaded.
    bool LoadStopped() const;

    // Results.

    /// n, the number of records that the fit is of; 2147483647 where there are more: RecordsUsed() has them all.
    int GetNumObs() const;
    /// The number of observations that can be asked for one by one: n, or that of the sample.
    int SampleSize() const;
    /// m, the number of columns: 0 to 10.
    int GetNumVars() const;
    /// n - m - 1, and 0 where that is negative; 32767 where it is more.
    short GetDOF() const;
    /// The same, however many.
    qint64 DegreesOfFreedom() const;
    /// The definition behind column j as it was at load time.
    const TIndepVar &GetcVar(int j) const;
    /// Column j of observation i: the value of the term.
    double Getx(int i, int j) const;
    /// The response's term of observation i.
    double Gety(int i) const;
    /// The number in the dataset of the record behind observation i, from 1, skipped records counted.
    qint64 GetRecord(int i) const;
    /// Residual y - yHat.
    double Gete(int i) const { return (e_ != nullptr ? e_ : Residuals())[i - 1]; }
    /// Fitted value b0 + b1 x1 + ... + bm xm.
    double GetyHat(int i) const { return (yHat_ != nullptr ? yHat_ : Fitted())[i - 1]; }
    /// Coefficient j of the last fit, 0 the constant.
    double Getb(int j) const;
    /// Covariance of two coefficients, MSE (X'X)^-1.
    double GetCovar(int i, int j) const;
    /// Correlation of two coefficients, GetCovar(i, j) over the product of their standard errors.
    double GetCorr(int i, int j) const;
    /// Standard error of a coefficient, the square root of its variance GetCovar(j, j).
    double GetStdErr(int j) const;
    /// Getb(j) / GetStdErr(j)
    double GetTValue(int j) const;
    /// Mean of column j.
    double GetxBar(int j) const;
    /// Sample standard deviation of a column, divisor n - 1.
    double GetxStdErr(int j) const;
    /// Largest value of column j.
    double GetxMax(int j) const;
    /// Smallest value of column j.
    double GetxMin(int j) const;
    /// Mean of the response.
    double GetyBar() const;
    /// Sample standard deviation of the response, divisor n - 1.
    double GetyStdErr() const;
    /// Largest value of the response.
    double GetyMax() const;
    /// Smallest value of the response.
    double GetyMin() const;
    /// SSE / (n - (m + 1)) as the last ComputeSSE() left it.
    double GetMSE() const;

    // These compute before they return.

    /// Sum of squares of the regression, b'X'y - (sum of y)^2 / n.
    double GetSSR();
    /// Sum of squared residuals, y'y - b'X'y.
    double GetSSE();
    /// SSE + SSR.
    double GetSST();
    /// Standard error of the estimate, the square root of MSE.
    double GetSyx();
    /// SSR / SST, 0 to 1.
    double GetRSquared();
    /// (SSR / m) / MSE.
    double GetF();

    // What the last fit tells beyond that: definitions and sources of the figures are those of
    // engine/kernel/Inference.h, Diagnostics.h, Influence.h and Robust.h. Each is settled when it is first asked for.
    // A figure that does not exist (no fit yet, no degrees of freedom, an exact fit, a dependent column, a leverage
    // of 1) is a NaN. A level is more than 0 and less than 1.

    /// All of them as a value; null before the first fit.
    std::shared_ptr<const nuvo::FitFigures> Figures() const;

    /// Two-sided, of coefficient j, 0 to m: the probability of a |t| as large with n - m - 1 degrees of freedom.
    double GetPValue(int j) const;
    /// b(j) -+ t(level, n - m - 1) GetStdErr(j): low, high.
    std::array<double, 2> GetConfidence(int j, double level = 0.95) const;
    /// The probability of an F as large with m and n - m - 1 degrees of freedom.
    double GetFPValue() const;
    /// 1 - (SSE / (n - m - 1)) / (SST / (n - 1))
    double GetAdjustedRSquared() const;
    /// -n/2 (ln 2 pi + ln(SSE / n) + 1)
    double GetLogLikelihood() const;
    /// Information criteria by Akaike, the same corrected for few observations, by Schwarz, and by Hannan and Quinn,
    /// with k = m + 2 parameters.
    double GetAIC() const;
    /// The same corrected for few observations (Hurvich and Tsai 1989).
    double GetAICc() const;
    /// By Schwarz 1978.
    double GetBIC() const;
    /// By Hannan and Quinn 1979.
    double GetHQC() const;
    /// Of term j, 1 to m: b(j) GetxStdErr(j) / GetyStdErr().
    double GetStandardized(int j) const;
    /// 1 - R squared of term j on the others, and its inverse, the variance inflation factor.
    double GetTolerance(int j) const;
    /// Variance inflation factor of term j, 1 / GetTolerance(j).
    double GetVIF(int j) const;
    /// Of response and term j, the other terms taken out of both.
    double GetPartialCorrelation(int j) const;
    /// Of the response and term j, the other terms taken out of the term.
    double GetSemipartialCorrelation(int j) const;
    /// What term j adds to SSR after those before it, and as the last one.
    double GetSequentialSumOfSquares(int j) const;
    /// What term j adds to SSR as the last one.
    double GetPartialSumOfSquares(int j) const;
    /// Condition index k, 1 to m + 1, ascending from 1 (Belsley, Kuh and Welsch).
    double GetConditionIndex(int k) const;

    /// About 2 where residuals do not depend on those before them.
    double GetDurbinWatson() const;
    /// The sum of squared residuals of each observation from the fit without it.
    double GetPRESS() const;
    /// 1 - PRESS / SST
    double GetPredictedRSquared() const;
    /// Whether the residuals scatter evenly, with the terms.
    nuvo::TestResult GetBreuschPagan() const;
    /// Whether the residuals scatter evenly, with terms, squares and products.
    nuvo::TestResult GetWhite() const;
    /// Whether the residuals are normal, by skewness and kurtosis.
    nuvo::TestResult GetJarqueBera() const;
    /// Whether the residuals are normal, by their order.
    nuvo::TestResult GetShapiroWilk() const;
    /// Whether something curved is left.
    nuvo::TestResult GetRESET() const;

    /// Of observation i, 1 to n: diagonal of X (X'X)^-1 X'.
    double GetLeverage(int i) const;
    /// e / (s sqrt(1 - h)), and the same with s of the fit without the observation.
    double GetStandardizedResidual(int i) const;
    /// The same with s of the fit without the observation.
    double GetStudentizedResidual(int i) const;
    /// Cook's distance: how far all fitted values move without observation i.
    double GetCook(int i) const;
    /// How far the fitted value of observation i moves without it, in its standard errors.
    double GetDFFITS(int i) const;
    /// The determinant of the coefficients' covariance without observation i over that with it.
    double GetCovRatio(int i) const;
    /// The change of coefficient j, 0 to m, without observation i, in its standard errors.
    double GetDFBETAS(int i, int j) const;

    /// Standard error, covariances and p-value of coefficients that hold without a constant variance.
    double GetRobustStdErr(nuvo::RobustKind kind, int j) const;
    /// Covariance of two coefficients.
    double GetRobustCovar(nuvo::RobustKind kind, int i, int j) const;
    /// Two-sided, of coefficient j with its robust standard error.
    double GetRobustPValue(nuvo::RobustKind kind, int j) const;

    /// What Predict() gives at the values of all m columns, with its standard error, the interval of the mean and
    /// that of a new observation; values[0] is not read.
    nuvo::Prediction PredictInterval(const double *values, double level = 0.95) const;
    /// The same at values of the fields of the columns: each field once, with its value; the terms are applied. NaNs
    /// unless ResultsCurrent().  \throws EConvertError as nuvo::termValues().
    nuvo::Prediction PredictAt(const std::vector<std::pair<QString, double>> &fields, double level = 0.95) const;

    /// Columns of the last fit that are, to working precision, a linear combination of the constant and the columns
    /// before them, ascending; their coefficients mean nothing. See nuvo::dependentColumns.
    std::vector<int> DependentColumns() const;
    /// Estimated number of decimal digits of a coefficient of the last fit that the data determine, 0 to 16: rounding
    /// a value to a double leaves 16 of its own, but fewer of the little by which large values differ. See
    /// nuvo::Fit::digits. 16 before the first fit.
    double GetDigits(int j) const;
    /// The least of them; 0 where columns depend on others.
    double GetDigits() const;

    /// \throws EDatabaseError while a load or a Series is under way.
    void RefuseWhileBusy() const;

    /// Loads go through a cache of this component's dataset, as far as it knows the records and no progress is shown,
    /// until it is replaced or taken away (null); the dataset then goes where the last load would have left it.
    void SetColumnCache(std::shared_ptr<nuvo::ColumnCache> cache);

    /// Many loads and fits by one client, a model selection. From the first to the last moment nobody else can load,
    /// fit, close or change the component, ShowLoadProgress and ShowWarnings are off, and the dataset's controls are
    /// disabled. The client writes the definitions through ControlVar().
    ///
    /// The component can be destroyed meanwhile: by whatever events and signal handlers run within a call. Only
    /// Alive() may be asked then.
    class NUVO_EXPORT Series
    {
    public:
        /// \throws EDatabaseError when the component is busy already.
        explicit Series(TRegression &regression);
        Series(const Series &) = delete;
        Series &operator=(const Series &) = delete;
        ~Series();

        /// Whether the component is still there.
        bool Alive() const;
        /// Loads by the definitions as they are now; whether they can be fitted.
        bool ReLoad();
        /// Fits what is loaded.
        void Execute();
        /// What the last load in this series found, with columns that do not vary as well.
        const nuvo::Observations &Observed() const;
        /// Their sums.
        nuvo::Sums Sums() const;
        /// Leaves of the columns that the last load found those with these numbers, ascending from 1, over the same
        /// records; whether they can be fitted, as of a load. The definitions are the client's, who writes them too.
        bool KeepColumns(std::span<const int> columns);
        /// As TRegression::LeftOut().
        std::vector<nuvo::LeftOut> LeftOut();
        /// Gives back the definitions of the beginning.
        void RestoreDefinitions();
        /// Gives back the definitions of the beginning and loads and fits them; where that cannot be done the
        /// component is not loaded. Throws nothing.
        void Restore();
        /// Lets the controls follow again, and no statement stays open, before the series has ended.
        void EnableControls();

    private:
        class Private;
        std::unique_ptr<Private> d_;
    };

    // The steps of ReLoad() and Execute(), in the order in which they use them.

    /// The load: returns at once when loaded already.
    bool LoadValues();
    /// Appends a column if the definition is defined.
    void SetcVarArrays(const TIndepVar &definition);
    /// Warns, if ShowWarnings(), when the dataset has more records than a regression takes.
    void CheckDataCount();
    /// Whether the definitions of the first m columns all accept the current record; later ones are not asked after
    /// the first that does not.
    bool ValidRecord(int m);
    /// Says so when the response or a column does not vary.
    bool InvariantCol();
    /// The extremes of the response.
    void ComputeMaxAndMinY();
    /// The extremes of the columns.
    void ComputeMaxAndMinX();
    /// Loads first where that was not done yet.
    void ComputexBar();
    /// The deviations of the columns.
    void ComputexStdErr();
    /// The mean of the response.
    void ComputeyBar();
    /// The deviation of the response.
    void ComputeyStdErr();
    /// b, X'X and its inverse by the normal equations in double-double.
    void ComputebVector();
    /// The fitted values.
    void ComputeyHat();
    /// The fitted values and what they leave of the response.
    void ComputeResiduals();
    /// SSE = y'y - v.y with v the fitted values; then MSE.
    void ComputeSSE();
    /// SSR = v.y - (sum of y)^2 / n.
    void ComputeSSR();
    /// The covariances of the coefficients.
    void ComputeCovarMatrix();
    /// Their correlations.
    void ComputeCorrMatrix();
    /// SST = SSE + SSR.
    void ComputeSST();
    /// R2 = SSR / SST; where SST is not above 0 (a response of zeros) the previous value is kept.
    void ComputeRSquared();
    /// Syx, the square root of MSE.
    void ComputeSyx();
    /// F = (SSR / m) / (SSE / (n - (m + 1))).
    void ComputeF();

protected:
    TRegression(TDataSet &dataset, Form form);

    /// The window that follows a load. It can be destroyed after the component, untold: it must not refer to it.
    virtual std::unique_ptr<nuvo::Progress> MakeLoadProgress() = 0;
    virtual void NotifyLoaded() = 0;
    virtual void NotifyComputed() = 0;
    // The definitions as a form streams them.
    QStringList ControlStrings(int k) const;
    void SetControlStrings(int k, const QStringList &strings);
    QStringList ResponseStrings() const;
    void SetResponseStrings(const QStringList &strings);

private:
    class Private;

    const double *Residuals() const;
    const double *Fitted() const;

    std::unique_ptr<Private> d;
    // What a loop over the observations asks for at each turn; null while it still has to be worked out.
    const double *e_ = nullptr;
    const double *yHat_ = nullptr;
};
