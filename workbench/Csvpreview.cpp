// SPDX-License-Identifier: MIT
#include "workbench/Csvpreview.h"

#include "app/Csv.h"
#include "platform/Errors.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace nuvo {

namespace {

constexpr int kRecords = 100;
constexpr int kColumns = 200;
constexpr qint64 kMostBytes = 8 << 20; // that are read to show them
constexpr size_t kMostOfACell = 800;   // bytes
constexpr int kWidest = 40;            // letters of a column

/// Thrown out of the reading where the first records are that long.
struct LongRecords
{
};

/// The first entry stands for what is recognised; the others have their value as data.
QComboBox *choice(QWidget *parent, const char *name, const std::vector<std::pair<QString, int>> &values)
{
    auto *const box = new QComboBox(parent);
    box->setObjectName(QLatin1String(name));
    box->addItem(QString(), -1);
    for (const auto &[text, value] : values)
        box->addItem(text, value);
    return box;
}

/// To be set from the right.
bool isNumber(const QString &text, char decimal)
{
    if (decimal != '.' && text.contains(u'.'))
        return false;
    bool isOne = false;
    QString(text).replace(QLatin1Char(decimal), u'.').toDouble(&isOne);
    return isOne;
}

} // namespace

CsvPreview::CsvPreview(const QString &file, QWidget *parent)
    : QDialog(parent), file_(file),
      encoding_(choice(this, "Encoding",
                       {{QStringLiteral("UTF-8"), int(CsvEncoding::Utf8)},
                        {QStringLiteral("UTF-16 LE"), int(CsvEncoding::Utf16LittleEndian)},
                        {QStringLiteral("UTF-16 BE"), int(CsvEncoding::Utf16BigEndian)},
                        {QStringLiteral("Windows-1252"), int(CsvEncoding::Windows1252)},
                        {QStringLiteral("Latin-1"), int(CsvEncoding::Latin1)}})),
      separator_(choice(
          this, "Separator",
          {{tr("comma"), ','}, {tr("semicolon"), ';'}, {tr("tab"), '\t'}, {tr("bar |"), '|'}, {tr("blank"), ' '}})),
      decimal_(choice(this, "Decimal", {{tr("point"), '.'}, {tr("comma"), ','}})), nulls_(new QLineEdit(this)),
      reasons_(new QLabel(this)), error_(new QLabel(this)), records_(new QTableWidget(this))
{
    setObjectName(QStringLiteral("CsvPreview"));
    setWindowTitle(tr("Open %1").arg(QFileInfo(file).fileName()));
    setSizeGripEnabled(true);
    auto *const form = new QFormLayout;
    form->addRow(tr("&Encoding:"), encoding_);
    form->addRow(tr("Cells are &parted by:"), separator_);
    form->addRow(tr("&Decimal sign:"), decimal_);
    form->addRow(tr("&Missing values:"), nulls_);
    nulls_->setObjectName(QStringLiteral("Nulls"));
    nulls_->setPlaceholderText(tr("empty cells and NA; further ones, with blanks between: . -999"));
    for (QLabel *const label : {reasons_, error_}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }
    reasons_->setObjectName(QStringLiteral("Reasons"));
    error_->setObjectName(QStringLiteral("PreviewError"));
    records_->setObjectName(QStringLiteral("PreviewRecords"));
    records_->setAccessibleName(tr("First records"));
    records_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    records_->setAlternatingRowColors(true);
    records_->setTabKeyNavigation(false);
    records_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    records_->horizontalHeader()->setMaximumSectionSize(fontMetrics().averageCharWidth() * kWidest);
    auto *const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    ok_ = buttons->button(QDialogButtonBox::Ok);
    ok_->setText(tr("Read"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *const all = new QVBoxLayout(this);
    all->addLayout(form);
    all->addWidget(reasons_);
    all->addWidget(error_);
    all->addWidget(records_, 1);
    all->addWidget(buttons);
    resize(700, 500);
    for (QComboBox *const box : {encoding_, separator_, decimal_})
        connect(box, &QComboBox::activated, this, &CsvPreview::Correct);
    connect(nulls_, &QLineEdit::textChanged, this, &CsvPreview::Correct);
    ok_->setFocus();
    Show();
}

void CsvPreview::Correct()
{
    const auto said = [](const QComboBox *box) { return box->currentData().toInt(); };
    corrections_ = {};
    if (said(encoding_) >= 0)
        corrections_.encoding = CsvEncoding(said(encoding_));
    if (said(separator_) >= 0)
        corrections_.separator = char(said(separator_));
    if (said(decimal_) >= 0)
        corrections_.decimal = char(said(decimal_));
    for (const QString &null : nulls_->text().split(u' ', Qt::SkipEmptyParts))
        corrections_.nulls.push_back(null.toStdString());
    Show();
}

void CsvPreview::Show()
{
    records_->clear();
    records_->setRowCount(0);
    error_->clear();
    bool hasRecords = false;
    try {
        CsvReader reader(file_, corrections_);
        const CsvFormat &format = reader.format();
        encoding_->setItemText(0, tr("recognised: %1").arg(encodingName(format.encoding)));
        separator_->setItemText(0, tr("recognised: %1").arg(separatorName(format.separator)));
        decimal_->setItemText(0, tr("recognised: %1").arg(format.decimal == ',' ? tr("comma") : tr("point")));
        QStringList reasons;
        for (const QString &reason :
             {reader.reasons().encoding, reader.reasons().separator, reader.reasons().decimal}) {
            if (!reason.isEmpty())
                reasons.append(reason);
        }
        reasons_->setText(reasons.join(QLatin1String("; ")));
        const auto cellText = [&](size_t column) {
            return csvText(reader.cell(column).substr(0, kMostOfACell), format.encoding).value_or(QString());
        };
        reader.follow([](qint64 bytes) {
            if (bytes > kMostBytes)
                throw LongRecords();
        });
        int columns = 0;
        for (int record = 0; record <= kRecords && reader.next(); ++record) {
            if (record == 0) {
                columns = int(std::min<size_t>(reader.cellCount(), kColumns));
                records_->setColumnCount(columns);
                QStringList names;
                for (int column = 0; column < columns; ++column)
                    names.append(cellText(size_t(column)).left(200));
                ShowNames(names);
            } else {
                records_->insertRow(record - 1);
                hasRecords = true;
            }
            for (int column = 0; record > 0 && column < columns; ++column) {
                auto *const item = new QTableWidgetItem(cellText(size_t(column)).left(200));
                if (isNumber(item->text(), format.decimal))
                    item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
                records_->setItem(record - 1, column, item);
            }
        }
        records_->resizeColumnsToContents();
        if (!hasRecords)
            error_->setText(tr("There are no records below the first line."));
    } catch (const LongRecords &) {
        hasRecords = true;
        error_->setText(tr("The first records are too long to show more of them."));
    } catch (const EPlatformError &error) {
        error_->setText(error.Message());
    }
    error_->setVisible(!error_->text().isEmpty());
    // What is wrong further on is told when it is read.
    ok_->setEnabled(hasRecords);
}

void CsvPreview::ShowNames(const QStringList &names)
{
    for (int column = 0; column < names.size(); ++column) {
        QString name = names[column].trimmed();
        const bool isMissing = name.isEmpty();
        if (isMissing && column == 0 && names.size() > 1)
            name = nameOfRows(names);
        auto *const item = new QTableWidgetItem(name.isEmpty() ? tr("(no name)") : name);
        if (isMissing) {
            QFont slanted = records_->font();
            slanted.setItalic(true);
            item->setFont(slanted);
            item->setToolTip(tr("The header row has no name for this column."));
        }
        records_->setHorizontalHeaderItem(column, item);
    }
}

} // namespace nuvo
