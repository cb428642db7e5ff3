// SPDX-License-Identifier: MIT
#include <engine/Mlrtable.h>
#include <engine/kernel/Prediction.h>
#include <platform/Errors.h>
#include <platform/Messages.h>

#include <QApplication>
#include <QFormLayout>
#include <QLabel>
#include <QSpinBox>

/// A form that predicts the ozone of a day while its weather is being entered.
class PredictionForm : public QWidget
{
public:
    PredictionForm()
    {
        air_.SetDatabaseName("samples.db");
        air_.SetTableName("Airquality");
        air_.ResponseVarY().SetField("Ozone");
        air_.ControlVar(1).SetField1("Temp");
        air_.ControlVar(1).SetTransformation("None");
        air_.ControlVar(2).SetField1("Wind");
        air_.ControlVar(2).SetTransformation("Inverse");

        temperature_.setRange(56, 97); // as in the table: beyond it nothing is known
        temperature_.setValue(80);
        temperature_.setSuffix(" °F");
        wind_.setRange(2, 21);
        wind_.setValue(10);
        wind_.setSuffix(" mph");
        auto *layout = new QFormLayout(this);
        layout->addRow("Temperature", &temperature_);
        layout->addRow("Wind", &wind_);
        layout->addRow("Ozone", &ozone_);
        layout->addRow("Mean of such days", &mean_);
        layout->addRow("A single day", &day_);
        setWindowTitle("Ozone");

        connect(&temperature_, &QSpinBox::valueChanged, this, &PredictionForm::Predict);
        connect(&wind_, &QSpinBox::valueChanged, this, &PredictionForm::Predict);
        Fit();
    }

private:
    void Fit()
    {
        try {
            air_.Open();
            if (air_.ReLoad())
                air_.Execute();
            Predict();
        } catch (const EPlatformError &error) {
            MessageDlg(error.Message(), TMsgDlgType::mtError);
        }
    }

    void Predict()
    {
        try {
            // Values of the fields; the component works out the terms.
            const nuvo::Prediction at =
                air_.PredictAt({{"Temp", temperature_.value()}, {"Wind", wind_.value()}}, 0.95);
            const auto range = [](const nuvo::Interval &interval) {
                return QString("%1 to %2").arg(interval[0], 0, 'f', 1).arg(interval[1], 0, 'f', 1);
            };
            ozone_.setText(QString::number(at.value, 'f', 1));
            mean_.setText(range(at.confidence));
            day_.setText(range(at.prediction));
        } catch (const EPlatformError &error) {
            MessageDlg(error.Message(), TMsgDlgType::mtError);
        }
    }

    TMLRTable air_{this};
    QSpinBox temperature_, wind_;
    QLabel ozone_, mean_, day_;
};

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    PredictionForm form;
    form.show();
    return application.exec();
}
