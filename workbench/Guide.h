// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QTextBrowser;
class QToolButton;
class QTreeWidget;
class QUrl;

namespace nuvo {

/// The guide in a window of its own: contents on the left, the page on the right, back and forward, and a search
/// through all pages. The guide is in English.
class Guide : public QWidget
{
    Q_OBJECT

public:
    explicit Guide(QWidget *parent = nullptr);

    /// \param place a page, and a heading of it behind '#': "figures.md#a-leverage-one-record-decides"
    void ShowPlace(const QString &place);
    /// The page that is shown and the heading that was gone to, as ShowPlace() takes them.
    const QString &Place() const { return place_; }
    QTextBrowser &Page() const { return *page_; }
    /// Goes to the next place of the text in the page, then in the pages after it, around to where it began. Says so
    /// when it is nowhere.
    void FindNext();

protected:
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void ShowUrl(const QUrl &url);
    void ShowContents();
    /// The browser has a page; it still calls the one before its source.
    void GoToAnchor(const QUrl &url);
    /// None is wider than the page.
    void FitPictures();

    QTreeWidget *contents_;
    QTextBrowser *page_;
    QToolButton *back_;
    QToolButton *forward_;
    QLineEdit *search_;
    QLabel *said_;
    QString place_;
};

} // namespace nuvo
