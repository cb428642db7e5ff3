// SPDX-License-Identifier: MIT
#pragma once

#include "workbench/Csvorigin.h"
#include "workbench/Keptmodels.h"

#include <QObject>
#include <QUndoStack>

#include <vector>

namespace nuvo {

/// What somebody is at: the state that is shown, the way to it, and the models that were tried. Every change by the
/// person can be undone; what a fit adds to the list is no change by the person.
class Sitting : public QObject
{
    Q_OBJECT

public:
    explicit Sitting(QObject *parent = nullptr);
    ~Sitting() override;

    const ModelState &State() const { return state_; }
    /// Changes the state in one step that can be undone; `what` names it in the menu. Nothing happens where the state
    /// is the same.
    void Change(const ModelState &state, const QString &what);

    const std::vector<KeptModel> &Models() const { return models_; }
    /// A fit of the present state came out: it is added to the list, or takes the place of the one with this state.
    void Keep(const KeptModel &model);
    // Changes of the list that can be undone. \pre an index of the list
    void Rename(int model, const QString &name);
    void Remove(const std::vector<int> &models);
    /// Makes the state of a model the present one.
    void BringBack(int model);
    /// The model whose state is the present one; -1 when there is none.
    int Current() const;

    /// Says where a table of the sitting's own database came from; saved with the next change.
    void SetOrigin(const CsvOrigin &origin);
    /// Null for a table that nothing was said of.
    const CsvOrigin *Origin(const QString &table) const;

    QUndoStack &Undo() { return undo_; }

    /// The sitting as a file: state, models and where tables came from, not the way to them. \throws EPlatformError
    /// when it cannot be written; what was there stays then.
    void Save(const QString &file) const;
    /// \throws EPlatformError when it cannot be read or is no sitting; this one stays as it is then.
    void Load(const QString &file);

Q_SIGNALS:
    void StateChanged();
    void ModelsChanged();

private:
    class StateChange;
    class ListChange;

    void SetState(const ModelState &state);
    void SetModels(std::vector<KeptModel> models);

    ModelState state_;
    std::vector<KeptModel> models_;
    std::vector<CsvOrigin> origins_;
    QUndoStack undo_;
};

} // namespace nuvo
