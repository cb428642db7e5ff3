#include "present/Textreport.h"

#include "platform/Messages.h"

#include <algorithm>

#include <wchar.h>

namespace nuvo {
namespace {

/// The lines of a block that hold something, blanks around them left out.
QStringList blockLines(const QString &block)
{
    QStringList lines;
    for (const QStringView line : QStringView(block).split(kLineEnd, Qt::SkipEmptyParts)) {
        if (const QString text = withoutControls(line.trimmed().toString()); !text.isEmpty())
            lines.append(text);
    }
    return lines;
}

/// A text of the user's own; its line breaks stay.
QString freeText(const QString &text)
{
    QString lines;
    for (const QString &line : DisplayLines(text).split(u'\n'))
        lines += withoutControls(line) + u'\n';
    return lines;
}

/// What stands behind "X1: " or "X1 = ", and in front of it.
struct Labelled
{
    QString label;
    QString text;
};

Labelled labelled(const QString &line, const QString &sign)
{
    const qsizetype at = line.indexOf(sign);
    return at < 0 ? Labelled{QString(), line} : Labelled{line.left(at), line.mid(at + sign.size())};
}

QString padded(const QString &text, int width)
{
    return text + QString(std::max(0, width - displayWidth(text)), u' ');
}

QString rightAligned(const QString &text, int width)
{
    return QString(std::max(0, width - displayWidth(text)), u' ') + text;
}

/// Figures in columns below their captions, each row behind its label.
class Table
{
public:
    Table(QString caption, QStringList captions, int gap = 2)
        : caption_(std::move(caption)), captions_(std::move(captions)), gap_(gap)
    {
    }

    void add(const QString &label, const QStringList &cells) { rows_.append({label, cells}); }
    /// A caption within the table, without figures.
    void addCaption(const QString &caption) { rows_.append({caption, {}}); }

    QString set(int columns) const
    {
        QList<int> widths;
        int figures = 0;
        for (qsizetype i = 0; i < captions_.size(); ++i) {
            int width = displayWidth(captions_[i]);
            for (const Row &row : rows_)
                width = std::max(width, displayWidth(row.cells.value(i)));
            widths.append(width);
            figures += width + gap_;
        }
        int labels = displayWidth(caption_);
        for (const Row &row : rows_) {
            if (!row.cells.isEmpty() && displayWidth(row.label) <= columns - figures)
                labels = std::max(labels, displayWidth(row.label));
        }
        QString text = line(caption_, captions_, labels, widths);
        for (const Row &row : rows_) {
            if (!row.cells.isEmpty() && displayWidth(row.label) > labels)
                text += row.label + u'\n' + line(QString(), row.cells, labels, widths);
            else
                text += line(row.label, row.cells, labels, widths);
        }
        return text;
    }

private:
    struct Row
    {
        QString label;
        QStringList cells;
    };

    QString line(const QString &label, const QStringList &cells, int labels, const QList<int> &widths) const
    {
        QString text = padded(label, labels);
        for (qsizetype i = 0; i < cells.size(); ++i)
            text += QString(gap_, u' ') + rightAligned(cells[i], widths[i]);
        while (text.endsWith(u' '))
            text.chop(1);
        return text + u'\n';
    }

    QString caption_;
    QStringList captions_;
    int gap_;
    QList<Row> rows_;
};

/// A matrix in as many groups of columns as the width asks for, rows and columns labelled by their coefficients.
QString setMatrix(const QString &caption, const QList<QStringList> &rows, const QStringList &names, int columns)
{
    int width = 3;
    for (const QStringList &row : rows) {
        for (const QString &cell : row)
            width = std::max(width, displayWidth(cell));
    }
    const int labels = 5;
    const qsizetype group = std::max(1, (columns - labels) / (width + 1));
    QString text = caption + u'\n';
    for (qsizetype from = 0; from < rows.size(); from += group) {
        const qsizetype count = std::min(group, rows.size() - from);
        QStringList captions;
        for (qsizetype i = from; i < from + count; ++i)
            captions.append(names.value(i));
        Table table(QString(labels, u' '), captions, 1);
        for (qsizetype i = 0; i < rows.size(); ++i) {
            QStringList cells = rows[i].mid(from, count);
            while (cells.size() < count)
                cells.append(QString());
            cells.first() = rightAligned(cells.first(), width);
            table.add(QStringLiteral("  ") + names.value(i), cells);
        }
        text += table.set(columns);
        if (from + count < rows.size())
            text += u'\n';
    }
    return text;
}

/// The covariance and the correlation lines, each a caption, a blank line and the rows.
QString setMatrices(const QStringList &lines, const QStringList &names, int columns)
{
    QString text;
    QString caption;
    QList<QStringList> rows;
    const auto finish = [&] {
        if (!rows.isEmpty())
            text += u'\n' + setMatrix(caption, rows, names, columns);
        rows.clear();
    };
    for (const QString &line : lines) {
        if (line.endsWith(u':')) {
            finish();
            caption = line;
        } else if (const QStringList cells = line.split(u' ', Qt::SkipEmptyParts); !cells.isEmpty()) {
            rows.append(cells);
        }
    }
    finish();
    return text;
}

} // namespace

int displayWidth(const QString &text)
{
    int width = 0;
    for (const char32_t c : text.toUcs4())
        width += std::max(0, ::wcwidth(wchar_t(c)));
    return width;
}

QString reportPlainText(const ReportDocument &report, Matrices matrices, int columns)
{
    const ReportBlocks &blocks = report.blocks;
    const QString indent(4, u' ');
    const QString title = QStringLiteral("Multiple Regression Analysis Report");
    QString text = title + rightAligned(report.dateTime, columns - displayWidth(title)) + u'\n';
    text += QStringLiteral("Data: ") + withoutControls(report.source) + u'\n';
    if (!report.description.isEmpty())
        text += freeText(report.description);

    text += QStringLiteral("Number of observations: ") + blocks.DataCount + u'\n';

    const QStringList means = blockLines(blocks.Means);
    const QStringList stdDevs = blockLines(blocks.StdDevs);
    const auto ofVariable = [&](qsizetype i) {
        return QStringList{labelled(means.value(i), QStringLiteral(": ")).text, stdDevs.value(i)};
    };
    QList<Labelled> variables;
    for (const QString &line : blockLines(blocks.IndepVars))
        variables.append(labelled(line, QStringLiteral(" = ")));
    Table data(QStringLiteral("Dependent Variable:"), {QStringLiteral("Mean:"), QStringLiteral("Std. Dev. (Data):")});
    data.add(indent + QStringLiteral("  ") + blockLines(blocks.DepVar).join(u' '), ofVariable(0));
    data.addCaption(QStringLiteral("Independent Variables:"));
    for (qsizetype i = 0; i < variables.size(); ++i)
        data.add(indent + rightAligned(variables[i].label, 3) + QStringLiteral(" = ") + variables[i].text,
                 ofVariable(i + 1));
    text += u'\n' + data.set(columns);
    const QStringList stdErrs = blockLines(blocks.StdErrs);
    const QStringList tValues = blockLines(blocks.TValues);
    const QStringList coeffs = blockLines(blocks.Coeffs);
    // Standard errors and matrices have the columns that are not listed as well.
    QStringList names(stdErrs.size(), QStringLiteral("-"));
    Table coefficients(QString(), {QStringLiteral("Coefficients:"), QStringLiteral("Std. Err. (Coeff):"),
                                   QStringLiteral("t* Values")});
    for (qsizetype i = 0; i < coeffs.size(); ++i) {
        const Labelled coefficient = labelled(coeffs[i], QStringLiteral(": "));
        const QString term = i == 0 ? QStringLiteral("(constant)") : variables.value(i - 1).text;
        const qsizetype column = i == 0 ? 0 : report.listed.value(i - 1, int(i));
        coefficients.add(indent + rightAligned(coefficient.label, 3) + QStringLiteral(":  ") + term,
                         {coefficient.text, stdErrs.value(column), tValues.value(i)});
        if (column < names.size())
            names[column] = coefficient.label;
    }
    text += u'\n' + coefficients.set(columns);

    const QStringList dof = blockLines(blocks.DOF);
    const QStringList sums{QStringLiteral("Regression SSR : ") + blocks.SSR,
                           QStringLiteral("Residual   SSE : ") + blocks.SSE,
                           QStringLiteral("Total      SST : ") + report.window.SST};
    const int half = 44;
    text += u'\n' + padded(QStringLiteral("Sum of Squares"), half) + QStringLiteral("Degrees of Freedom:") + u'\n';
    for (qsizetype i = 0; i < sums.size(); ++i)
        text += padded(indent + sums[i], half) + indent + dof.value(i) + u'\n';
    text += u'\n' + padded(QStringLiteral("s² : ") + blocks.SSquared, 22) +
            padded(QStringLiteral("R² : ") + report.window.RSquared, 22) + QStringLiteral("F Statistic") +
            blocks.FStat + u'\n';

    if (matrices == Matrices::Shown)
        text += setMatrices(blocks.CovarianceLines + blocks.CorrelationLines, names, columns);
    if (!report.leftOut.isEmpty())
        text += u'\n' + freeText(report.leftOut);
    if (!report.message.isEmpty())
        text += u'\n' + freeText(report.message);
    return text;
}

} // namespace nuvo
