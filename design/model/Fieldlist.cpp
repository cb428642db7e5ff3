// SPDX-License-Identifier: MIT
#include "design/model/Fieldlist.h"

#include "design/model/Fieldsmodel.h"
#include "design/model/Modelmime.h"

#include <QDropEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

namespace nuvo {

FieldList::FieldList(QWidget *parent)
    : QWidget(parent), text_(new QLineEdit(this)), view_(new QTreeView(this)), state_(new QLabel(this))
{
    model_ = new FieldsModel(*view_, this);
    filter_ = new FieldsFilter(this);
    filter_->setSourceModel(model_);

    text_->setObjectName(QStringLiteral("FieldFilter"));
    text_->setPlaceholderText(tr("Filter fields"));
    text_->setClearButtonEnabled(true);
    text_->setAccessibleName(tr("Filter fields"));
    text_->setToolTip(tr("Shows the fields that have this in their names (Ctrl+F). Down: into the list"));

    view_->setObjectName(QStringLiteral("FieldsView"));
    view_->setModel(filter_);
    view_->setRootIsDecorated(false);
    view_->setUniformRowHeights(true);
    view_->setAllColumnsShowFocus(true);
    view_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    view_->setSelectionBehavior(QAbstractItemView::SelectRows);
    view_->setDragEnabled(true);
    view_->setAcceptDrops(true);
    view_->viewport()->setAcceptDrops(true);
    view_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view_->setTextElideMode(Qt::ElideMiddle);
    view_->setAccessibleName(tr("Fields"));
    view_->setAccessibleDescription(
        tr("Enter or Insert adds a field to the next free place, Y makes it the response"));
    view_->header()->setStretchLastSection(false);
    view_->header()->setSectionResizeMode(FieldsModel::NameColumn, QHeaderView::Stretch);
    view_->header()->setSectionResizeMode(FieldsModel::KindColumn, QHeaderView::ResizeToContents);
    view_->header()->setSectionResizeMode(FieldsModel::UseColumn, QHeaderView::ResizeToContents);
    view_->header()->setSectionsMovable(false);
    constexpr int lettersSeen = 44;
    view_->setMinimumWidth(fontMetrics().averageCharWidth() * lettersSeen);

    state_->setObjectName(QStringLiteral("FieldsState"));
    state_->setTextFormat(Qt::PlainText);
    state_->setWordWrap(true);

    auto *all = new QVBoxLayout(this);
    all->setContentsMargins({});
    all->addWidget(text_);
    all->addWidget(view_, 1);
    all->addWidget(state_);

    text_->installEventFilter(this);
    view_->installEventFilter(this);
    view_->viewport()->installEventFilter(this);
    connect(text_, &QLineEdit::textChanged, this, [this](const QString &text) {
        filter_->SetText(text);
        ShowState();
    });
    connect(view_, &QTreeView::doubleClicked, this, [this] { Q_EMIT Added(Marked()); });
    connect(view_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &FieldList::MarkedChanged);
    ShowState();
}

void FieldList::SetFields(const ModelFields &fields)
{
    fields_ = fields;
    model_->SetFields(fields.fields);
    if (filter_->rowCount() > 0)
        view_->setCurrentIndex(filter_->index(0, 0));
    ShowState();
}

void FieldList::SetModel(const RegressionModel &model)
{
    model_->SetModel(model);
}

QStringList FieldList::Marked() const
{
    QModelIndexList rows = view_->selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end(), [](const auto &a, const auto &b) { return a.row() < b.row(); });
    QStringList names;
    for (const QModelIndex &row : rows)
        names += model_->FieldAt(filter_->mapToSource(row).row()).name;
    return names;
}

void FieldList::ShowState()
{
    QString text;
    const int all = model_->rowCount();
    const int shown = filter_->rowCount();
    if (!fields_.known) {
        text = fields_.why.isEmpty()
                   ? tr("The fields are not known; their names can be typed.")
                   : tr("%1 Names can be typed all the same.", "why the fields are not known").arg(fields_.why);
    } else if (fields_.numericNames().isEmpty()) {
        text = all == 0 ? tr("There are no fields.") : tr("None of the fields holds numbers.");
    } else if (shown < all) {
        text = tr("%1 of %2 fields").arg(shown).arg(all);
    }
    state_->setText(text);
    state_->setVisible(!text.isEmpty());
}

bool FieldList::Key(int key)
{
    const QStringList marked = Marked();
    if (marked.isEmpty())
        return false;
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Insert)
        Q_EMIT Added(marked);
    else if (key == Qt::Key_Y)
        Q_EMIT MadeResponse(marked.first());
    else
        return false;
    return true;
}

bool FieldList::Drop(QEvent &event)
{
    auto &drop = static_cast<QDropEvent &>(event);
    const std::optional<int> place = placeIn(drop.mimeData());
    if (!place) {
        event.ignore();
        return true;
    }
    drop.setDropAction(Qt::MoveAction);
    drop.accept();
    if (event.type() == QEvent::Drop)
        Q_EMIT TakenBack(*place);
    return true;
}

bool FieldList::eventFilter(QObject *watched, QEvent *event)
{
    const auto *pressed = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent *>(event) : nullptr;
    if (pressed != nullptr && watched == view_) {
        const Qt::KeyboardModifiers held = pressed->modifiers() & ~Qt::KeypadModifier;
        return held == Qt::NoModifier && Key(pressed->key());
    }
    if (pressed != nullptr && watched == text_) {
        // From the filter into the list; Enter takes what the filter has left, where that is one.
        if (pressed->key() == Qt::Key_Down) {
            view_->setFocus();
            if (!view_->currentIndex().isValid() && filter_->rowCount() > 0)
                view_->setCurrentIndex(filter_->index(0, 0));
            return true;
        }
        if (pressed->key() == Qt::Key_Return || pressed->key() == Qt::Key_Enter) {
            if (filter_->rowCount() == 1) {
                view_->setCurrentIndex(filter_->index(0, 0));
                Q_EMIT Added(Marked());
            }
            return true;
        }
        if (pressed->key() == Qt::Key_Escape && !text_->text().isEmpty()) {
            text_->clear();
            return true;
        }
    }
    if (watched == view_->viewport() &&
        (event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove || event->type() == QEvent::Drop))
        return Drop(*event);
    return QWidget::eventFilter(watched, event);
}

} // namespace nuvo
