// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QDialog>

#include <memory>
#include <optional>

namespace nuvo {

struct ConnectionAnswer;

/// Puts a DatabaseName together: the file of an SQLite database, or kind, host, port, database and user of a server
/// or a data source of ODBC. "Try" opens it in a thread of its own and lists its tables, or says in place why it
/// cannot be opened. OK tries first where that was not done; what could not be opened takes a second press, for who
/// knows that it will be there later. A password is asked for because the try may need one: it is used for that and
/// nowhere kept, and never in the name.
class NUVO_EXPORT ConnectionDialog : public QDialog
{
    Q_OBJECT

public:
    /// For an SQLite file, until a name is set.
    explicit ConnectionDialog(QWidget *parent = nullptr);
    ~ConnectionDialog() override;

    /// The name as it is written; what a part holds is percent-encoded where need be.
    QString DatabaseName() const;
    /// Fills the boxes. What no box has a place for (a registered connection) counts as a file.
    void SetDatabaseName(const QString &name);
    /// Where a file without a folder of its own is looked for; until then the working folder.
    void SetFolder(const QString &folder);

    /// The password that was typed; empty where there is none.
    QString Password() const;
    /// For a program that goes on to use it while it runs: the dialog says so.
    void KeepPassword();

    /// Opens what the boxes say. The answer comes while events run.
    void Try();
    /// Whether an answer is waited for.
    bool Trying() const;

    void accept() override;

private:
    struct Boxes;

    void build();
    void browse();
    void showKind();
    void changed();
    void answered(const ConnectionAnswer &answer);
    QString nameToOpen() const;

    std::unique_ptr<Boxes> boxes_;
    QString folder_;
    int attempt_ = 0; ///< the last one's number; answers of others count nothing
    bool trying_ = false;
    bool acceptAfter_ = false;  ///< OK waits for the answer
    std::optional<bool> opens_; ///< what the last answer said of what the boxes hold
};

/// Shows the dialog modally. Empty where nobody chose.
NUVO_EXPORT std::optional<QString> askDatabaseName(QWidget *parent, const QString &current,
                                                   const QString &folder = {});

} // namespace nuvo
