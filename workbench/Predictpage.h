// SPDX-License-Identifier: MIT
#pragma once

#include "design/model/Regressionmodel.h"
#include "present/Page.h"

#include <QWidget>

#include <vector>

class QDoubleSpinBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class TRegression;

namespace nuvo {

/// Values for the fields of a fit, and what it predicts there, with the interval of the mean and that of a new
/// observation; at once, while they are typed. The means of the fields stand there first.
class PredictPage : public QWidget
{
    Q_OBJECT

public:
    explicit PredictPage(QWidget *parent = nullptr);

    /// The fit of a state; null when there is none. It is asked until it is replaced. Values that were typed for a
    /// field stay.
    void SetFit(TRegression *regression, const RegressionModel &model);
    /// What is predicted, as a table of one row: the values of the fields, the prediction, both intervals. No rows
    /// where nothing is.
    const Page::Table &Table() const { return predicted_; }

Q_SIGNALS:
    /// The person wants the predictions for the records of a table of the database in a file.
    void TableWanted(double level);
    /// The same for those of another CSV file.
    void FileWanted(double level);

private:
    void MakeEdits(const QStringList &fields, const RegressionModel &model);
    void Predict();

    TRegression *regression_ = nullptr;
    QPushButton *table_;
    QPushButton *file_;
    QGridLayout *grid_;
    QStringList fields_;
    std::vector<QLabel *> labels_;
    std::vector<QLineEdit *> edits_;
    QDoubleSpinBox *level_;
    QLabel *result_;
    Page::Table predicted_;
};

} // namespace nuvo
