// SPDX-License-Identifier: MIT
#include "design/Definitiondlg.h"

#include "design/Fieldnames.h"
#include "design/model/Numbertext.h"
#include "engine/Mlrquery.h"
#include "platform/Errors.h"
#include "platform/Messages.h"
#include "present/Forms.h"
#include "present/Report.h"

#include <QApplication>
#include <QButtonGroup>
#include <QComboBox>
#include <QFocusEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSignalBlocker>
#include <QStringBuilder>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace {

constexpr int FontPixels = 13;
constexpr int TitlePixels = 17;

void colour(QLabel &label, const QColor &letters)
{
    QPalette palette = label.palette();
    palette.setColor(QPalette::WindowText, letters);
    label.setPalette(palette);
    QFont font = label.font();
    font.setPixelSize(TitlePixels);
    font.setBold(true);
    label.setFont(font);
}

/// What the title of a window takes beside its buttons, about: it is the desktop that draws it.
int roomForTitle(const QWidget &window)
{
    constexpr int Buttons = 70;
    return QFontMetrics(QApplication::font()).horizontalAdvance(window.windowTitle()) + Buttons;
}

} // namespace

namespace nuvo {

DefinitionDialog::DefinitionDialog(QWidget *parent) : QDialog(parent) {}

DefinitionDialog::~DefinitionDialog() = default;

void DefinitionDialog::PrepareForm()
{
    QFont font = formFont();
    font.setPixelSize(FontPixels);
    setFont(font);
}

void DefinitionDialog::PrepareControls(QLabel &shadow, QLabel &title, QPushButton &cancel)
{
    giveLightGround(shadow); // for the navy letters in front of it
    colour(shadow, Qt::white);
    colour(title, QColor(0, 0, 0x80));
    layout()->setSizeConstraint(QLayout::SetNoConstraint); // Fit() does it, as far as the screen goes
    shadow.setContentsMargins(2, 2, 0, 0);                 // half of it on each side of what is centred: one pixel
    for (int index = 0; index < controls_.items->buttons().size(); ++index)
        controls_.items->setId(controls_.items->buttons()[index], index);

    faults_ = new QLabel(this);
    faults_->setObjectName(QStringLiteral("Faults"));
    faults_->setTextFormat(Qt::PlainText);
    faults_->setWordWrap(true);
    faults_->setContentsMargins(8, 2, 8, 2);
    faults_->hide();
    static_cast<QVBoxLayout *>(layout())->insertWidget(layout()->indexOf(controls_.Panel2), faults_);

    connect(controls_.items, &QButtonGroup::idClicked, this, &DefinitionDialog::ItemChosen);
    connect(controls_.bbtnOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(&cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(controls_.bbtnHelp, &QPushButton::clicked, this, [this] { guarded([this] { bbtnHelpClick(); }); });
    connect(new QShortcut(QKeySequence::HelpContents, this), &QShortcut::activated, controls_.bbtnHelp,
            &QPushButton::click);

    const auto validate = [this] { ValidateData(); };
    connect(controls_.cboxTableX, &QComboBox::currentIndexChanged, this,
            [this, validate] { Handle(Moment::Done, validate); });
    connect(controls_.edStringX, &QLineEdit::textChanged, this,
            [this, validate] { Handle(Moment::Typing, validate); });
    WatchExit(*controls_.cboxTableX, validate);
    WatchEnter(*controls_.edStringX, validate);
    WatchNumber(*controls_.cboxDivideBy, [this] { ValidateXScaled(); });
}

void DefinitionDialog::Prepare(const TComponent &component, const QString &propertyName, const QString &title,
                               const QStringList &fieldNames)
{
    isQuery_ = qobject_cast<const TMLRQuery *>(&component) != nullptr;
    propertyName_ = propertyName;
    setWindowTitle(component.Name() + title);
    controls_.RadioGroup1->setTitle(QStringLiteral("Set %1 to ").arg(propertyName));
    controls_.pnlTblX->setVisible(!isQuery_);
    controls_.pnlQryX->setVisible(isQuery_);
    Offer(*controls_.cboxTableX, fieldNames);
}

void DefinitionDialog::Offer(QComboBox &list, const QStringList &fieldNames)
{
    const QSignalBlocker silent(list);
    list.clear();
    list.addItems(fieldNames);
}

void DefinitionDialog::SetHelp(const QStringList &lines)
{
    helpString_ = lines.join(kLineEnd);
}

void DefinitionDialog::AddHelp(const QStringList &lines)
{
    helpString_ += (QStringList{QString(), QString()} + lines).join(kLineEnd);
}

void DefinitionDialog::bbtnHelpClick()
{
    MessageDlg(helpString_, TMsgDlgType::mtInformation);
}

int DefinitionDialog::ItemIndex() const
{
    return controls_.items->checkedId();
}

int DefinitionDialog::ItemOf(std::span<const Transformation> transformations, const QString &keyword)
{
    const Transformation *transformation = findKeyword(transformations, keyword);
    return transformation != nullptr ? transformation->item : -1;
}

QString DefinitionDialog::Shown(const Transformation &transformation, const QString &field, const QString &second)
{
    return transformation.shownBefore % field % transformation.shownBehind % second;
}

void DefinitionDialog::SetItemIndex(int index)
{
    // An exclusive group does not let go of its choice.
    controls_.items->setExclusive(false);
    for (QAbstractButton *item : controls_.items->buttons())
        item->setChecked(controls_.items->id(item) == index);
    controls_.items->setExclusive(true);
}

void DefinitionDialog::ItemChosen()
{
    if (ItemIndex() >= 0)
        Handle(Moment::Done, [this] { RadioGroup1Click(); });
}

QWidget &DefinitionDialog::FieldControl() const
{
    return isQuery_ ? static_cast<QWidget &>(*controls_.edStringX) : *controls_.cboxTableX;
}

bool DefinitionDialog::FieldChosen() const
{
    return isQuery_ ? !controls_.edStringX->text().isEmpty() : controls_.cboxTableX->currentIndex() >= 0;
}

QString DefinitionDialog::FieldText() const
{
    return isQuery_ ? controls_.edStringX->text() : controls_.cboxTableX->currentText();
}

void DefinitionDialog::Select(QComboBox &list, const QString &entry, const QString &placeholder)
{
    const QSignalBlocker silent(list);
    const int exact = list.findText(entry, Qt::MatchExactly | Qt::MatchCaseSensitive);
    // Databases do not tell the cases of field names apart.
    list.setCurrentIndex(exact >= 0 ? exact : list.findText(entry, Qt::MatchFixedString));
    missing_[&list] = entry == placeholder || list.currentIndex() >= 0 ? QString() : entry;
}

void DefinitionDialog::ShowTerm(bool complete, const QString &term)
{
    controls_.bbtnOK->setEnabled(complete);
    controls_.Panel2->setText(complete ? term : QString());
    ShowFaults();
    Fit();
    controls_.Panel2->setToolTip(controls_.Panel2->sizeHint().width() > width() ? term : QString());
}

void DefinitionDialog::Fit()
{
    layout()->activate();
    const QRect room = screen()->availableGeometry();
    QSize least = layout()->totalMinimumSize();
    least.setWidth(std::max(least.width(), roomForTitle(*this)));
    setFixedSize(size().expandedTo(least.boundedTo(room.size())));
    if (isVisible() && frameGeometry().right() > room.right())
        move(std::max(room.left(), room.right() - frameGeometry().width() + 1), y());
}

double DefinitionDialog::Number(const QComboBox &box)
{
    return typedNumber(box.currentText());
}

QString DefinitionDialog::Written(const QComboBox &box)
{
    return storedNumber(box.currentText());
}

void DefinitionDialog::ShowNumber(QComboBox &box, const QString &number)
{
    const QSignalBlocker silent(box);
    box.setCurrentIndex(box.findText(number, Qt::MatchExactly | Qt::MatchCaseSensitive));
    if (box.currentIndex() < 0)
        box.setEditText(shownNumber(number));
}

void DefinitionDialog::WatchName(QLineEdit &line, const QString &placeholder)
{
    names_.emplace_back(&line, new FieldNames(line, placeholder)); // the line owns it
}

void DefinitionDialog::SetFields(const ModelFields &fields)
{
    fieldsUnknown_ = fields.known ? QString() : fields.why;
    for (const auto &[line, names] : names_)
        names->SetFields(fields);
    ShowFaults();
    Fit();
}

/// What is wrong with names stands in a line of its own, which takes no room before.
void DefinitionDialog::ShowFaults()
{
    QStringList faults;
    for (const auto &[line, names] : names_) {
        names->Mark();
        if (IsQuery() && line->isEnabled() && !names->Fault().isEmpty())
            faults += names->Fault();
    }
    if (IsQuery() && !fieldsUnknown_.isEmpty())
        faults += fieldsUnknown_;
    for (const auto &[list, name] : missing_) {
        if (!IsQuery() && list->isEnabled() && list->currentIndex() < 0 && !name.isEmpty())
            faults += QStringLiteral("There is no field \"%1\" that holds numbers.").arg(name);
    }
    faults_->setText(withoutControls(faults.join(u' ')));
    faults_->setVisible(!faults.isEmpty());
}

bool DefinitionDialog::Handle(Moment moment, const std::function<void()> &handler)
{
    bool readable = true;
    guarded([&] {
        if (moment == Moment::Typing)
            told_.clear();
        try {
            handler();
        } catch (const EConvertError &error) {
            readable = false;
            ShowTerm(false, {});
            if (moment != Moment::Done || told_ == error.Message())
                return;
            told_ = error.Message();
            throw;
        }
    });
    return readable;
}

void DefinitionDialog::WatchNumber(QComboBox &box, const std::function<void()> &handler)
{
    box.setCompleter(nullptr); // it would make a 10 of a 1
    connect(&box, &QComboBox::editTextChanged, this, [this, handler] { Handle(Moment::Typing, handler); });
    connect(&box, &QComboBox::activated, this, [this, handler] { Handle(Moment::Done, handler); });
    connect(box.lineEdit(), &QLineEdit::returnPressed, this, [this, handler] { Handle(Moment::Done, handler); });
    WatchExit(box, handler);
}

void DefinitionDialog::WatchEnter(QWidget &control, const std::function<void()> &handler)
{
    control.installEventFilter(this);
    watches_.push_back({&control, QEvent::FocusIn, [this, &control, handler] { Entered(control, handler); }});
}

void DefinitionDialog::WatchExit(QWidget &control, const std::function<void()> &handler)
{
    control.installEventFilter(this);
    watches_.push_back({&control, QEvent::FocusOut, [this, &control, handler] { Left(control, handler); }});
}

void DefinitionDialog::Entered(const QWidget &control, const std::function<void()> &handler)
{
    if (waiting_.empty())
        Handle(Moment::Entering, handler);
    else
        waiting_.push_back({&control, Moment::Entering, handler});
}

void DefinitionDialog::Left(const QWidget &control, const std::function<void()> &handler)
{
    waiting_.push_back({&control, Moment::Done, handler});
    if (waiting_.size() == 1)
        RunWaiting();
}

void DefinitionDialog::RunWaiting()
{
    // A message must not come between a press of the mouse and its release, nor over a list that is open.
    constexpr std::chrono::milliseconds Soon(20);
    QTimer::singleShot(Soon, this, [this] {
        if (QGuiApplication::mouseButtons() != Qt::NoButton || QApplication::activePopupWidget() != nullptr) {
            RunWaiting();
            return;
        }
        const QPointer<DefinitionDialog> open(this);
        bool readable = true;
        for (const Waiting &one : std::exchange(waiting_, {})) {
            if (open.isNull())
                return;
            // What was found unreadable at leaving is not called complete at entering.
            if (isVisible() && one.control->isEnabled() && (readable || one.moment == Moment::Done))
                readable = Handle(one.moment, one.handler) && readable;
        }
    });
}

bool DefinitionDialog::event(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate)
        guarded([this] { FormActivate(); });
    return QDialog::event(event);
}

void DefinitionDialog::showEvent(QShowEvent *event)
{
    guarded([this] {
        Fit();
        FormActivate();
    });
    QDialog::showEvent(event);
}

bool DefinitionDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        // Neither another window nor a list that drops down is a way to another box. A click on Cancel or Help brings
        // no message about a number first, and the forms ask for it themselves.
        const bool byKey = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
        const bool toButton = !byKey && qobject_cast<QAbstractButton *>(focusWidget()) != nullptr;
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason && !toButton) {
            for (const Watch &watch : watches_) {
                if (watch.control == watched && watch.when == event->type())
                    watch.handler();
            }
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace nuvo
