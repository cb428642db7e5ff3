// SPDX-License-Identifier: MIT
#include "design/Fieldnames.h"

#include <QAction>
#include <QCompleter>
#include <QLineEdit>
#include <QStyle>

nuvo::FieldNames::FieldNames(QLineEdit &line, const QString &placeholder)
    : QObject(&line), line_(line), placeholder_(placeholder),
      mark_(line.addAction(line.style()->standardIcon(QStyle::SP_MessageBoxWarning), QLineEdit::TrailingPosition))
{
    mark_->setObjectName(line.objectName() + QStringLiteral("Mark"));
    mark_->setVisible(false);
    connect(&line, &QLineEdit::textChanged, this, &FieldNames::Mark);
}

void nuvo::FieldNames::SetFields(const ModelFields &fields)
{
    fields_ = fields;
    auto *completer = new QCompleter(fields.numericNames(), &line_);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setFilterMode(Qt::MatchContains);
    line_.setCompleter(completer); // which deletes the one before
    Mark();
}

QString nuvo::FieldNames::Fault() const
{
    const QString name = line_.text();
    if (!fields_.known || name.isEmpty() || name == placeholder_)
        return {};
    const ModelField *field = fields_.find(name);
    if (field == nullptr)
        return QStringLiteral("There is no field \"%1\".").arg(name);
    return field->numeric ? QString()
                          : QStringLiteral("The field \"%1\" %2.").arg(field->name, ModelFields::whyNot(*field));
}

void nuvo::FieldNames::Mark()
{
    const QString fault = Fault();
    mark_->setVisible(!fault.isEmpty());
    mark_->setToolTip(fault);
}
