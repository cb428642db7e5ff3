// SPDX-License-Identifier: MIT
#pragma once

#include "design/model/Modelfields.h"

#include <QObject>

#include <functional>

class TDataSet;

namespace nuvo {

/// Finds out the fields of a dataset that is being designed. Those of a table are told at once. A query is tried for
/// that, in a thread of its own, so that nothing stands still while a database thinks; they are told when they are
/// known. A trial that is still under way when this goes is ended.
class FieldReading : public QObject
{
    Q_OBJECT

public:
    using Told = std::function<void(const ModelFields &fields)>;

    /// \param told is called once with the answer, for a table before this returns. It is not called where there is
    /// nothing to ask, nor when this is gone.
    FieldReading(TDataSet &dataset, Told told, QObject *parent);

    /// Why nothing is known at first, as a sentence: it is being read, or there is nothing to ask. Empty for a table.
    const QString &WhyNotYet() const { return whyNotYet_; }

private:
    QString whyNotYet_;
};

} // namespace nuvo
