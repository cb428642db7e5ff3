// SPDX-License-Identifier: MIT
#include "present/Connectiondlg.h"

#include "platform/Connectiontry.h"
#include "platform/Databasename.h"
#include "platform/Errors.h"
#include "platform/Modal.h"
#include "present/Filedialog.h"
#include "present/Forms.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QScopeGuard>
#include <QSpinBox>
#include <QVBoxLayout>

#include <array>
#include <utility>

namespace nuvo {

namespace {

enum Kind { File, Postgres, MySql, Odbc };

struct KindOfDatabase
{
    const char *name;
    const char *scheme;
    const char *port;
    const char *password; ///< where a program has it from, which no name holds
};

const std::array<KindOfDatabase, 4> databaseKinds{{
    {QT_TRANSLATE_NOOP("nuvo::ConnectionDialog", "SQLite file"), "", "", ""},
    {"PostgreSQL", "postgresql", "5432",
     QT_TRANSLATE_NOOP("nuvo::ConnectionDialog",
                       "For the try alone, stored nowhere. Programs take it from the password file ~/.pgpass "
                       "(PGPASSFILE), a line host:port:database:user:password, or from a service file.")},
    {"MySQL, MariaDB", "mysql", "3306",
     QT_TRANSLATE_NOOP(
         "nuvo::ConnectionDialog",
         "For the try alone, stored nowhere. The driver reads no password file: programs use an account "
         "that needs no password, or register a connection of their own and name it here.")},
    {QT_TRANSLATE_NOOP("nuvo::ConnectionDialog", "ODBC data source"), "", "",
     QT_TRANSLATE_NOOP("nuvo::ConnectionDialog",
                       "For the try alone, stored nowhere. Programs take it from the data source (~/.odbc.ini).")},
}};

constexpr int LongestTimeout = 86400; // seconds, as in an address

bool isUrl(const QString &name)
{
    return name.contains(QLatin1String("://"));
}

bool isOdbc(const QString &name)
{
    return name.startsWith(QLatin1String("odbc:"), Qt::CaseInsensitive);
}

QString text(const char *words)
{
    return QString::fromUtf8(words);
}

} // namespace

struct ConnectionDialog::Boxes
{
    QFormLayout *form;
    QComboBox *kind;
    QWidget *fileRow;
    QLineEdit *file;
    QLineEdit *host;
    QLineEdit *port;
    QLineEdit *database;
    QLineEdit *source;
    QLineEdit *user;
    QLineEdit *password;
    QLabel *note;
    QSpinBox *connectTimeout;
    QSpinBox *readTimeout;
    QLineEdit *name;
    QPushButton *tryIt;
    QLabel *status;
    QListWidget *tables;
    QDialogButtonBox *buttons;
    bool keepsPassword = false;
};

ConnectionDialog::ConnectionDialog(QWidget *parent) : QDialog(parent), boxes_(std::make_unique<Boxes>())
{
    setWindowTitle(tr("Connection to a Database"));
    build();
    showKind();
}

ConnectionDialog::~ConnectionDialog() = default;

void ConnectionDialog::build()
{
    Boxes &b = *boxes_;
    b.form = new QFormLayout;
    b.form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    const auto line = [this](const char *name) {
        auto *edit = new QLineEdit;
        edit->setObjectName(QLatin1String(name));
        connect(edit, &QLineEdit::textChanged, this, &ConnectionDialog::changed);
        return edit;
    };
    const auto seconds = [this](const char *name, int least, int value) {
        auto *box = new QSpinBox;
        box->setObjectName(QLatin1String(name));
        box->setRange(least, LongestTimeout);
        box->setValue(value);
        box->setSuffix(QStringLiteral(" s"));
        connect(box, &QSpinBox::valueChanged, this, &ConnectionDialog::changed);
        return box;
    };
    b.kind = new QComboBox;
    b.kind->setObjectName(QStringLiteral("kind"));
    for (const KindOfDatabase &kind : databaseKinds)
        b.kind->addItem(tr(kind.name));
    b.form->addRow(tr("&Kind:"), b.kind);
    connect(b.kind, &QComboBox::currentIndexChanged, this, &ConnectionDialog::showKind);

    b.fileRow = new QWidget;
    auto *fileLayout = new QHBoxLayout(b.fileRow);
    fileLayout->setContentsMargins({});
    b.file = line("file");
    b.file->setAccessibleName(tr("File")); // its label is no neighbour
    auto *browse = new QPushButton(tr("&Browse…"));
    browse->setObjectName(QStringLiteral("browse"));
    browse->setAutoDefault(false);
    connect(browse, &QPushButton::clicked, this, [this] { guarded([this] { this->browse(); }); });
    fileLayout->addWidget(b.file);
    fileLayout->addWidget(browse);
    b.form->addRow(tr("&File:"), b.fileRow);
    static_cast<QLabel *>(b.form->labelForField(b.fileRow))->setBuddy(b.file);

    b.source = line("source");
    b.form->addRow(tr("Data &source:"), b.source);
    b.host = line("host");
    b.host->setPlaceholderText(QStringLiteral("localhost"));
    b.form->addRow(tr("&Host:"), b.host);
    b.port = line("port");
    b.form->addRow(tr("P&ort:"), b.port);
    b.database = line("database");
    b.form->addRow(tr("&Database:"), b.database);
    b.user = line("user");
    b.form->addRow(tr("&User:"), b.user);
    b.connectTimeout = seconds("connectTimeout", 1, ServerAddress().connectTimeout);
    b.connectTimeout->setToolTip(tr("How long a server may take to let us in"));
    b.form->addRow(tr("&Wait to connect:"), b.connectTimeout);
    b.readTimeout = seconds("readTimeout", 0, 0);
    b.readTimeout->setSpecialValueText(tr("as long as it takes"));
    b.readTimeout->setToolTip(tr("How long the answer to one statement may take"));
    b.form->addRow(tr("Wait for &answers:"), b.readTimeout);
    b.password = line("password");
    b.password->setEchoMode(QLineEdit::Password);
    b.form->addRow(tr("&Password:"), b.password);
    b.note = new QLabel;
    b.note->setObjectName(QStringLiteral("note"));
    b.note->setTextFormat(Qt::PlainText);
    b.note->setWordWrap(true);
    b.form->addRow(QString(), b.note);
    b.name = new QLineEdit;
    b.name->setObjectName(QStringLiteral("databaseName"));
    b.name->setReadOnly(true);
    b.name->setToolTip(tr("The DatabaseName that is taken"));
    b.form->addRow(tr("&Name:"), b.name);

    b.tryIt = new QPushButton(tr("&Try"));
    b.tryIt->setObjectName(QStringLiteral("try"));
    b.tryIt->setAutoDefault(false);
    connect(b.tryIt, &QPushButton::clicked, this, &ConnectionDialog::Try);
    b.status = new QLabel;
    b.status->setObjectName(QStringLiteral("status"));
    b.status->setTextFormat(Qt::PlainText);
    b.status->setWordWrap(true);
    b.status->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *tryRow = new QHBoxLayout;
    tryRow->addWidget(b.tryIt, 0, Qt::AlignTop);
    tryRow->addWidget(b.status, 1);
    b.tables = new QListWidget;
    b.tables->setObjectName(QStringLiteral("tables"));
    b.tables->setAccessibleName(tr("Tables of the database"));
    b.buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    b.buttons->setObjectName(QStringLiteral("buttons"));
    connect(b.buttons, &QDialogButtonBox::accepted, this, &ConnectionDialog::accept);
    connect(b.buttons, &QDialogButtonBox::rejected, this, &ConnectionDialog::reject);

    auto *all = new QVBoxLayout(this);
    all->addLayout(b.form);
    all->addLayout(tryRow);
    all->addWidget(b.tables, 1);
    all->addWidget(b.buttons);
    resize(sizeHint().expandedTo({460, 480}));
}

void ConnectionDialog::showKind()
{
    const Boxes &b = *boxes_;
    const int kind = b.kind->currentIndex();
    const bool server = kind == Postgres || kind == MySql;
    b.form->setRowVisible(b.fileRow, kind == File);
    b.form->setRowVisible(b.source, kind == Odbc);
    for (QWidget *box :
         {static_cast<QWidget *>(b.host), static_cast<QWidget *>(b.port), static_cast<QWidget *>(b.database),
          static_cast<QWidget *>(b.connectTimeout), static_cast<QWidget *>(b.readTimeout)})
        b.form->setRowVisible(box, server);
    for (QWidget *box :
         {static_cast<QWidget *>(b.user), static_cast<QWidget *>(b.password), static_cast<QWidget *>(b.note)})
        b.form->setRowVisible(box, kind != File);
    b.port->setPlaceholderText(text(databaseKinds[std::size_t(kind)].port));
    const char *const password = databaseKinds[std::size_t(kind)].password;
    b.note->setText(*password == 0    ? QString()
                    : b.keepsPassword ? tr("Kept until the program ends, and stored nowhere.")
                                      : tr(password));
    changed();
}

QString ConnectionDialog::DatabaseName() const
{
    const Boxes &b = *boxes_;
    const int kind = b.kind->currentIndex();
    if (kind == File)
        return b.file->text();
    if (kind == Odbc) {
        const QString source = b.source->text().trimmed();
        const QString user = b.user->text().trimmed();
        if (user.isEmpty())
            return QStringLiteral("odbc:") + source;
        return QStringLiteral("odbc:%1%2;UID=%3")
            .arg(source.contains(u'=') ? QString() : QStringLiteral("DSN="), source, user);
    }
    ServerAddress address;
    address.scheme = text(databaseKinds[std::size_t(kind)].scheme);
    address.user = b.user->text().trimmed();
    address.host = b.host->text().trimmed();
    address.port = b.port->text().trimmed();
    address.name = b.database->text().trimmed();
    address.connectTimeout = b.connectTimeout->value();
    address.readTimeout = b.readTimeout->value();
    return databaseName(address);
}

void ConnectionDialog::SetDatabaseName(const QString &name)
{
    const Boxes &b = *boxes_;
    for (QLineEdit *edit : {b.file, b.source, b.host, b.port, b.database, b.user, b.password})
        edit->clear();
    if (isOdbc(name)) {
        b.source->setText(name.mid(5));
        b.kind->setCurrentIndex(Odbc);
        return;
    }
    if (isUrl(name)) {
        try {
            const ServerAddress address = serverAddress(name);
            const bool mysql = address.scheme == u"mysql";
            if (mysql || address.scheme == u"postgresql" || address.scheme == u"postgres") {
                b.host->setText(address.host);
                b.port->setText(address.port);
                b.database->setText(address.name);
                b.user->setText(address.user);
                b.connectTimeout->setValue(address.connectTimeout);
                b.readTimeout->setValue(address.readTimeout);
                b.kind->setCurrentIndex(mysql ? MySql : Postgres);
                return;
            }
        } catch (const EPlatformError &error) {
            // A name that is no address, or holds a password: it is not shown, what is wrong with it is.
            b.kind->setCurrentIndex(Postgres);
            b.status->setText(error.Message());
            return;
        }
    }
    b.file->setText(name);
    b.kind->setCurrentIndex(File);
}

QString ConnectionDialog::Password() const
{
    return boxes_->kind->currentIndex() == File ? QString() : boxes_->password->text();
}

void ConnectionDialog::KeepPassword()
{
    boxes_->keepsPassword = true;
    showKind();
}

void ConnectionDialog::SetFolder(const QString &folder)
{
    folder_ = folder;
}

/// A file is the one that the program will find, wherever this one works.
QString ConnectionDialog::nameToOpen() const
{
    const QString name = DatabaseName();
    const bool file = boxes_->kind->currentIndex() == File && !name.isEmpty();
    return file && !folder_.isEmpty() ? QDir(folder_).absoluteFilePath(name) : name;
}

void ConnectionDialog::browse()
{
    const QString file =
        askExistingFile(this, tr("Choose a Database"),
                        {tr("SQLite databases (*.db *.db3 *.sqlite *.sqlite3)"), tr("All files (*)")}, nameToOpen());
    if (file.isEmpty())
        return;
    const QString relative = folder_.isEmpty() ? QString() : QDir(folder_).relativeFilePath(file);
    boxes_->file->setText(relative.isEmpty() || relative.startsWith(QLatin1String("../")) ? file : relative);
}

/// What was found out holds for what was tried.
void ConnectionDialog::changed()
{
    const Boxes &b = *boxes_;
    ++attempt_;
    trying_ = acceptAfter_ = false;
    opens_.reset();
    b.name->setText(DatabaseName());
    b.name->setCursorPosition(0);
    b.status->clear();
    b.tables->clear();
    b.tables->setEnabled(false);
    b.tryIt->setEnabled(true);
    b.buttons->button(QDialogButtonBox::Ok)->setText(tr("OK"));
}

bool ConnectionDialog::Trying() const
{
    return trying_;
}

void ConnectionDialog::Try()
{
    const Boxes &b = *boxes_;
    if (trying_)
        return;
    trying_ = true;
    b.tryIt->setEnabled(false);
    b.tables->clear();
    b.status->setText(tr("Opening it…"));
    tryConnection(nameToOpen(), b.kind->currentIndex() == File ? QString() : b.password->text(), this,
                  [this, number = ++attempt_](const ConnectionAnswer &answer) {
                      if (number == attempt_)
                          answered(answer);
                  });
}

void ConnectionDialog::answered(const ConnectionAnswer &answer)
{
    const Boxes &b = *boxes_;
    trying_ = false;
    opens_ = answer.error.isEmpty();
    b.tryIt->setEnabled(true);
    b.tables->addItems(answer.tables);
    b.tables->setEnabled(!answer.tables.isEmpty());
    b.status->setText(!*opens_                  ? answer.error
                      : answer.tables.isEmpty() ? tr("It opens, and has no tables.")
                      : answer.tables.size() == 1
                          ? tr("It opens, with one table:")
                          : tr("It opens, with %1 tables and views:").arg(answer.tables.size()));
    b.buttons->button(QDialogButtonBox::Ok)->setText(*opens_ ? tr("OK") : tr("Use it anyway"));
    if (std::exchange(acceptAfter_, false) && *opens_)
        QDialog::accept();
}

void ConnectionDialog::accept()
{
    if (opens_) {
        QDialog::accept();
        return;
    }
    Try();
    acceptAfter_ = true;
}

std::optional<QString> askDatabaseName(QWidget *parent, const QString &current, const QString &folder)
{
    const QPointer<ConnectionDialog> dialog = new ConnectionDialog(parent);
    const auto gone = qScopeGuard([&dialog] { delete dialog; });
    dialog->SetFolder(folder);
    dialog->SetDatabaseName(current);
    if (ShowModal(*dialog) != QDialog::Accepted || dialog.isNull())
        return {};
    return dialog->DatabaseName();
}

} // namespace nuvo
