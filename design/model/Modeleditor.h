// SPDX-License-Identifier: MIT
#pragma once

#include "design/model/Modelcheck.h"

#include <QWidget>

#include <vector>

class QGridLayout;
class QLabel;
class QPushButton;
class QScrollArea;

namespace nuvo {
class FieldList;
class PlaceRow;
} // namespace nuvo

/// Edits a whole model: the fields with what they hold on the left, the response Y and the control variables X1 to
/// X10 with a transformation beside each on the right. Fields come to their places by dragging, by double clicks or
/// by keys; the terms are shown as reports print them, and what is wrong with one stands below it. Stands on any form
/// and is live: each change is told at once. It reads and writes no component.
class NUVO_EXPORT TModelEditor : public QWidget
{
    Q_OBJECT

public:
    /// An empty model; the fields are not known yet.
    explicit TModelEditor(QWidget *parent = nullptr);
    ~TModelEditor() override;

    /// The fields to choose from; the model stays.
    void SetFields(const nuvo::ModelFields &fields);
    /// As they were set.
    const nuvo::ModelFields &Fields() const { return fields_; }

    /// What is told behind the refusal of a field of texts: how a number is made of one here, with %1 where the field
    /// is named as SQL has it. None at first.
    void SetAdvice(const QString &sentence);

    /// Shows a model; ModelChanged() is not sent. A name that is being typed is dropped.
    void SetModel(const nuvo::RegressionModel &model);
    /// What is shown. A definition that nobody has changed is the one that was set, string by string.
    const nuvo::RegressionModel &Model() const { return model_; }
    /// What is wrong with the model that is shown; empty where nothing is.
    const std::vector<nuvo::ModelProblem> &Problems() const { return problems_; }

    /// Goes to the list of fields.
    void FocusFields();
    /// Takes a name that is being typed, as leaving its place does.
    void EndEdit();

    // What keys, buttons and the mouse do.

    /// Puts fields into the next free places for control variables; those that hold no numbers are left out and told.
    void AddFields(const QStringList &names);
    /// One that holds no numbers is left out and told.
    void MakeResponse(const QString &name);
    /// Empties a place.
    void Remove(int place);
    /// Exchanges the control variable of a place with the one before (-1) or after it (1).
    void Move(int place, int direction);

Q_SIGNALS:
    /// The model has been changed here.
    void ModelChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void MakeRows(QWidget &form, QGridLayout &grid);
    void MakeRow(int place, QWidget &form, QGridLayout &grid);
    QWidget *MakeButtons();
    void SetTabs();
    /// Changes the model and shows it; nothing is told where nothing has changed.
    template <class Change>
    void Alter(Change &&change);
    void Refresh();
    void ShowSecondColumn();
    void ShowState();
    void Say(const QString &text);
    /// Whether fields that are known have this one as one that can be used; says why not.
    bool Usable(const QString &name);
    void PutFields(int place, const QStringList &names);
    void PutSecond(int place, const QString &name);
    void Exchange(int place, int other);
    void Go(int place);
    bool PlaceKey(int place, const QKeyEvent &event);

    nuvo::ModelFields fields_;
    nuvo::RegressionModel model_;
    std::vector<nuvo::ModelProblem> problems_;
    std::vector<nuvo::PlaceRow *> rows_;
    int current_ = -1; ///< the place that was last gone to
    nuvo::FieldList *list_;
    QScrollArea *places_;
    QPushButton *response_;
    QPushButton *add_;
    QPushButton *remove_;
    QPushButton *up_;
    QPushButton *down_;
    QLabel *equation_;
    QLabel *said_;
};
