// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QDialog>
#include <QPointer>
#include <QStringList>

#include <functional>
#include <memory>

class QPagedPaintDevice;
class QPrinter;
class QTabWidget;
class QVBoxLayout;

namespace nuvo {

/// A window of pages with buttons to print, save, copy, explain and close below them, of the size and colours that
/// the person gives it.
///
/// Keys: Alt+1 and so on, Ctrl+Tab and Ctrl+Shift+Tab the pages, Ctrl+P prints, Ctrl+S saves, Ctrl+C copies, F1 tells
/// the keys, Escape closes.
class NUVO_EXPORT PagedForm : public QDialog
{
public:
    ~PagedForm() override;

    /// The page shown, from 0.
    int PageIndex() const;
    /// Turns to it; an index that does not exist changes nothing.
    void SetPageIndex(int index);

    /// Prints the document on sheets of a device.
    virtual void PrintDocument(QPagedPaintDevice &device) const = 0;
    /// Onto the clipboard: whatever page is shown.
    virtual void Copy() = 0;

protected:
    struct Words
    {
        QString printHint; ///< of the buttons, with their keys
        QString saveHint;
        QString saveTitle;     ///< of the file dialog
        QStringList fileKinds; ///< as nuvo::askFileName() takes them
        QString help;
    };

    /// \param name of what the window shows, in the names of its controls
    PagedForm(QWidget *parent, const char *name);
    /// Buttons, keys and size. \pre the pages have been made: the buttons come behind them when Tab is pressed.
    void SetUp(const Words &words, QSize usualSize, int mostPages);

    QTabWidget &Pages() const { return *pages_; }
    /// Above the buttons; has the pages.
    QVBoxLayout &Column() const { return *column_; }
    void AddPage(QWidget *page, const QString &title);
    /// What of a page has the focus when it is turned to.
    virtual QWidget *ReadingPart(QWidget *page) const = 0;
    virtual void SaveFile(const QString &file) const = 0;

private:
    void setUpButtons();
    void setUpKeys(int mostPages);
    void printClick();
    void saveClick();
    void step(int way);

    const QString name_;
    Words words_;
    std::unique_ptr<QPrinter> printer_;
    QTabWidget *pages_;
    QVBoxLayout *column_;
};

/// Shows a new window of which there is one at a time, and frees it when it is closed: while `open` is, that one
/// comes to the front instead.
NUVO_EXPORT void showOne(QPointer<QDialog> &open, const std::function<QDialog *(QWidget *parent)> &make);

} // namespace nuvo
