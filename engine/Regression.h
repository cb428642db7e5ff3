#pragma once

#include "engine/Loadprogress.h"
#include "engine/Mlrtypes.h"
#include "engine/kernel/Maxdata.h"
#include "engine/kernel/Normalequations.h"
#include "platform/Export.h"
#include "platform/Messages.h"

#include <QString>
#include <QStringList>

#include <array>
#include <memory>
#include <vector>

class TDataSet;

namespace nuvo {
class ColumnCache;
class UsableRecords;
} // namespace nuvo

/// A message that a component's ShowWarnings governs: shows nothing and returns 0 when `show` is false, else shows a
/// message box and returns the button pressed.
NUVO_EXPORT int MlrMessageDlg(bool show, const QString &message, TMsgDlgType type, unsigned buttons, int helpContext);

/// A multiple linear regression over a dataset's own records: y = b0 + b1 x1 + ... + bm xm by least squares.
///
/// A client sets the definitions, calls ReLoad(), then Execute(), then reads the results. Observations i count from 1
/// to n = GetNumObs() (at most 2500), columns j from 1 to m = GetNumVars() (at most 10), coefficients from 0, the
/// constant, to m. The columns are the defined control variables in the order ControlVar01 to ControlVar10, undefined
/// ones skipped. No accessor checks its index. The plain ones return what the last load and run left, also after a
/// definition was changed.
///
/// Messages go through MessageDlg; conversion and database errors of a definition pass through to the caller. While a
/// load shows its progress, and during a Series, events of the application run: ReLoad(), Execute() and property
/// writes are then refused with an EDatabaseError, and destroying the component ends the load.
class NUVO_EXPORT TRegression
{
public:
    /// The two kinds of component, table and query, differ in their words.
    enum class Form { Table, Query };

    TRegression(const TRegression &) = delete;
    TRegression &operator=(const TRegression &) = delete;
    virtual ~TRegression();

    TDataSet &DataSet() { return dataset_; }
    Form DataSetForm() const { return form_; }
    /// What the report heads its data with: the table's name, or the first line of the SQL text.
    virtual QString DataSourceName() const = 0;

    // The model. A writer copies into the owned definition and makes the component unloaded and not computed;
    // changing the definition itself does neither.

    /// Control variable k, 1 to 10. \pre 1 <= k <= 10.
    TIndepVar &ControlVar(int k) { return controls_[k - 1]; }
    const TIndepVar &ControlVar(int k) const { return controls_[k - 1]; }
    void SetControl(int k, const TIndepVar &definition);
    TDependentVar &ResponseVarY() { return response_; }
    const TDependentVar &ResponseVarY() const { return response_; }
    void SetResponse(const TDependentVar &definition);

    const QString &Description() const { return description_; }
    void SetDescription(const QString &text) { description_ = text; }
    /// Replaces the report window's footer unless it is empty.
    const QString &ReportMessage() const { return reportMessage_; }
    void SetReportMessage(const QString &text) { reportMessage_ = text; }
    bool ShowLoadProgress() const { return showLoadProgress_; }
    void SetShowLoadProgress(bool show);
    /// Whether the warnings "more than 2500 records" and "NOT loaded" are shown.
    bool ShowWarnings() const { return showWarnings_; }
    void SetShowWarnings(bool show);

    // The run.

    /// Reads the records anew; whether usable observations were loaded: at least one, and neither the response nor a
    /// column is constant.
    bool ReLoad();
    /// Fits. Never loads: on an unloaded component it only says so, if ShowWarnings().
    void Execute();
    /// b0 + the sum of b(j) values[j] over j = 1..k; values[0] is not read.
    double Predict(const double *values, int k) const;

    bool Loaded() const { return loaded_; }
    /// Whether Execute() has completed since a property write last changed a definition. ReLoad() alone leaves it.
    bool Computed() const { return computed_; }
    /// Whether the results are those of the observations loaded now.
    bool ResultsCurrent() const { return resultsCurrent_; }

    // What the last load made of the records.

    /// Records that were walked.
    int RecordsRead() const { return recordsRead_; }
    /// Records that became observations, GetNumObs().
    int RecordsUsed() const { return observed_.n; }
    /// Records that were walked and could not be transformed.
    int RecordsSkipped() const { return recordsRead_ - observed_.n; }
    /// Whether the person ended the last load with Escape; it then counts as not loaded.
    bool LoadStopped() const { return loadStopped_; }

    // Results.

    int GetNumObs() const { return observed_.n; }
    int GetNumVars() const { return observed_.m; }
    /// n - m - 1, and 0 where that is negative.
    short GetDOF() const { return degreesOfFreedom_; }
    /// The definition behind column j as it was at load time.
    const TIndepVar &GetcVar(int j) const { return columnDefinitions_[j]; }
    double Getx(int i, int j) const { return observed_.x[j].values[i - 1]; }
    double Gety(int i) const { return observed_.y.values[i - 1]; }
    /// Residual y - yHat.
    double Gete(int i) const { return Settled(Residuals).results_->e[i - 1]; }
    double GetyHat(int i) const { return Settled(Residuals).results_->yHat[i - 1]; }
    double Getb(int j) const { return fit_.b[j]; }
    /// Covariance of two coefficients, MSE (X'X)^-1.
    double GetCovar(int i, int j) const { return Settled(Matrices).results_->covariance[i][j]; }
    double GetCorr(int i, int j) const { return Settled(Matrices).results_->correlation[i][j]; }
    double GetxBar(int j) const { return Settled(Spread).results_->xBar[j]; }
    /// Sample standard deviation of a column, divisor n - 1.
    double GetxStdErr(int j) const { return Settled(Spread).results_->xStdErr[j]; }
    double GetxMax(int j) const { return xRange_[j].max; }
    double GetxMin(int j) const { return xRange_[j].min; }
    double GetyBar() const { return Settled(Spread).results_->yBar; }
    double GetyStdErr() const { return Settled(Spread).results_->yStdErr; }
    double GetyMax() const { return yRange_.max; }
    double GetyMin() const { return yRange_.min; }
    /// SSE / (n - (m + 1)) as the last ComputeSSE() left it.
    double GetMSE() const { return mse_; }

    // These compute before they return.

    double GetSSR();
    double GetSSE();
    double GetSST();
    /// Standard error of the estimate, the square root of MSE.
    double GetSyx();
    double GetRSquared();
    double GetF();

    /// Columns of the last fit that are, to working precision, a linear combination of the constant and the columns
    /// before them, ascending; their coefficients mean nothing. See nuvo::dependentColumns.
    std::vector<int> DependentColumns() const;

    /// \throws EDatabaseError while a load or a Series is under way.
    void RefuseWhileBusy() const;

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

        bool Alive() const;
        bool ReLoad();
        void Execute();
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
    void ComputeMaxAndMinY();
    void ComputeMaxAndMinX();
    /// Loads first where that was not done yet.
    void ComputexBar();
    void ComputexStdErr();
    void ComputeyBar();
    void ComputeyStdErr();
    /// b, X'X and its inverse by the normal equations in double-double.
    void ComputebVector();
    void ComputeyHat();
    void ComputeResiduals();
    /// SSE = y'y - v.y with v the fitted values; then MSE.
    void ComputeSSE();
    /// SSR = v.y - (sum of y)^2 / n.
    void ComputeSSR();
    void ComputeCovarMatrix();
    void ComputeCorrMatrix();
    /// SST = SSE + SSR.
    void ComputeSST();
    /// R2 = SSR / SST; where SST is not above 0 (a response of zeros) the previous value is kept.
    void ComputeRSquared();
    void ComputeSyx();
    /// F = (SSR / m) / (SSE / (n - (m + 1))).
    void ComputeF();

protected:
    TRegression(TDataSet &dataset, Form form);

    /// The window that follows a load.
    virtual std::unique_ptr<LoadProgress> MakeLoadProgress() = 0;
    virtual void NotifyLoaded() = 0;
    virtual void NotifyComputed() = 0;
    // The definitions as a form streams them.
    QStringList ControlStrings(int k) const { return ControlVar(k).ToQStringList(); }
    void SetControlStrings(int k, const QStringList &strings);
    QStringList ResponseStrings() const { return response_.ToQStringList(); }
    void SetResponseStrings(const QStringList &strings);

private:
    friend class nuvo::ColumnCache;

    struct ObservedColumn
    {
        const double *values = nullptr;
        const nuvo::ColumnRange *range = nullptr; ///< where it is known already
    };
    /// The observations of a load, by columns, so that sums run along memory: n values each, in memory that reaches
    /// further. Column j stands at j; 0 is not used.
    struct Observations
    {
        int n = 0;
        int m = 0;
        std::array<ObservedColumn, MaxParameters> x;
        ObservedColumn y;
        /// What keeps them, where that is not the component itself, and their numbers there, the response's last.
        std::shared_ptr<nuvo::UsableRecords> records;
        std::array<int, MaxParameters> numbers{};
    };
    /// Where a load puts observations of its own.
    struct Buffer
    {
        double x[MaxParameters][MaxObservations];
        double y[MaxObservations];
    };
    using ParameterMatrix = nuvo::NormalEquations::Matrix;
    /// What follows from a fit and is worked out when somebody asks.
    struct Results
    {
        double e[MaxObservations];
        double yHat[MaxObservations];
        std::array<double, MaxParameters> xBar;
        std::array<double, MaxParameters> xStdErr;
        double yBar;
        double yStdErr;
        ParameterMatrix covariance;
        ParameterMatrix correlation;

        void meansOfColumns(const Observations &observed);
        void deviationsOfColumns(const Observations &observed);
        void meanOfResponse(const Observations &observed);
        void deviationOfResponse(const Observations &observed);
        void fittedValues(const Observations &observed, const std::array<double, MaxParameters> &b);
        void residuals(const Observations &observed);
        void covariances(const ParameterMatrix &inverse, double mse, int m);
        void correlations(int m);
    };
    enum Part { Spread, Residuals, Matrices, PartCount };
    /// A fit of which parts are still to be worked out.
    struct Unsettled
    {
        std::array<bool, PartCount> due;
        Observations observed;
        std::array<double, MaxParameters> b;
        nuvo::CrossProducts products;
        double mse;
    };
    class Busy;

    void ForgetLoad();
    bool Load();
    void Fit();
    /// Makes the observations those of the buffer.
    void ObserveBuffer();
    /// Reads the records into the observations; false when the component was destroyed meanwhile.
    bool ReadRecords(LoadProgress &progress, const std::weak_ptr<bool> &alive);
    void SetDegreesOfFreedom();
    /// Puts off the parts of the fit just made. What it will not overwrite of those before is kept.
    void PutOff();
    void Settle(Part part) const;
    const TRegression &Settled(Part part) const
    {
        if (due_[part])
            Settle(part);
        return *this;
    }

    TDataSet &dataset_;
    const Form form_;
    std::array<TIndepVar, MaxControls> controls_;
    TDependentVar response_;
    QString description_;
    QString reportMessage_;
    bool showLoadProgress_ = false;
    bool showWarnings_ = false;

    bool loaded_ = false;
    bool computed_ = false;
    bool loadStopped_ = false;
    bool resultsCurrent_ = false;
    int recordsRead_ = 0;
    short degreesOfFreedom_ = 0;
    std::array<TIndepVar, MaxParameters> columnDefinitions_; ///< column j at j
    std::unique_ptr<Buffer> buffer_;
    Observations observed_; ///< by the last load
    nuvo::ColumnCache *cache_ = nullptr;

    std::array<nuvo::ColumnRange, MaxParameters> xRange_{};
    nuvo::ColumnRange yRange_;
    nuvo::CrossProducts products_{}; ///< of the last fit
    int fittedColumns_ = -1;         ///< columns of the last fit; -1 before the first
    nuvo::Coefficients fit_;
    double sse_ = 0;
    double ssr_ = 0;
    double sst_ = 0;
    double mse_ = 0;
    double syx_ = 0;
    double rSquared_ = 0;
    double f_ = 0;
    std::unique_ptr<Results> results_;
    mutable std::vector<Unsettled> unsettled_; ///< the oldest first
    mutable std::array<bool, PartCount> due_{};

    int busy_ = 0; ///< loads and series under way
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};
