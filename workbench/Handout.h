// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

class QAbstractItemView;
class QMenu;
class QPrinter;

namespace nuvo {

class Pages;
class Sitting;

/// What goes out of the window: the report and the figures into files and onto paper, tables onto the clipboard.
class Handout : public QObject
{
    Q_OBJECT

public:
    /// \param models the table of models, which is copied while it has the focus
    Handout(Sitting &sitting, Pages &pages, QAbstractItemView &models, QWidget &window);

    void AddFileActions(QMenu &menu);
    void AddEditActions(QMenu &menu);

    /// Asks for a file of one kind to save: "table-what" is proposed in the folder that was used last. Empty when
    /// nobody chose.
    QString AskName(const QString &title, const QString &kind, const QString &what);

    // Files: a name is proposed, a file that is there is replaced only after a question.
    void SaveReport();
    void SaveFigure();
    void Print();
    void Preview();

Q_SIGNALS:
    /// What became of it.
    void Said(const QString &text, bool isError);

private:
    /// Runs what needs a fit; without one, and where it fails, that is told.
    template <class Task>
    void WithFit(const Task &task);
    /// A place for a file in the folder that was used last, named after the table.
    QString Proposed(const QString &what) const;
    void Remember(const QString &file);
    void PrintOn(QPrinter &printer);
    void CopyPage();
    void CopyTable(bool asMarkdown);

    Sitting &sitting_;
    Pages &pages_;
    QAbstractItemView &models_;
    QWidget &window_;
};

} // namespace nuvo
