// SPDX-License-Identifier: MIT
#include "design/sql/Sqldialog.h"

#include "design/sql/Sqleditor.h"
#include "platform/Modal.h"

#include <QDialogButtonBox>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QShowEvent>
#include <QVBoxLayout>

TSqlDialog::TSqlDialog(QWidget *parent) : QDialog(parent), editor_(new TSqlEditor(this))
{
    setObjectName(QStringLiteral("SqlDialog"));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setSizeGripEnabled(true);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    QPushButton *ok = buttons->button(QDialogButtonBox::Ok);
    ok->setObjectName(QStringLiteral("SqlOK"));
    ok->setToolTip(tr("Takes the statement (Ctrl+Enter)"));
    // A shortcut of the button's own would go with its text, which the box sets anew.
    for (const int key : {Qt::Key_Return, Qt::Key_Enter})
        connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key(key)), this), &QShortcut::activated, ok,
                &QPushButton::click);
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("SqlCancel"));
    buttons->button(QDialogButtonBox::Cancel)->setToolTip(tr("Leaves the statement as it was (Escape)"));
    auto *all = new QVBoxLayout(this);
    all->addWidget(editor_, 1);
    all->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &TSqlDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

bool TSqlDialog::OpenForm(const QString &component, const QString &databaseName, const QVariantMap &params,
                          QStringList &lines)
{
    setWindowTitle(QStringLiteral("%1 SQL").arg(component).trimmed());
    editor_->SetText(lines.join(u'\n'));
    editor_->SetDatabase(databaseName, params);
    editor_->setFocus();
    const QPointer<TSqlDialog> open(this);
    if (ShowModal(*this) != QDialog::Accepted || open.isNull() || !editor_->Changed())
        return false;
    const QString text = editor_->Text();
    lines = text.isEmpty() ? QStringList() : text.split(u'\n');
    return true;
}

void TSqlDialog::accept()
{
    if (editor_->Changed() && !editor_->Text().trimmed().isEmpty() && !editor_->CheckStatement())
        return;
    QDialog::accept();
}

void TSqlDialog::reject()
{
    if (editor_->Trying())
        editor_->Stop();
    else
        QDialog::reject();
}

void TSqlDialog::showEvent(QShowEvent *event)
{
    if (!testAttribute(Qt::WA_Resized) && !event->spontaneous()) {
        constexpr QSize usual(820, 560);
        resize(usual.expandedTo(minimumSizeHint()).boundedTo(screen()->availableGeometry().size()));
    }
    QDialog::showEvent(event);
}
