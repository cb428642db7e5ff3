// SPDX-License-Identifier: MIT
#pragma once

#include "design/Definitiondlg.h"
#include "engine/Mlrtypes.h"

#include <memory>

namespace Ui {
class TResponseDefDlg;
}

/// Defines the response: one of four forms, the field and, where it is scaled, a divisor. OK is enabled while the
/// definition is complete. No records are read.
class TResponseDefDlg : public nuvo::DefinitionDialog
{
    Q_OBJECT

public:
    explicit TResponseDefDlg(QWidget *parent = nullptr);
    ~TResponseDefDlg() override;

    /// As TControlDefDlg::OpenForm.
    void OpenForm(const TComponent &component, const QString &propertyName, const QStringList &fieldNames,
                  TDependentVar &variable);
    /// Shows a definition in the controls; no handler runs.
    void InputResponseView(const TDependentVar &variable);

protected:
    void FormActivate() override;
    void RadioGroup1Click() override;
    void ValidateData() override;
    void ValidateXScaled() override;

private:
    /// The form of the radio item; nullptr when none is chosen.
    const nuvo::Transformation *Chosen() const;
    QString ShownTerm(const nuvo::Transformation &form) const;

    std::unique_ptr<Ui::TResponseDefDlg> ui_;
    TDependentVar parameters_;
};
