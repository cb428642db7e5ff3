// SPDX-License-Identifier: MIT
#include "workbench/Sitting.h"

#include "platform/Errors.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>

#include <algorithm>
#include <utility>

namespace nuvo {

namespace {

constexpr int kVersion = 1;

} // namespace

/// Steps of typing at the same place follow each other; each is a step of its own.
class Sitting::StateChange : public QUndoCommand
{
public:
    StateChange(Sitting &sitting, const ModelState &after, const QString &what)
        : QUndoCommand(what), sitting_(sitting), before_(sitting.state_), after_(after)
    {
    }

    void undo() override { sitting_.SetState(before_); }
    void redo() override { sitting_.SetState(after_); }

private:
    Sitting &sitting_;
    const ModelState before_;
    const ModelState after_;
};

/// Models that were tried between the change and its undoing stay.
class Sitting::ListChange : public QUndoCommand
{
public:
    ListChange(Sitting &sitting, std::vector<KeptModel> before, std::vector<KeptModel> after, const QString &what)
        : QUndoCommand(what), sitting_(sitting), before_(std::move(before)), after_(std::move(after))
    {
    }

    void undo() override { exchange(after_, before_); }
    void redo() override { exchange(before_, after_); }

private:
    static const KeptModel *find(const std::vector<KeptModel> &models, const ModelState &state)
    {
        const auto found =
            std::find_if(models.begin(), models.end(), [&](const KeptModel &model) { return model.state == state; });
        return found == models.end() ? nullptr : &*found;
    }

    void exchange(const std::vector<KeptModel> &from, const std::vector<KeptModel> &to)
    {
        std::vector<KeptModel> models = to;
        for (const KeptModel &model : sitting_.models_) {
            if (find(from, model.state) == nullptr && find(to, model.state) == nullptr)
                models.push_back(model);
        }
        sitting_.SetModels(std::move(models));
    }

    Sitting &sitting_;
    const std::vector<KeptModel> before_;
    const std::vector<KeptModel> after_;
};

Sitting::Sitting(QObject *parent) : QObject(parent) {}

Sitting::~Sitting() = default;

void Sitting::SetState(const ModelState &state)
{
    state_ = state;
    Q_EMIT StateChanged();
}

void Sitting::SetModels(std::vector<KeptModel> models)
{
    models_ = std::move(models);
    Q_EMIT ModelsChanged();
}

void Sitting::Change(const ModelState &state, const QString &what)
{
    if (!(state == state_))
        undo_.push(new StateChange(*this, state, what));
}

void Sitting::Keep(const KeptModel &model)
{
    const auto same =
        std::find_if(models_.begin(), models_.end(), [&](const KeptModel &one) { return one.state == model.state; });
    if (same == models_.end()) {
        models_.push_back(model);
    } else {
        const QString name = same->name;
        *same = model;
        same->name = name;
    }
    Q_EMIT ModelsChanged();
}

void Sitting::Rename(int model, const QString &name)
{
    std::vector<KeptModel> after = models_;
    KeptModel &renamed = after[size_t(model)];
    if (renamed.name == name)
        return;
    renamed.name = name;
    undo_.push(new ListChange(*this, models_, std::move(after), tr("Rename a model")));
}

void Sitting::Remove(const std::vector<int> &models)
{
    std::vector<KeptModel> after;
    for (size_t i = 0; i < models_.size(); ++i) {
        if (std::find(models.begin(), models.end(), int(i)) == models.end())
            after.push_back(models_[i]);
    }
    if (after.size() < models_.size())
        undo_.push(
            new ListChange(*this, models_, std::move(after), tr("Throw models away", nullptr, int(models.size()))));
}

void Sitting::BringBack(int model)
{
    const ModelState state = models_[size_t(model)].state;
    Change(state, tr("Bring a model back"));
}

int Sitting::Current() const
{
    for (size_t i = 0; i < models_.size(); ++i) {
        if (models_[i].state == state_)
            return int(i);
    }
    return -1;
}

void Sitting::SetOrigin(const CsvOrigin &origin)
{
    std::erase_if(origins_, [&](const CsvOrigin &one) { return one.table == origin.table; });
    origins_.push_back(origin);
}

const CsvOrigin *Sitting::Origin(const QString &table) const
{
    const auto found =
        std::find_if(origins_.begin(), origins_.end(), [&](const CsvOrigin &one) { return one.table == table; });
    return found == origins_.end() ? nullptr : &*found;
}

void Sitting::Save(const QString &fileName) const
{
    QJsonArray models;
    for (const KeptModel &model : models_)
        models.append(toJson(model));
    QJsonArray origins;
    for (const CsvOrigin &origin : origins_)
        origins.append(toJson(origin));
    const QJsonObject json{{QStringLiteral("sitting"), kVersion},
                           {QStringLiteral("state"), toJson(state_)},
                           {QStringLiteral("models"), models},
                           {QStringLiteral("origins"), origins}};
    QSaveFile file(fileName);
    const QByteArray text = QJsonDocument(json).toJson();
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.flush() || !file.commit())
        throw EPlatformError(tr("Cannot write \"%1\": %2.").arg(fileName, file.errorString()));
}

void Sitting::Load(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw EPlatformError(tr("Cannot read \"%1\": %2.").arg(fileName, file.errorString()));
    const QJsonObject json = QJsonDocument::fromJson(file.readAll()).object();
    if (json.value(QLatin1StringView("sitting")).toInt() != kVersion)
        throw EPlatformError(tr("\"%1\" is no sitting of this program.").arg(fileName));
    std::vector<KeptModel> models;
    for (const auto &model : json.value(QLatin1StringView("models")).toArray())
        models.push_back(keptFromJson(model.toObject()));
    origins_.clear();
    for (const auto &origin : json.value(QLatin1StringView("origins")).toArray())
        origins_.push_back(originFromJson(origin.toObject()));
    undo_.clear();
    SetModels(std::move(models));
    SetState(stateFromJson(json.value(QLatin1StringView("state")).toObject()));
}

} // namespace nuvo
