// SPDX-License-Identifier: MIT
#pragma once

#include "app/Csvformat.h"

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

namespace nuvo {

/// What was understood of a CSV file before it is read: its encoding, separator and decimal sign with the reasons,
/// and its first records. Each of the three can be corrected, and what stands for a missing value be told; the
/// records follow at once.
class CsvPreview : public QDialog
{
    Q_OBJECT

public:
    explicit CsvPreview(const QString &file, QWidget *parent = nullptr);

    /// What the person has said of the file; the rest is recognised.
    const CsvCorrections &Corrections() const { return corrections_; }

private:
    void Correct();
    void Show();
    /// As the table will have them.
    void ShowNames(const QStringList &names);

    const QString file_;
    CsvCorrections corrections_;
    QComboBox *encoding_;
    QComboBox *separator_;
    QComboBox *decimal_;
    QLineEdit *nulls_;
    QLabel *reasons_;
    QLabel *error_;
    QTableWidget *records_;
    QPushButton *ok_;
};

} // namespace nuvo
