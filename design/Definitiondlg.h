// SPDX-License-Identifier: MIT
#pragma once

#include "design/model/Modelfields.h"
#include "engine/Transformations.h"

#include <QDialog>
#include <QEvent>

#include <functional>
#include <map>
#include <utility>
#include <vector>

class QButtonGroup;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class TComponent;

namespace nuvo {

class FieldNames;

/// What the dialogs for control variables and for the response have in common: the forms to choose from, the field
/// (picked from a list for a table, typed for a query), the divisor, the term at the bottom and the buttons.
///
/// Handlers run on every change, so a number that is half typed is no reason for a message. An unreadable number
/// takes OK away at once; the message comes when the user goes on (leaves the box, presses Return, chooses a form),
/// once for each text. The dialog stays open.
class DefinitionDialog : public QDialog
{
    Q_OBJECT

public:
    explicit DefinitionDialog(QWidget *parent);
    ~DefinitionDialog() override;

    /// The fields of the dataset, as far as they are known: what is typed is completed from them, and a name that is
    /// none of them is marked. May come while the dialog is open.
    void SetFields(const ModelFields &fields);

protected:
    /// Controls that both forms have under the same names.
    struct Controls
    {
        QGroupBox *RadioGroup1;
        QButtonGroup *items;
        QWidget *pnlTblX;
        QComboBox *cboxTableX;
        QWidget *pnlQryX;
        QLineEdit *edStringX;
        QComboBox *cboxDivideBy;
        QLabel *Panel2;
        QPushButton *bbtnOK;
        QPushButton *bbtnHelp;
    };

    /// Sets up a form: its own controls, and here what both have in common.
    template <class Form>
    void SetUp(Form &form)
    {
        PrepareForm();
        form.setupUi(this);
        controls_ = {form.RadioGroup1, form.RadioGroup1Items, form.pnlTblX, form.cboxTableX, form.pnlQryX,
                     form.edStringX,   form.cboxDivideBy,     form.Panel2,  form.bbtnOK,     form.bbtnHelp};
        PrepareControls(*form.Label2, *form.Label3, *form.bbtnCancel);
    }
    /// Before the controls are filled: what is edited, and which of the two kinds of field the form shows.
    void Prepare(const TComponent &component, const QString &propertyName, const QString &title,
                 const QStringList &fieldNames);

    /// Completes and marks the names in a line, which begins with a new definition's own.
    void WatchName(QLineEdit &line, const QString &placeholder);
    /// Fills a list without running a handler.
    static void Offer(QComboBox &list, const QStringList &fieldNames);

    virtual void FormActivate() = 0;
    virtual void RadioGroup1Click() = 0;
    virtual void ValidateData() = 0;
    virtual void ValidateXScaled() = 0;

    /// Whether fields are typed, not picked.
    bool IsQuery() const { return isQuery_; }
    const QString &PropertyName() const { return propertyName_; }
    /// The text of the Help button.
    void SetHelp(const QStringList &lines);
    /// A paragraph behind it.
    void AddHelp(const QStringList &lines);

    /// The chosen form, from 0; -1 when none is chosen.
    int ItemIndex() const;
    /// The form that makes a transformation; -1 when none does.
    static int ItemOf(std::span<const Transformation> transformations, const QString &keyword);
    /// A term as the bottom line shows it.
    static QString Shown(const Transformation &transformation, const QString &field, const QString &second = {});
    /// Chooses without running the handler.
    void SetItemIndex(int index);
    /// Runs the handler of the chosen form, if one is.
    void ItemChosen();

    QWidget &FieldControl() const;
    /// Whether a field is picked or a name typed.
    bool FieldChosen() const;
    QString FieldText() const;
    /// Picks the name from the list, or nothing where it is not in it, without running a handler. A name that is
    /// missing is told as long as nothing else is picked, unless it is `placeholder`, a new definition's own.
    void Select(QComboBox &list, const QString &entry, const QString &placeholder);
    /// Enables OK and shows the term, or neither.
    void ShowTerm(bool complete, const QString &term);
    /// Makes the dialog as large as its texts need; it never shrinks.
    void Fit();

    // Numbers are shown and typed with the locale's decimal sign; a point is read as well. Definitions hold a point.

    /// The number in a box. \throws EConvertError, also for a text that could be meant with digit groups.
    static double Number(const QComboBox &box);
    /// The box's text as a definition holds it.
    static QString Written(const QComboBox &box);
    /// Shows a definition's number in a box that lists some.
    static void ShowNumber(QComboBox &box, const QString &number);

    /// What called a handler: the focus, typing, or the user going on.
    enum class Moment { Entering, Typing, Done };
    /// Runs it; whether it found its numbers readable.
    bool Handle(Moment moment, const std::function<void()> &handler);
    /// Runs the handler at changes of a number box and when the user goes on.
    void WatchNumber(QComboBox &box, const std::function<void()> &handler);
    /// Runs the handler when the user enters a control, or leaves it for something else than a click on a button. Of
    /// two that follow each other, leaving one box and entering the next, the leaving always runs first.
    void WatchEnter(QWidget &control, const std::function<void()> &handler);
    void WatchExit(QWidget &control, const std::function<void()> &handler);

    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void PrepareForm();
    void PrepareControls(QLabel &shadow, QLabel &title, QPushButton &cancel);
    void bbtnHelpClick();
    void ShowFaults();
    void Entered(const QWidget &control, const std::function<void()> &handler);
    /// Runs the handler of a control that was left, as soon as a message can be shown.
    void Left(const QWidget &control, const std::function<void()> &handler);
    void RunWaiting();

    Controls controls_{};
    std::vector<std::pair<QLineEdit *, FieldNames *>> names_;
    std::map<QComboBox *, QString> missing_;
    QLabel *faults_ = nullptr; // above the term, while a name is marked
    QString fieldsUnknown_;
    QString helpString_;
    QString propertyName_;
    bool isQuery_ = false;
    QString told_; // the last message about a number, until the user types on
    struct Waiting
    {
        const QWidget *control;
        Moment moment;
        std::function<void()> handler;
    };
    std::vector<Waiting> waiting_; // from a box being left until its handler has run
    struct Watch
    {
        const QObject *control;
        QEvent::Type when;
        std::function<void()> handler;
    };
    std::vector<Watch> watches_;
};

} // namespace nuvo
