#pragma once

#include "app/Modeloptions.h"
#include "select/Cvmain.h"

namespace nuvo {

/// What was not given stays as the component has it.
struct SelectOptions : ModelOptions
{
    enum class Method { Optimal, Stepwise, Backward, Forward };
    Method method = Method::Optimal;
    std::optional<TOptimizationType> criterion;
    std::optional<int> models;
    std::optional<double> f; ///< of backward and forward
    std::optional<double> fIn;
    std::optional<double> fOut;
    std::optional<QString> fPercent;
    std::optional<QString> fTable; ///< a table of the same database
};

/// The command line of select.
class SelectCommand : public ModelSyntax
{
public:
    explicit SelectCommand(CLI::App &program);
    SelectOptions read() const;

private:
    /// Options of another method are refused.
    void refuseForeign(std::initializer_list<const CLI::Option *> options, bool belong) const;

    CLI::Option *method_;
    CLI::Option *criterion_;
    CLI::Option *models_;
    CLI::Option *fIn_;
    CLI::Option *fOut_;
    CLI::Option *fPercent_;
    CLI::Option *f_;
    CLI::Option *fTable_;
};

/// Loads and fits with all variables, chooses a model and prints; message boxes go to standard error meanwhile.
/// Returns whether the component is loaded at the end. \pre a QApplication, as components are widgets.
/// \throws EPlatformError when the database, a field or a conversion fails; nothing is printed then.
bool select(const SelectOptions &options);

} // namespace nuvo
