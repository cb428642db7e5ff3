// SPDX-License-Identifier: MIT
#pragma once

#include "design/model/Fieldslot.h"
#include "design/model/Modelcheck.h"

#include <QObject>

class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QStackedWidget;

namespace nuvo {

/// One place of a model on screen: its label, field, transformation, what that takes besides, the term, and what is
/// wrong with it. Its parts stand in the columns of a grid that all places share.
class PlaceRow : public QObject
{
    Q_OBJECT

public:
    static constexpr int GridColumns = 5;

    /// Takes two rows of the grid, the second for what is wrong.
    PlaceRow(int place, QWidget &form, QGridLayout &grid);

    /// Shows a place. \param problem may be null.
    void Show(const RegressionModel &model, const ModelProblem *problem);
    void SetOffered(const QStringList &names);
    /// Takes a name that is being typed.
    void EndEdit();

    int Place() const { return place_; }
    FieldSlot &Slot() const { return *slot_; }
    FieldSlot &SecondSlot() const { return *second_; }
    /// All that the keyboard reaches, in the order of Tab.
    QList<QWidget *> Controls() const;
    /// Whether one of the row's parts is the widget, or holds it.
    bool Holds(const QWidget *widget) const;
    /// Whether its transformation takes a second field or a number.
    bool HasSecond() const;

Q_SIGNALS:
    void TransformationChosen(const QString &keyword);
    void NumberTyped(const QString &stored);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void ShowTransformation(const RegressionModel &model);
    void ShowSecond(const RegressionModel &model);

    int place_;
    int forms_ = 0; ///< entries of the list that every place of the kind has
    QString hint_;  ///< of the field
    QLabel *label_;
    FieldSlot *slot_;
    QComboBox *transformation_;
    QStackedWidget *behind_;
    FieldSlot *second_;
    QLineEdit *number_;
    QLabel *term_;
    QWidget *trouble_;
    QLabel *sign_;
    QLabel *sentence_;
};

/// What a transformation is called in a list: "ln x", "x over a number".
QString transformationName(const Transformation &transformation);

} // namespace nuvo
