#pragma once

#include "design/model/Regressionmodel.h"

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

Q_SIGNALS:
    /// The person wants the predictions for the records of a table in a file.
    void TableWanted(double level);

private:
    void MakeEdits(const QStringList &fields, const RegressionModel &model);
    void Predict();

    TRegression *regression_ = nullptr;
    QPushButton *table_;
    QGridLayout *grid_;
    QStringList fields_;
    std::vector<QLabel *> labels_;
    std::vector<QLineEdit *> edits_;
    QDoubleSpinBox *level_;
    QLabel *result_;
};

} // namespace nuvo
