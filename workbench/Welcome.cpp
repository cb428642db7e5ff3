#include "workbench/Welcome.h"

#include <QCommandLinkButton>
#include <QLabel>
#include <QVBoxLayout>

namespace nuvo {

namespace {

QCommandLinkButton *link(QWidget *parent, const char *name, const QString &text, const QString &description)
{
    auto *const button = new QCommandLinkButton(text, description, parent);
    button->setObjectName(QLatin1String(name));
    return button;
}

} // namespace

Welcome::Welcome(QWidget *parent) : QWidget(parent), recent_(new QVBoxLayout)
{
    setObjectName(QStringLiteral("Welcome"));
    auto *const title = new QLabel(tr("A table, and a question"), this);
    QFont large = title->font();
    large.setPointSizeF(large.pointSizeF() * 1.8);
    title->setFont(large);
    auto *const text =
        new QLabel(tr("How much does one column go with others, how sure is that, and what is to be expected "
                      "next? Drop a CSV file or an SQLite database on this window, drag one field to Y and "
                      "others to X1, X2, …, and read what comes out."),
                   this);
    text->setWordWrap(true);
    auto *const file = link(this, "WelcomeFile", tr("Open a file"), tr("CSV, SQLite database or form (Ctrl+O)"));
    auto *const server =
        link(this, "WelcomeServer", tr("Open a server"), tr("PostgreSQL, MySQL, ODBC; tried before it is taken"));
    auto *const samples = link(this, "WelcomeSamples", tr("Look at the samples"),
                               tr("Employment, ozone, states and cement: four small tables"));
    connect(file, &QCommandLinkButton::clicked, this, &Welcome::FileWanted);
    connect(server, &QCommandLinkButton::clicked, this, &Welcome::ServerWanted);
    connect(samples, &QCommandLinkButton::clicked, this, &Welcome::SamplesWanted);
    auto *const column = new QVBoxLayout;
    for (QWidget *const widget : std::initializer_list<QWidget *>{title, text, file, server, samples})
        column->addWidget(widget);
    column->addLayout(recent_);
    column->addStretch(1);
    auto *const all = new QHBoxLayout(this);
    all->addStretch(1);
    all->addLayout(column, 3);
    all->addStretch(1);
    file->setFocus();
}

void Welcome::SetRecent(const QStringList &names)
{
    while (QLayoutItem *const item = recent_->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    if (names.isEmpty())
        return;
    recent_->addWidget(new QLabel(tr("Opened before:"), this));
    for (const QString &name : names) {
        auto *const button = link(this, "WelcomeRecent", name.section(u'/', -1), name);
        connect(button, &QCommandLinkButton::clicked, this, [this, name] { Q_EMIT RecentWanted(name); });
        recent_->addWidget(button);
    }
}

} // namespace nuvo
