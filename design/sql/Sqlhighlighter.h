// SPDX-License-Identifier: MIT
#pragma once

#include <QSyntaxHighlighter>

class QWidget;

namespace nuvo {

/// Shows words of SQL, literals, numbers, parameters and comments apart, in colours that suit the editor's palette. A
/// quoted name keeps the colour of letters.
class SqlHighlighter : public QSyntaxHighlighter
{
    Q_OBJECT

public:
    SqlHighlighter(QTextDocument &document, const QWidget &editor) : QSyntaxHighlighter(&document), editor_(editor) {}

protected:
    void highlightBlock(const QString &text) override;

private:
    const QWidget &editor_;
};

} // namespace nuvo
