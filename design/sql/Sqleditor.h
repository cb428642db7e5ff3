// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QVariantMap>
#include <QWidget>

class QLabel;
class QPlainTextEdit;
class QPushButton;
class QTableWidget;

namespace nuvo {
class SqlHighlighter;
class TableTree;
class Trial;
struct TrialAnswer;
} // namespace nuvo

/// Edits the statement of a query: the text, with the tables and fields of the database beside it, and below it the
/// first rows that it gives when it is tried. Errors stand in their place. A statement that takes long can be
/// stopped; the window goes on meanwhile. Stands on any form; reads and writes no component.
class NUVO_EXPORT TSqlEditor : public QWidget
{
    Q_OBJECT

public:
    static constexpr int RowsTried = 10;

    /// No text, no database.
    explicit TSqlEditor(QWidget *parent = nullptr);
    ~TSqlEditor() override;

    /// The database that is asked (as a TDataSet names it), and the values of parameters, names in lower case. Reads
    /// the names of the tables; what is wrong with the database is shown.
    void SetDatabase(const QString &databaseName, const QVariantMap &params = {});
    /// The statement, lines parted by "\n". Setting it drops what was tried.
    QString Text() const;
    /// Sends TextChanged(); Changed() is false afterwards.
    void SetText(const QString &text);
    /// Whether somebody has changed the text since it was set.
    bool Changed() const;

    /// Reads the first rows and shows them, or what is wrong; returns at once.
    void Try();
    /// Asks a trial to end; Tried() comes when it has. Nothing where none is under way.
    void Stop();
    /// Whether a trial is under way.
    bool Trying() const;
    /// Shows what is wrong with a statement that a query would refuse, however its tables are; whether it would not.
    bool CheckStatement();

Q_SIGNALS:
    /// The text is another one, typed or set.
    void TextChanged();
    /// A trial has ended, well or not.
    void Tried();

protected:
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    void MakeControls();
    void Show(const nuvo::TrialAnswer &answer);
    void ShowRows(const nuvo::TrialAnswer &answer);
    void ShowError(const QString &sentence, qsizetype position);
    void ClearError();
    void ShowState();

    QString databaseName_;
    QVariantMap params_;
    QString tried_; ///< the text that the answer is about
    nuvo::Trial *trial_;
    nuvo::TableTree *tables_;
    QPlainTextEdit *text_;
    nuvo::SqlHighlighter *highlighter_;
    QPushButton *try_;
    QPushButton *stop_;
    QLabel *sign_;
    QLabel *state_;
    QTableWidget *rows_;
};
