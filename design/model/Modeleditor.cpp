// SPDX-License-Identifier: MIT
#include "design/model/Modeleditor.h"

#include "design/model/Editorparts.h"
#include "design/model/Fieldlist.h"
#include "design/model/Placerow.h"
#include "platform/Fieldtypes.h"
#include "platform/Messages.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {

using nuvo::editorButton;
using nuvo::ModelProblem;
using nuvo::PlaceRow;
using nuvo::RegressionModel;
using nuvo::sentenceLabel;

// A released class keeps its size.
constexpr char kAdvice[] = "nuvoAdvice";

/// The model as a line: "TOTEMP = B0 + B1 Ln(GNP) + B2 UNEMP".
QString equation(const RegressionModel &model)
{
    const QString response = model.term(0);
    QString line = (response.isEmpty() ? QStringLiteral("?") : response) + QStringLiteral(" = B0");
    int column = 0;
    for (int place = 1; place < RegressionModel::Places; ++place) {
        if (!model.isDefined(place))
            continue;
        const QString term = model.term(place);
        line += QStringLiteral(" + B%1 %2").arg(++column).arg(term.isEmpty() ? QStringLiteral("?") : term);
    }
    return nuvo::withoutControls(line);
}

} // namespace

TModelEditor::TModelEditor(QWidget *parent)
    : QWidget(parent), list_(new nuvo::FieldList(this)), places_(new QScrollArea(this)),
      response_(editorButton(this, "MakeResponse", tr("Make it &Y"),
                             tr("The marked field becomes the response (Y in the list)"))),
      add_(editorButton(this, "AddFields", tr("&Add"),
                        tr("The marked fields become control variables, in the next free places (Enter or Insert "
                           "in the list, or a double click)"))),
      remove_(editorButton(this, "RemovePlace", tr("&Remove"), tr("Empties the place (Delete)"))),
      up_(editorButton(this, "MoveUp", tr("Move &up"),
                       tr("Exchanges the control variable with the one above (Alt+Up)"))),
      down_(editorButton(this, "MoveDown", tr("Move &down"),
                         tr("Exchanges the control variable with the one below (Alt+Down)"))),
      equation_(sentenceLabel(this, "Equation")), said_(sentenceLabel(this, "Said"))
{
    setObjectName(QStringLiteral("ModelEditor"));
    auto *form = new QWidget(places_);
    auto *grid = new QGridLayout(form);
    grid->setContentsMargins(6, 6, 6, 6);
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(3);
    MakeRows(*form, *grid);
    places_->setObjectName(QStringLiteral("Places"));
    places_->setWidget(form);
    places_->setWidgetResizable(true);
    places_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    places_->setFocusPolicy(Qt::NoFocus);
    places_->setMinimumHeight(form->fontMetrics().height() * 10);

    auto *left = new QWidget(this);
    auto *leftAll = new QVBoxLayout(left);
    leftAll->setContentsMargins({});
    leftAll->addWidget(list_, 1);
    auto *leftButtons = new QHBoxLayout;
    leftButtons->addWidget(response_);
    leftButtons->addWidget(add_);
    leftButtons->addStretch(1);
    leftAll->addLayout(leftButtons);

    auto *right = new QWidget(this);
    auto *rightAll = new QVBoxLayout(right);
    rightAll->setContentsMargins({});
    rightAll->addWidget(places_, 1);
    auto *rightButtons = new QHBoxLayout;
    rightButtons->addWidget(remove_);
    rightButtons->addWidget(up_);
    rightButtons->addWidget(down_);
    rightButtons->addStretch(1);
    rightAll->addLayout(rightButtons);

    auto *halves = new QSplitter(Qt::Horizontal, this);
    halves->setObjectName(QStringLiteral("Halves"));
    halves->addWidget(left);
    halves->addWidget(right);
    halves->setChildrenCollapsible(false);
    halves->setStretchFactor(0, 1);
    halves->setStretchFactor(1, 2);

    auto *all = new QVBoxLayout(this);
    all->setContentsMargins({});
    all->addWidget(halves, 1);
    all->addWidget(equation_);
    all->addWidget(said_);
    equation_->setAccessibleName(tr("Model"));

    connect(list_, &nuvo::FieldList::Added, this, &TModelEditor::AddFields);
    connect(list_, &nuvo::FieldList::MadeResponse, this, &TModelEditor::MakeResponse);
    connect(list_, &nuvo::FieldList::TakenBack, this, &TModelEditor::Remove);
    connect(list_, &nuvo::FieldList::MarkedChanged, this, &TModelEditor::ShowState);
    connect(response_, &QPushButton::clicked, this, [this] { MakeResponse(list_->Marked().value(0)); });
    connect(add_, &QPushButton::clicked, this, [this] { AddFields(list_->Marked()); });
    connect(remove_, &QPushButton::clicked, this, [this] { Remove(current_); });
    connect(up_, &QPushButton::clicked, this, [this] { Move(current_, -1); });
    connect(down_, &QPushButton::clicked, this, [this] { Move(current_, 1); });
    auto *find = new QShortcut(QKeySequence::Find, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
    connect(find, &QShortcut::activated, this,
            [this] { list_->findChild<QLineEdit *>(QStringLiteral("FieldFilter"))->setFocus(); });
    SetTabs();
    Say({});
    Refresh();
}

TModelEditor::~TModelEditor() = default;

void TModelEditor::MakeRows(QWidget &form, QGridLayout &grid)
{
    int column = 1;
    for (const QString &title : {tr("Field"), tr("Transformation"), tr("With"), tr("Term in the report")}) {
        auto *heading = new QLabel(title, &form);
        heading->setForegroundRole(QPalette::PlaceholderText);
        grid.addWidget(heading, 0, column++);
    }
    for (int place = 0; place < RegressionModel::Places; ++place)
        MakeRow(place, form, grid);
    grid.setColumnStretch(1, 4);
    grid.setColumnStretch(4, 3);
    grid.setRowStretch(1 + 2 * RegressionModel::Places, 1);
}

void TModelEditor::MakeRow(int place, QWidget &form, QGridLayout &grid)
{
    auto *row = new PlaceRow(place, form, grid);
    rows_.push_back(row);
    for (QWidget *control : row->Controls())
        control->installEventFilter(this);
    connect(&row->Slot(), &nuvo::FieldSlot::Named, this, [this, place](const QString &name) {
        if (name.isEmpty())
            Remove(place);
        else
            Alter([&] { model_.setField(place, name); });
    });
    connect(&row->Slot(), &nuvo::FieldSlot::Dropped, this,
            [this, place](const QStringList &names) { PutFields(place, names); });
    connect(&row->Slot(), &nuvo::FieldSlot::PlaceDropped, this, [this, place](int other) { Exchange(place, other); });
    connect(&row->Slot(), &nuvo::FieldSlot::RemoveWanted, this, [this, place] { Remove(place); });
    connect(&row->SecondSlot(), &nuvo::FieldSlot::Named, this,
            [this, place](const QString &name) { Alter([&] { model_.setSecondField(place, name); }); });
    connect(&row->SecondSlot(), &nuvo::FieldSlot::Dropped, this,
            [this, place](const QStringList &names) { PutSecond(place, names.value(0)); });
    connect(&row->SecondSlot(), &nuvo::FieldSlot::RemoveWanted, this,
            [this, place] { Alter([&] { model_.setSecondField(place, {}); }); });
    connect(row, &PlaceRow::TransformationChosen, this,
            [this, place](const QString &keyword) { Alter([&] { model_.setTransformation(place, keyword); }); });
    connect(row, &PlaceRow::NumberTyped, this,
            [this, place](const QString &number) { Alter([&] { model_.setNumber(place, number); }); });
}

void TModelEditor::SetTabs()
{
    QWidget *before = list_->findChild<QLineEdit *>(QStringLiteral("FieldFilter"));
    const auto next = [&before](QWidget *widget) {
        setTabOrder(before, widget);
        before = widget;
    };
    next(&list_->View());
    next(response_);
    next(add_);
    for (const PlaceRow *row : rows_) {
        for (QWidget *control : row->Controls())
            next(control);
    }
    next(remove_);
    next(up_);
    next(down_);
}

void TModelEditor::SetFields(const nuvo::ModelFields &fields)
{
    fields_ = fields;
    list_->SetFields(fields);
    for (PlaceRow *row : rows_)
        row->SetOffered(fields.numericNames());
    Refresh();
}

void TModelEditor::SetModel(const RegressionModel &model)
{
    model_ = model;
    Refresh();
    if (model == RegressionModel())
        places_->verticalScrollBar()->setValue(0); // the first thing wanted is Y
}

void TModelEditor::FocusFields()
{
    list_->View().setFocus();
}

void TModelEditor::EndEdit()
{
    for (PlaceRow *row : rows_)
        row->EndEdit();
}

template <class Change>
void TModelEditor::Alter(Change &&change)
{
    const RegressionModel before = model_;
    std::forward<Change>(change)();
    Say({});
    const bool changed = !(model_ == before);
    Refresh();
    if (changed)
        Q_EMIT ModelChanged();
}

void TModelEditor::Refresh()
{
    problems_ = nuvo::modelProblems(model_, fields_);
    auto problem = problems_.cbegin();
    for (PlaceRow *row : rows_) {
        const bool mine = problem != problems_.cend() && problem->place == row->Place();
        row->Show(model_, mine ? &*problem++ : nullptr);
    }
    ShowSecondColumn();
    list_->SetModel(model_);
    const QString line = equation(model_);
    constexpr qsizetype most = 240;
    equation_->setText(line.size() <= most ? line : line.first(most) + u'…');
    equation_->setToolTip(line);
    ShowState();
}

/// It is there where some place has a second field or a number.
void TModelEditor::ShowSecondColumn()
{
    constexpr int column = 3;
    const bool isNeeded =
        std::any_of(rows_.begin(), rows_.end(), [](const PlaceRow *row) { return row->HasSecond(); });
    auto *const grid = static_cast<QGridLayout *>(places_->widget()->layout());
    grid->setColumnStretch(column, isNeeded ? 2 : 0);
    grid->itemAtPosition(0, column)->widget()->setVisible(isNeeded);
    places_->setMinimumWidth(places_->widget()->minimumSizeHint().width() +
                             places_->verticalScrollBar()->sizeHint().width() + 2 * places_->frameWidth());
}

void TModelEditor::ShowState()
{
    const bool marked = !list_->Marked().isEmpty();
    response_->setEnabled(marked);
    add_->setEnabled(marked);
    remove_->setEnabled(current_ >= 0 && !model_.isEmpty(current_));
    up_->setEnabled(current_ > 1);
    down_->setEnabled(current_ >= 1 && current_ + 1 < RegressionModel::Places);
}

void TModelEditor::Say(const QString &text)
{
    said_->setText(!text.isEmpty()
                       ? text
                       : tr("In the list, Enter, Insert or a double click adds a field and Y makes it the "
                            "response. At a place, Delete removes, Alt+Up and Alt+Down move, F2 types a "
                            "name. Everything can be dragged."));
}

void TModelEditor::SetAdvice(const QString &sentence)
{
    setProperty(kAdvice, sentence);
}

bool TModelEditor::Usable(const QString &name)
{
    const nuvo::ModelField *field = fields_.find(name);
    if (field == nullptr || field->numeric)
        return true;
    const QString shown = nuvo::withoutControls(field->name);
    QString text = tr("%1 holds no number (%2): it cannot be a variable of a regression.").arg(shown, field->kind);
    const QString advice = property(kAdvice).toString();
    if (!advice.isEmpty() && field->kind == nuvo::fieldKind(nuvo::FieldKind::String))
        text += u' ' + advice.arg(u'"' + QString(shown).replace(u'"', QLatin1String("\"\"")) + u'"');
    Say(text);
    return false;
}

void TModelEditor::AddFields(const QStringList &names)
{
    QString refused;
    Alter([&] {
        for (const QString &name : names) {
            const int place = model_.nextFree();
            if (!Usable(name)) {
                refused = said_->text();
            } else if (place == 0) {
                refused = tr("All ten places are taken: %1 found none.").arg(nuvo::withoutControls(name));
                break;
            } else {
                model_.setField(place, name);
                current_ = place;
            }
        }
    });
    if (!refused.isEmpty())
        Say(refused);
    if (current_ >= 0)
        places_->ensureWidgetVisible(&rows_[std::size_t(current_)]->Slot());
}

void TModelEditor::MakeResponse(const QString &name)
{
    if (name.isEmpty() || !Usable(name))
        return;
    current_ = 0;
    Alter([&] { model_.setField(0, name); });
    places_->ensureWidgetVisible(&rows_.front()->Slot());
}

void TModelEditor::Remove(int place)
{
    if (place < 0)
        return;
    Alter([&] { model_.clear(place); });
}

void TModelEditor::Move(int place, int direction)
{
    const int other = place + direction;
    if (place < 1 || other < 1 || other >= RegressionModel::Places)
        return;
    Alter([&] { model_.exchange(place, other); });
    Go(other);
}

void TModelEditor::PutFields(int place, const QStringList &names)
{
    if (!Usable(names.front()))
        return;
    Alter([&] { model_.setField(place, names.front()); });
    Go(place);
    if (names.size() > 1)
        AddFields(names.sliced(1));
}

void TModelEditor::PutSecond(int place, const QString &name)
{
    if (Usable(name))
        Alter([&] { model_.setSecondField(place, name); });
}

void TModelEditor::Exchange(int place, int other)
{
    Alter([&] { model_.exchange(place, other); });
    Go(place);
}

void TModelEditor::Go(int place)
{
    nuvo::FieldSlot &slot = rows_[std::size_t(place)]->Slot();
    slot.setFocus();
    places_->ensureWidgetVisible(&slot);
}

bool TModelEditor::PlaceKey(int place, const QKeyEvent &event)
{
    const int direction = event.key() == Qt::Key_Up ? -1 : event.key() == Qt::Key_Down ? 1 : 0;
    if (direction == 0)
        return false;
    const Qt::KeyboardModifiers held = event.modifiers() & ~Qt::KeypadModifier;
    if (held == Qt::AltModifier) {
        EndEdit();
        Move(place, direction);
        return true;
    }
    if (held != Qt::NoModifier)
        return false;
    if (const int next = place + direction; next >= 0 && next < RegressionModel::Places)
        Go(next);
    return true;
}

bool TModelEditor::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::KeyPress) {
        for (const PlaceRow *row : rows_) {
            if (!row->Holds(qobject_cast<QWidget *>(watched)))
                continue;
            if (event->type() == QEvent::FocusIn) {
                current_ = row->Place();
                ShowState();
            } else if (watched == &row->Slot()) {
                return PlaceKey(row->Place(), *static_cast<QKeyEvent *>(event));
            }
        }
    }
    return QWidget::eventFilter(watched, event);
}
