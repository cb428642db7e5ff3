// SPDX-License-Identifier: MIT
#include "present/Textreport.h"

#include "platform/Formats.h"
#include "platform/Messages.h"
#include "present/Pagelayout.h"

#include <algorithm>
#include <utility>

#include <wchar.h>

namespace nuvo {
namespace {

/// A line of text that holds a name.
QString named(const QString &text)
{
    return withoutControls(text.trimmed());
}

/// A text of the user's own; its line breaks stay.
QString freeText(const QString &text)
{
    QString lines;
    for (const QString &line : DisplayLines(text).split(u'\n'))
        lines += withoutControls(line) + u'\n';
    return lines;
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
template <class Cell>
QString setMatrix(const QString &caption, const Figures::Matrix &matrix, const Cell &cellOf, const QStringList &names,
                  int columns)
{
    int width = 3;
    QList<QStringList> rows;
    for (const Figures::Numbers &figures : matrix) {
        QStringList row;
        for (const double figure : figures) {
            row.append(cellOf(figure).trimmed());
            width = std::max(width, displayWidth(row.last()));
        }
        rows.append(row);
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
            cells.first() = rightAligned(cells.first(), width);
            table.add(QStringLiteral("  ") + names.value(i), cells);
        }
        text += table.set(columns);
        if (from + count < rows.size())
            text += u'\n';
    }
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

QString reportPlainText(const Figures &figures, Matrices matrices, int columns)
{
    const ReportTexts report = reportTexts(figures);
    const ReportBlocks &blocks = report.blocks;
    const auto figure = [](double value) { return FloatToStrFixed(value, 8, 4); };
    const QString indent(4, u' ');
    const QString title = QStringLiteral("Multiple Regression Analysis Report");
    QString text = title + rightAligned(report.dateTime, columns - displayWidth(title)) + u'\n';
    text += QStringLiteral("Data: ") + withoutControls(report.source) + u'\n';
    if (!report.description.isEmpty())
        text += freeText(report.description);

    text += QStringLiteral("Number of observations: ") + blocks.DataCount + u'\n';

    const auto spread = [&](const Figures::Variable &variable) {
        return QStringList{figure(variable.mean), figure(variable.standardDeviation)};
    };
    Table data(QStringLiteral("Dependent Variable:"), {QStringLiteral("Mean:"), QStringLiteral("Std. Dev. (Data):")});
    data.add(indent + QStringLiteral("  ") + named(QStringLiteral("Y = ") + figures.response.term),
             spread(figures.response));
    data.addCaption(QStringLiteral("Independent Variables:"));
    Table coefficients(QString(), {QStringLiteral("Coefficients:"), QStringLiteral("Std. Err. (Coeff):"),
                                   QStringLiteral("t* Values")});
    const auto addCoefficient = [&](const QString &label, const QString &term, std::size_t i) {
        const Figures::Coefficient &coefficient = figures.coefficients[i];
        coefficients.add(indent + rightAligned(label, 3) + QStringLiteral(":  ") + term,
                         {figure(coefficient.estimate), figure(coefficient.standardError), figure(coefficient.t)});
    };
    addCoefficient(QStringLiteral("B0"), QStringLiteral("(constant)"), 0);
    // The matrices have the columns that are not listed as well.
    QStringList names{QStringLiteral("B0")};
    int listed = 0;
    for (std::size_t j = 0; j < figures.columns.size(); ++j) {
        const Figures::Variable &column = figures.columns[j];
        if (!column.listed) {
            names.append(QStringLiteral("-"));
            continue;
        }
        const QString number = QString::number(++listed);
        const QString term = named(column.term);
        data.add(indent + rightAligned(u'X' + number, 3) + QStringLiteral(" = ") + term, spread(column));
        addCoefficient(u'B' + number, term, j + 1);
        names.append(u'B' + number);
    }
    text += u'\n' + data.set(columns);
    text += u'\n' + coefficients.set(columns);

    const long long n = figures.observations;
    const int m = figures.controls;
    const std::pair<QString, QString> lines[] = {
        {QStringLiteral("Regression SSR : ") + blocks.SSR, QStringLiteral("Regression %1").arg(m)},
        {QStringLiteral("Residual   SSE : ") + blocks.SSE, QStringLiteral("Residual %1").arg(n - m - 1)},
        {QStringLiteral("Total      SST : ") + report.window.SST, QStringLiteral("Total %1").arg(n - 1)}};
    const int half = 44;
    text += u'\n' + padded(QStringLiteral("Sum of Squares"), half) + QStringLiteral("Degrees of Freedom:") + u'\n';
    for (const auto &[sum, degrees] : lines)
        text += padded(indent + sum, half) + indent + degrees + u'\n';
    text += u'\n' + padded(QStringLiteral("s² : ") + blocks.SSquared, 22) +
            padded(QStringLiteral("R² : ") + report.window.RSquared, 22) + QStringLiteral("F Statistic") +
            blocks.FStat + u'\n';

    if (matrices == Matrices::Shown) {
        const auto covariance = [&](double value) { return covarianceCell(value, figures.query); };
        const auto correlation = [](double value) { return correlationCell(value); };
        text +=
            u'\n' + setMatrix(QStringLiteral("Covariance Matrix:"), figures.covariance, covariance, names, columns);
        text += u'\n' +
                setMatrix(QStringLiteral("Correlation Matrix:"), figures.correlation, correlation, names, columns);
    }
    if (!report.leftOut.isEmpty())
        text += u'\n' + freeText(report.leftOut);
    if (!report.message.isEmpty())
        text += u'\n' + freeText(report.message);
    return text;
}

} // namespace nuvo
