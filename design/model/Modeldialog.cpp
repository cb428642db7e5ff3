// SPDX-License-Identifier: MIT
#include "design/model/Modeldialog.h"

#include "design/model/Modeleditor.h"
#include "platform/Modal.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QShowEvent>
#include <QVBoxLayout>

#include <algorithm>

TModelDialog::TModelDialog(QWidget *parent)
    : QDialog(parent), editor_(new TModelEditor(this)), unfinished_(new QLabel(this))
{
    setObjectName(QStringLiteral("ModelDialog"));
    setWindowTitle(tr("Model"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setSizeGripEnabled(true);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    ok_ = buttons->button(QDialogButtonBox::Ok);
    ok_->setObjectName(QStringLiteral("ModelOK"));
    ok_->setToolTip(tr("Takes the model (Ctrl+Enter)"));
    // A shortcut of the button's own would go with its text, which the box sets anew.
    for (const int key : {Qt::Key_Return, Qt::Key_Enter})
        connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key(key)), this), &QShortcut::activated, ok_,
                &QPushButton::click);
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("ModelCancel"));
    buttons->button(QDialogButtonBox::Cancel)->setToolTip(tr("Leaves the model as it was (Escape)"));
    unfinished_->setObjectName(QStringLiteral("Unfinished"));
    unfinished_->setTextFormat(Qt::PlainText);
    unfinished_->setWordWrap(true);

    auto *below = new QHBoxLayout;
    below->addWidget(unfinished_, 1);
    below->addWidget(buttons);
    auto *all = new QVBoxLayout(this);
    all->addWidget(editor_, 1);
    all->addLayout(below);

    connect(editor_, &TModelEditor::ModelChanged, this, &TModelDialog::ShowState);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] {
        editor_->EndEdit();
        if (ok_->isEnabled())
            accept();
    });
    ShowState();
}

void TModelDialog::ShowState()
{
    const std::vector<int> changed = editor_->Model().differences(before_);
    QStringList left;
    for (const nuvo::ModelProblem &problem : editor_->Problems()) {
        if (problem.unfinished && std::find(changed.begin(), changed.end(), problem.place) != changed.end())
            left += nuvo::RegressionModel::label(problem.place);
    }
    ok_->setEnabled(left.isEmpty());
    unfinished_->setText(left.isEmpty() ? QString()
                                        : (left.size() == 1 ? tr("%1 is not finished.") : tr("%1 are not finished."))
                                              .arg(left.join(QStringLiteral(", "))));
}

bool TModelDialog::OpenForm(const QString &component, nuvo::RegressionModel &model)
{
    before_ = model;
    setWindowTitle(component.isEmpty() ? tr("Model") : tr("%1 Model").arg(component));
    editor_->SetModel(model);
    ShowState();
    editor_->FocusFields();
    const QPointer<TModelDialog> open(this);
    if (ShowModal(*this) != QDialog::Accepted || open.isNull())
        return false;
    model = editor_->Model();
    return true;
}

void TModelDialog::showEvent(QShowEvent *event)
{
    if (!testAttribute(Qt::WA_Resized) && !event->spontaneous()) {
        constexpr QSize usual(920, 580);
        resize(usual.expandedTo(minimumSizeHint()).boundedTo(screen()->availableGeometry().size()));
    }
    QDialog::showEvent(event);
}
