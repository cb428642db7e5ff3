// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Scan.h"
#include "present/Page.h"
#include "select/Choice.h"
#include "workbench/Choicesettings.h"
#include "workbench/Modelstate.h"

#include <QWidget>

#include <memory>
#include <optional>

class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QPushButton;
class QSpinBox;
class QStackedWidget;
class TModelsPage;
class TStepsPage;

namespace nuvo {

/// Chooses among the control variables of a state as textbooks do, and shows the models or the steps. The state
/// changes only when the person takes one of the models.
class ChoicePage : public QWidget
{
    Q_OBJECT

public:
    explicit ChoicePage(QWidget *parent = nullptr);
    ~ChoicePage() override;

    /// The state to choose from, as a component opens it without waiting, and where every record is read that is not
    /// there. What is shown of a choice stays as long as its data do.
    void SetState(const ModelState &state, const std::optional<ScanSource> &every = {});
    /// What the controls say; nothing before a choice was made with them.
    std::optional<ChoiceSettings> Chosen() const;
    /// Puts the controls; nothing is chosen yet.
    void SetSettings(const ChoiceSettings &settings);
    /// Chooses with what the controls say.
    void Choose();
    /// The models or the steps, the selected row or all; without columns before a choice.
    Page::Table CurrentTable() const;

Q_SIGNALS:
    /// The person wants this model.
    void ModelTaken(const RegressionModel &model);

private:
    /// What is chosen from: a component of its own, so that the one that is shown stays as it is.
    struct Work;

    ChoiceSettings Settings() const;
    void ShowControls();
    void ShowChoice();
    /// With what is fitted now as the model in use.
    Choice Marked(Choice choice) const;
    void Take(int model);

    ModelState state_;
    std::optional<ScanSource> every_;
    std::unique_ptr<Work> work_;
    QComboBox *method_;
    QComboBox *criterion_;
    QSpinBox *perSize_;
    QDoubleSpinBox *enter_;
    QDoubleSpinBox *remove_;
    QLabel *criterionLabel_;
    QLabel *perSizeLabel_;
    QLabel *enterLabel_;
    QLabel *removeLabel_;
    QPushButton *choose_;
    QLabel *said_;
    QStackedWidget *pages_;
    TModelsPage *models_;
    TStepsPage *steps_;
};

} // namespace nuvo
