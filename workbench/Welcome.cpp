// SPDX-License-Identifier: MIT
#include "workbench/Welcome.h"

#include <QCommandLinkButton>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

namespace nuvo {

namespace {

constexpr int MostRecent = 5;
constexpr int WidestInLetters = 90;

QCommandLinkButton *link(QWidget *parent, const char *name, const QString &text, const QString &description)
{
    auto *const button = new QCommandLinkButton(text, description, parent);
    button->setObjectName(QLatin1String(name));
    button->setAccessibleName(QString(text).remove(u'&'));
    button->setAccessibleDescription(description);
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
    auto *const file = link(this, "WelcomeFile", tr("&Open a file"), tr("CSV, SQLite database or form (Ctrl+O)"));
    auto *const server =
        link(this, "WelcomeServer", tr("Open a &server"), tr("PostgreSQL, MySQL, ODBC; tried before it is taken"));
    auto *const samples = link(this, "WelcomeSamples", tr("&Look at the samples"),
                               tr("Employment, ozone, states and cement: four small tables"));
    auto *const guide = link(this, "WelcomeGuide", tr("&Read the guide"),
                             tr("What the words and the figures mean, in half an hour (F1; in English)"));
    connect(file, &QCommandLinkButton::clicked, this, &Welcome::FileWanted);
    connect(server, &QCommandLinkButton::clicked, this, &Welcome::ServerWanted);
    connect(samples, &QCommandLinkButton::clicked, this, &Welcome::SamplesWanted);
    connect(guide, &QCommandLinkButton::clicked, this, &Welcome::GuideWanted);

    auto *const page = new QWidget;
    page->setMaximumWidth(fontMetrics().averageCharWidth() * WidestInLetters);
    auto *const column = new QVBoxLayout(page);
    column->setContentsMargins(24, 24, 24, 24);
    for (QWidget *const widget : std::initializer_list<QWidget *>{title, text})
        column->addWidget(widget);
    column->addSpacing(12);
    for (QWidget *const widget : std::initializer_list<QWidget *>{file, server, samples, guide})
        column->addWidget(widget);
    column->addLayout(recent_);
    column->addStretch(1);
    auto *const inside = new QWidget;
    auto *const middle = new QHBoxLayout(inside);
    middle->setContentsMargins({});
    middle->addStretch(1);
    middle->addWidget(page, 100);
    middle->addStretch(1);
    auto *const scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("WelcomeScroll"));
    scroll->setFrameStyle(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidget(inside);
    auto *const all = new QVBoxLayout(this);
    all->setContentsMargins({});
    all->addWidget(scroll);
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
    auto *const heading = new QLabel(tr("Opened before:"), this);
    heading->setContentsMargins(0, 12, 0, 0);
    recent_->addWidget(heading);
    for (const QString &name : names.first(std::min<qsizetype>(names.size(), MostRecent))) {
        // A command link takes '&' for the letter of a key.
        const QString shown = name.section(u'/', -1).replace(u'&', QLatin1String("&&"));
        auto *const button = link(this, "WelcomeRecent", shown, name);
        connect(button, &QCommandLinkButton::clicked, this, [this, name] { Q_EMIT RecentWanted(name); });
        recent_->addWidget(button);
    }
}

} // namespace nuvo
