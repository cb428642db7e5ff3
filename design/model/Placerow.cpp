// SPDX-License-Identifier: MIT
#include "design/model/Placerow.h"

#include "design/model/Numbertext.h"
#include "platform/Messages.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QStyle>

namespace nuvo {

namespace {

enum Behind { NothingBehind, FieldBehind, NumberBehind };

/// A line of text that is cut in its middle where it has no room, and shown whole at the pointer.
class TermLabel : public QLabel
{
public:
    using QLabel::QLabel;

    void SetTerm(const QString &term)
    {
        term_ = withoutControls(term);
        Cut();
    }
    QSize minimumSizeHint() const override
    {
        return {fontMetrics().averageCharWidth() * 10, QLabel::minimumSizeHint().height()};
    }
    QSize sizeHint() const override { return {fontMetrics().averageCharWidth() * 22, QLabel::sizeHint().height()}; }

protected:
    void resizeEvent(QResizeEvent *event) override
    {
        QLabel::resizeEvent(event);
        Cut();
    }

private:
    void Cut()
    {
        const QString shown = fontMetrics().elidedText(term_, Qt::ElideMiddle, width());
        setText(shown);
        setToolTip(shown == term_ ? QString() : term_);
        setAccessibleName(term_);
    }

    QString term_;
};

} // namespace

QString transformationName(const Transformation &transformation)
{
    if (!transformation.term)
        return PlaceRow::tr("inactive");
    switch (transformation.operation) {
    case Operation::Plain:
        return PlaceRow::tr("x as it is");
    case Operation::Logarithm:
        return PlaceRow::tr("ln x");
    case Operation::Reciprocal:
        return QStringLiteral("1 / x");
    case Operation::SquareRoot:
        return PlaceRow::tr("square root of x");
    case Operation::SignedPower:
        return PlaceRow::tr("x to a power");
    case Operation::Times:
        return PlaceRow::tr("x times a field");
    case Operation::Over:
        break;
    }
    return transformation.second == Second::Field2 ? PlaceRow::tr("x over a field") : PlaceRow::tr("x over a number");
}

PlaceRow::PlaceRow(int place, QWidget &form, QGridLayout &grid)
    : QObject(&form), place_(place), label_(new QLabel(RegressionModel::label(place), &form)),
      slot_(new FieldSlot(place, true, &form)), transformation_(new QComboBox(&form)),
      behind_(new QStackedWidget(&form)), second_(new FieldSlot(place, false, behind_)),
      number_(new QLineEdit(behind_)), term_(new TermLabel(&form)), trouble_(new QWidget(&form)),
      sign_(new QLabel(trouble_)), sentence_(new QLabel(trouble_))
{
    const QString name = RegressionModel::label(place);
    const auto call = [&name](QWidget *widget, const char *what, const QString &spoken, const QString &hint) {
        widget->setObjectName(QLatin1String(what) + name);
        widget->setAccessibleName(name + QLatin1String(", ") + spoken);
        widget->setToolTip(hint);
        widget->setAccessibleDescription(hint);
    };
    QFont bold = label_->font();
    bold.setBold(true);
    label_->setFont(bold);
    label_->setObjectName(QStringLiteral("Label") + name);
    label_->setBuddy(slot_);
    slot_->SetPlaceholder(place == 0 ? tr("response") : QString());
    hint_ = tr("Drop a field here, or type its name (F2). Delete removes, Alt+Up and Alt+Down move, Up and "
               "Down go to the next place");
    call(slot_, "Field", tr("field"), hint_);
    call(transformation_, "Transformation", tr("transformation"), tr("What is made of the field"));
    call(second_, "SecondField", tr("second field"), tr("Drop the second field here, or type its name (F2)"));
    second_->SetPlaceholder(tr("field"));
    call(number_, "Number", tr("number"), {});
    term_->setObjectName(QStringLiteral("Term") + name);
    term_->setTextFormat(Qt::PlainText);
    sentence_->setObjectName(QStringLiteral("Problem") + name);
    sentence_->setTextFormat(Qt::PlainText);
    sentence_->setWordWrap(true);

    const auto forms = RegressionModel::transformations(place);
    while (const Transformation *known = findItem(forms, forms_))
        transformation_->insertItem(forms_++, transformationName(*known), known->keyword.toString());
    transformation_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    transformation_->installEventFilter(this);
    behind_->addWidget(new QWidget(behind_));
    behind_->addWidget(second_);
    behind_->addWidget(number_);
    behind_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);

    auto *line = new QHBoxLayout(trouble_);
    line->setContentsMargins(0, 0, 0, 4);
    line->addWidget(sign_, 0, Qt::AlignTop);
    line->addWidget(sentence_, 1);

    const int row = 1 + 2 * place;
    int column = 0;
    for (QWidget *part :
         {static_cast<QWidget *>(label_), static_cast<QWidget *>(slot_), static_cast<QWidget *>(transformation_),
          static_cast<QWidget *>(behind_), static_cast<QWidget *>(term_)})
        grid.addWidget(part, row, column++);
    grid.addWidget(trouble_, row + 1, 1, 1, GridColumns - 1);

    connect(transformation_, &QComboBox::activated, this,
            [this](int index) { Q_EMIT TransformationChosen(transformation_->itemData(index).toString()); });
    connect(number_, &QLineEdit::textEdited, this,
            [this](const QString &text) { Q_EMIT NumberTyped(storedNumber(text)); });
}

QList<QWidget *> PlaceRow::Controls() const
{
    return {slot_, transformation_, second_, number_};
}

bool PlaceRow::HasSecond() const
{
    return !behind_->isHidden();
}

bool PlaceRow::Holds(const QWidget *widget) const
{
    if (widget == nullptr)
        return false;
    for (const QWidget *part : Controls()) {
        if (part == widget || part->isAncestorOf(widget))
            return true;
    }
    return false;
}

void PlaceRow::SetOffered(const QStringList &names)
{
    slot_->SetOffered(names);
    second_->SetOffered(names);
}

void PlaceRow::EndEdit()
{
    slot_->EndEdit();
    second_->EndEdit();
}

void PlaceRow::ShowTransformation(const RegressionModel &model)
{
    const QSignalBlocker silent(transformation_);
    const QString keyword = model.keyword(place_);
    const Transformation *known = model.transformation(place_);
    while (transformation_->count() > forms_)
        transformation_->removeItem(forms_);
    if (known == nullptr || known->item < 0)
        transformation_->addItem(QStringLiteral("\"%1\"").arg(withoutControls(keyword)), keyword);
    transformation_->setCurrentIndex(
        transformation_->findData(keyword, Qt::UserRole, Qt::MatchExactly | Qt::MatchCaseSensitive));
}

void PlaceRow::ShowSecond(const RegressionModel &model)
{
    const Transformation *form = model.isDefined(place_) ? model.transformation(place_) : nullptr;
    const Second second = form == nullptr ? Second::Nothing : form->second;
    const Behind behind = second == Second::Field2    ? FieldBehind
                          : second == Second::Nothing ? NothingBehind
                                                      : NumberBehind;
    second_->SetField(model.secondField(place_));
    if (behind == NumberBehind && storedNumber(number_->text()) != model.number(place_))
        number_->setText(shownNumber(model.number(place_)));
    const QString hint = second == Second::Exponent ? tr("The power: a whole number of at least 1")
                                                    : tr("The number that the field is divided by");
    number_->setToolTip(hint);
    number_->setAccessibleDescription(hint);
    behind_->setCurrentIndex(behind);
    behind_->setVisible(behind != NothingBehind); // names of fields have the room
}

void PlaceRow::Show(const RegressionModel &model, const ModelProblem *problem)
{
    slot_->SetField(model.field(place_), !model.isDefined(place_));
    ShowTransformation(model);
    ShowSecond(model);
    static_cast<TermLabel *>(term_)->SetTerm(model.term(place_));
    trouble_->setVisible(problem != nullptr);
    sentence_->setText(problem != nullptr ? problem->text : QString());
    if (problem != nullptr) {
        const int side = sentence_->fontMetrics().height();
        sign_->setPixmap(
            sentence_->style()
                ->standardIcon(problem->unfinished ? QStyle::SP_MessageBoxCritical : QStyle::SP_MessageBoxWarning)
                .pixmap(QSize(side, side), sentence_->devicePixelRatioF()));
    }
    // Heard, not only seen.
    slot_->setAccessibleDescription(problem != nullptr ? problem->text : hint_);
    const QString field = withoutControls(model.field(place_));
    slot_->setToolTip(field.isEmpty() ? hint_ : field + u'\n' + hint_);
}

bool PlaceRow::eventFilter(QObject *watched, QEvent *event)
{
    // Turning the wheel over the list scrolls the places and chooses nothing.
    if (event->type() == QEvent::Wheel && !transformation_->hasFocus()) {
        event->ignore();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace nuvo
