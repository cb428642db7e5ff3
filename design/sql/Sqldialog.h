// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QDialog>
#include <QStringList>
#include <QVariantMap>

class TSqlEditor;

/// The SQL editor as a dialog. OK is refused, with the reason in its place, for a text that no query reads; an empty
/// one is taken. Escape ends a trial that is under way, else the dialog.
class NUVO_EXPORT TSqlDialog : public QDialog
{
    Q_OBJECT

public:
    /// OpenForm() shows it.
    explicit TSqlDialog(QWidget *parent = nullptr);

    /// What the dialog is around.
    TSqlEditor &Editor() const { return *editor_; }
    /// Shows it modally for a component of that name; whether OK was pressed and the text was changed. The lines
    /// change only then.
    bool OpenForm(const QString &component, const QString &databaseName, const QVariantMap &params,
                  QStringList &lines);

    void accept() override;
    void reject() override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    TSqlEditor *editor_;
};
