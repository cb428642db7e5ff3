// SPDX-License-Identifier: MIT
#include <engine/Mlrtable.h>
#include <platform/Errors.h>
#include <platform/Messages.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

/// A form with a regression component, a grid that shows its records, and a button that fits.
class Form : public QWidget
{
public:
    Form()
    {
        longley_.SetDatabaseName("samples.db");
        longley_.SetTableName("Longley");
        longley_.ResponseVarY().SetField("TOTEMP");
        longley_.ControlVar(1).SetField1("GNP");
        longley_.ControlVar(1).SetTransformation("None");
        longley_.ControlVar(2).SetField1("UNEMP");
        longley_.ControlVar(2).SetTransformation("None");

        grid_.setModel(longley_.Model());
        grid_.setSelectionModel(longley_.SelectionModel()); // the current row is the current record
        connect(&fit_, &QPushButton::clicked, this, &Form::FitClicked);

        auto *layout = new QVBoxLayout(this);
        layout->addWidget(&grid_);
        layout->addWidget(&fit_);
        layout->addWidget(&result_);
    }

private:
    /// What the database cannot do is an exception, and no handler may let one out: Qt's event loop cannot carry it.
    void FitClicked()
    {
        try {
            longley_.Open();
            if (longley_.ReLoad()) {
                longley_.Execute();
                result_.setText(QString("R² = %1").arg(longley_.GetRSquared()));
            }
        } catch (const EPlatformError &error) {
            MessageDlg(error.Message(), TMsgDlgType::mtError);
        }
    }

    TMLRTable longley_{this};
    QTableView grid_;
    QPushButton fit_{"Fit"};
    QLabel result_;
};

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    Form form;
    form.show();
    return application.exec();
}
