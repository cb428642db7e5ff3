// SPDX-License-Identifier: MIT
#pragma once

#include "design/model/Modelfields.h"

#include <QObject>

class QAction;
class QLineEdit;

namespace nuvo {

/// Helps with a field's name that is typed into a line: completes it from the fields that hold numbers, and marks a
/// name that is none of them. Without fields that are known it does neither.
class FieldNames : public QObject
{
    Q_OBJECT

public:
    /// \param placeholder what stands in the line while no name was chosen.
    FieldNames(QLineEdit &line, const QString &placeholder);

    void SetFields(const ModelFields &fields);
    /// What is wrong with the name, as a sentence; empty where nothing is.
    QString Fault() const;
    /// Marks the name anew, where it was set without a word.
    void Mark();

private:
    QLineEdit &line_;
    QString placeholder_;
    ModelFields fields_;
    QAction *mark_;
};

} // namespace nuvo
