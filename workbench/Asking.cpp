// SPDX-License-Identifier: MIT
#include "workbench/Asking.h"

#include "platform/Databasename.h"
#include "platform/Modal.h"
#include "platform/Passwords.h"

#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QVBoxLayout>

namespace nuvo {

namespace {

QLabel *label(QWidget *parent, const QString &text)
{
    auto *const made = new QLabel(text, parent);
    made->setTextFormat(Qt::PlainText);
    made->setWordWrap(true);
    return made;
}

void finish(QDialog &dialog, QVBoxLayout *all)
{
    auto *const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    all->addWidget(buttons);
    dialog.setMinimumWidth(380);
}

} // namespace

std::optional<QString> askPassword(QWidget *parent, const QString &database, const QString &why)
{
    QDialog dialog(parent);
    dialog.setObjectName(QStringLiteral("PasswordDialog"));
    dialog.setWindowTitle(QCoreApplication::translate("Asking", "Password"));
    auto *const edit = new QLineEdit(&dialog);
    edit->setObjectName(QStringLiteral("Password"));
    edit->setEchoMode(QLineEdit::Password);
    auto *const form = new QFormLayout;
    form->addRow(QCoreApplication::translate("Asking", "&Password:"), edit);
    auto *const all = new QVBoxLayout(&dialog);
    all->addWidget(label(&dialog, withoutPasswords(database)));
    all->addWidget(label(&dialog, why));
    all->addLayout(form);
    all->addWidget(label(&dialog, QCoreApplication::translate("Asking", "It is kept until the program ends, and "
                                                                        "stored nowhere.")));
    finish(dialog, all);
    if (ShowModal(dialog) != QDialog::Accepted || edit->text().isEmpty())
        return {};
    return edit->text();
}

QString keepOdbcPassword(const QString &databaseName)
{
    const QLatin1StringView odbc("odbc:");
    if (!databaseName.startsWith(odbc, Qt::CaseInsensitive))
        return databaseName;
    QStringList kept;
    QString password;
    // A value between braces may hold semicolons, and "}}" for a brace.
    static const QRegularExpression part(QStringLiteral("([^;=]*)(=\\s*(\\{(?:[^}]|\\}\\})*\\}|[^;]*))?(;|$)"));
    for (auto parts = part.globalMatch(databaseName, odbc.size()); parts.hasNext();) {
        const QRegularExpressionMatch match = parts.next();
        const QString key = match.captured(1).trimmed().toLower();
        if (key != u"pwd" && key != u"password") {
            if (!match.captured(1).isEmpty() || !match.captured(2).isEmpty())
                kept.append(match.captured(1) + match.captured(2));
            continue;
        }
        password = match.captured(3).trimmed();
        if (password.startsWith(u'{') && password.endsWith(u'}'))
            password = password.mid(1, password.size() - 2).replace(QLatin1String("}}"), QLatin1String("}"));
    }
    if (password.isEmpty())
        return databaseName;
    const QString name = databaseName.left(odbc.size()) + kept.join(u';');
    setPassword(name, password);
    return name;
}

std::optional<QMap<QString, QString>> askParameters(QWidget *parent, const QStringList &names,
                                                    const QMap<QString, QString> &before)
{
    QDialog dialog(parent);
    dialog.setObjectName(QStringLiteral("ParametersDialog"));
    dialog.setWindowTitle(QCoreApplication::translate("Asking", "Values of the parameters"));
    auto *const form = new QFormLayout;
    QMap<QString, QLineEdit *> edits;
    for (const QString &name : names) {
        auto *const edit = new QLineEdit(before.value(name), &dialog);
        edit->setObjectName(QStringLiteral("Parameter_") + name);
        form->addRow(name + u':', edit);
        edits.insert(name, edit);
    }
    auto *const all = new QVBoxLayout(&dialog);
    all->addLayout(form);
    finish(dialog, all);
    if (ShowModal(dialog) != QDialog::Accepted)
        return {};
    QMap<QString, QString> values;
    for (const QString &name : names)
        values.insert(name, edits.value(name)->text());
    return values;
}

} // namespace nuvo
