// SPDX-License-Identifier: MIT
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
    TSelectionRule rule = TSelectionRule::Written;
    std::optional<int> sizes; ///< models of each size
    std::optional<int> apply; ///< the number in the list of the model to leave
    std::optional<double> p;  ///< of backward and forward
    std::optional<double> pIn;
    std::optional<double> pOut;
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
    /// What the rule Textbook adds.
    void readChoice(SelectOptions &options) const;
    /// A probability is refused that is none, that the rule does not know, or that replaces a threshold given as
    /// well.
    std::optional<double> probability(const CLI::Option *option,
                                      std::initializer_list<const CLI::Option *> replaced) const;
    /// Options of another method are refused.
    void refuseForeign(std::initializer_list<const CLI::Option *> options, bool belong) const;

    CLI::Option *method_;
    CLI::Option *criterion_;
    CLI::Option *models_;
    CLI::Option *sizes_;
    CLI::Option *apply_;
    CLI::Option *rule_;
    CLI::Option *pIn_;
    CLI::Option *pOut_;
    CLI::Option *p_;
    CLI::Option *fIn_;
    CLI::Option *fOut_;
    CLI::Option *fPercent_;
    CLI::Option *f_;
    CLI::Option *fTable_;
};

/// Loads and fits with all variables, chooses a model and prints; message boxes go to standard error meanwhile.
/// Returns whether the component is loaded at the end. \pre a QApplication, as components are widgets.
/// \throws EPlatformError when the database, a field or a conversion fails, UsageError when there is no model to
/// apply of that number; nothing is printed then.
bool select(const SelectOptions &options);

} // namespace nuvo
