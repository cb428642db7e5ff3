// SPDX-License-Identifier: MIT
#pragma once

#include "design/model/Modelfields.h"
#include "design/model/Regressionmodel.h"

#include <QWidget>

class QLabel;
class QLineEdit;
class QTreeView;

namespace nuvo {

class FieldsModel;
class FieldsFilter;

/// The fields that a model can be made of, with their kinds and where they are used; a line above filters them.
class FieldList : public QWidget
{
    Q_OBJECT

public:
    explicit FieldList(QWidget *parent);

    void SetFields(const ModelFields &fields);
    const ModelFields &Fields() const { return fields_; }
    /// Shows where the fields are used.
    void SetModel(const RegressionModel &model);
    /// The fields that are marked, those that can be used and those that cannot, in the list's order.
    QStringList Marked() const;
    QTreeView &View() const { return *view_; }

Q_SIGNALS:
    /// The marked fields are to be control variables.
    void Added(const QStringList &names);
    /// The field is to be the response.
    void MadeResponse(const QString &name);
    /// A place was dragged here, to be emptied.
    void TakenBack(int place);
    void MarkedChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool Key(int key);
    bool Drop(QEvent &event);
    void ShowState();

    ModelFields fields_;
    FieldsModel *model_;
    FieldsFilter *filter_;
    QLineEdit *text_;
    QTreeView *view_;
    QLabel *state_;
};

} // namespace nuvo
