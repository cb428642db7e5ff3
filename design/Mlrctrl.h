// SPDX-License-Identifier: MIT
#pragma once

#include "design/Definitiondlg.h"
#include "engine/Mlrtypes.h"

#include <memory>

namespace Ui {
class TControlDefDlg;
}

/// Defines a control variable: one of nine forms, the field or fields it is made of, an exponent or a divisor. OK is
/// enabled while the definition is complete. No records are read.
class TControlDefDlg : public nuvo::DefinitionDialog
{
    Q_OBJECT

public:
    explicit TControlDefDlg(QWidget *parent = nullptr);
    ~TControlDefDlg() override;

    /// Shows the dialog modally for a TMLRTable, whose fields are picked from fieldNames, or a TMLRQuery, whose
    /// fields are typed. The variable changes only on OK. \throws EStringListError for a definition of fewer than six
    /// strings.
    void OpenForm(const TComponent &component, const QString &propertyName, const QStringList &fieldNames,
                  TIndepVar &variable);
    /// Shows a definition in the controls; no handler runs.
    void InputControlView(const TIndepVar &variable);

protected:
    void FormActivate() override;
    void RadioGroup1Click() override;
    void ValidateData() override;
    void ValidateXScaled() override;

private:
    void ValidateXtoPowery();
    void ValidateDataXTimesY();
    void ValidateDataXDivY();
    void ValidateOneField(const nuvo::Transformation &form);
    void ValidateTwoFields(const nuvo::Transformation &form);
    /// The form of the radio item; nullptr when none is chosen.
    const nuvo::Transformation *Chosen() const;
    QWidget &SecondFieldControl() const;
    QWidget &SecondFieldPanel() const;

    std::unique_ptr<Ui::TControlDefDlg> ui_;
    TIndepVar parameters_;
};
