// SPDX-License-Identifier: MIT
#pragma once

#include "design/model/Regressionmodel.h"

#include <QDialog>

class QLabel;
class QPushButton;
class TModelEditor;

/// The model editor as a dialog. OK takes a name that is still being typed, and is there as long as nothing that was
/// changed here is left unfinished.
class NUVO_EXPORT TModelDialog : public QDialog
{
    Q_OBJECT

public:
    /// OpenForm() shows it.
    explicit TModelDialog(QWidget *parent = nullptr);

    /// Has to be given the fields.
    TModelEditor &Editor() const { return *editor_; }
    /// Shows it modally for a component of that name; whether OK was pressed. The model changes only then.
    bool OpenForm(const QString &component, nuvo::RegressionModel &model);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void ShowState();

    TModelEditor *editor_;
    QPushButton *ok_;
    QLabel *unfinished_;
    nuvo::RegressionModel before_;
};
