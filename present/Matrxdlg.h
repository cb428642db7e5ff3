// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QDialog>
#include <QStringList>

#include <memory>

namespace Ui {
class TAnalysisMatrix;
}

/// One matrix of the report, enlarged.
class NUVO_EXPORT TAnalysisMatrix : public QDialog
{
    Q_OBJECT

public:
    explicit TAnalysisMatrix(QWidget *parent = nullptr);
    ~TAnalysisMatrix() override;

    /// Shows the lines modally; the first one, the matrix's name, gives way to the title. The footer is the first 78
    /// characters of the message and "...", also behind a shorter one.
    void Open(const QStringList &list, const QString &title, const QString &description, const QString &message);

private:
    void LayOut();

    std::unique_ptr<Ui::TAnalysisMatrix> ui_;
};
