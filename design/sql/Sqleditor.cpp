// SPDX-License-Identifier: MIT
#include "design/sql/Sqleditor.h"

#include "design/model/Editorparts.h"
#include "design/model/Modelfields.h"
#include "design/sql/Quietcells.h"
#include "design/sql/Sqlhighlighter.h"
#include "design/sql/Tabletree.h"
#include "design/sql/Trial.h"
#include "platform/Errors.h"
#include "platform/Fieldtypes.h"
#include "platform/Messages.h"

#include <QEvent>
#include <QFocusEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QStyle>
#include <QTableWidget>
#include <QTextBlock>
#include <QVBoxLayout>

#include <utility>

namespace {

using nuvo::editorButton;

constexpr int LettersOfACell = 200;

} // namespace

TSqlEditor::TSqlEditor(QWidget *parent)
    : QWidget(parent), trial_(new nuvo::Trial(this)), tables_(new nuvo::TableTree(this)),
      text_(new QPlainTextEdit(this)), highlighter_(new nuvo::SqlHighlighter(*text_->document(), *text_)),
      try_(editorButton(this, "TrySql", tr("&Try"), tr("Shows the first ten rows (F5)"))),
      stop_(editorButton(this, "StopSql", tr("&Stop"), tr("Ends the trial (Escape)"))), sign_(new QLabel(this)),
      state_(new QLabel(this)), rows_(new QTableWidget(this))
{
    setObjectName(QStringLiteral("SqlEditor"));
    MakeControls();

    connect(tables_, &nuvo::TableTree::Chosen, this, [this](const QString &name) {
        text_->insertPlainText(name);
        text_->setFocus();
    });
    connect(text_, &QPlainTextEdit::textChanged, this, [this] {
        ClearError();
        Q_EMIT TextChanged();
    });
    connect(try_, &QPushButton::clicked, this, &TSqlEditor::Try);
    connect(stop_, &QPushButton::clicked, this, &TSqlEditor::Stop);
    connect(new QShortcut(Qt::Key_F5, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut), &QShortcut::activated,
            this, &TSqlEditor::Try);
    connect(trial_, &nuvo::Trial::Ended, this, &TSqlEditor::Show);
    ShowState();
}

TSqlEditor::~TSqlEditor() = default;

void TSqlEditor::MakeControls()
{
    text_->setObjectName(QStringLiteral("SqlText"));
    text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text_->setTabChangesFocus(true);
    text_->setAccessibleName(tr("SQL statement"));
    text_->setToolTip(tr("The statement that is read: SELECT, WITH, VALUES or SHOW"));
    text_->setPlaceholderText(QStringLiteral("SELECT … FROM …"));
    text_->setMinimumHeight(text_->fontMetrics().height() * 4);
    constexpr int lettersSeen = 50;
    text_->setMinimumWidth(text_->fontMetrics().averageCharWidth() * lettersSeen);
    state_->setObjectName(QStringLiteral("SqlState"));
    state_->setTextFormat(Qt::PlainText);
    state_->setWordWrap(true);
    state_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    state_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    state_->setMinimumHeight(2 * state_->fontMetrics().lineSpacing());
    rows_->setObjectName(QStringLiteral("SqlRows"));
    rows_->setAccessibleName(tr("First rows"));
    rows_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    rows_->setItemDelegate(new nuvo::QuietCells(this));
    rows_->setTabKeyNavigation(false);
    rows_->setWordWrap(false);
    rows_->setAlternatingRowColors(true);
    rows_->verticalHeader()->setDefaultSectionSize(rows_->fontMetrics().height() + 6);
    rows_->setMinimumHeight(rows_->fontMetrics().height() * 5);
    rows_->horizontalHeader()->setMaximumSectionSize(rows_->fontMetrics().averageCharWidth() * 40);

    auto *line = new QHBoxLayout;
    line->addWidget(try_);
    line->addWidget(stop_);
    line->addWidget(sign_, 0, Qt::AlignTop);
    line->addWidget(state_, 1);
    auto *below = new QWidget(this);
    auto *belowAll = new QVBoxLayout(below);
    belowAll->setContentsMargins({});
    belowAll->addLayout(line);
    belowAll->addWidget(rows_, 1);
    auto *right = new QSplitter(Qt::Vertical, this);
    right->addWidget(text_);
    right->addWidget(below);
    right->setChildrenCollapsible(false);
    auto *halves = new QSplitter(Qt::Horizontal, this);
    halves->addWidget(tables_);
    halves->addWidget(right);
    halves->setChildrenCollapsible(false);
    halves->setStretchFactor(0, 1);
    halves->setStretchFactor(1, 3);
    auto *all = new QVBoxLayout(this);
    all->setContentsMargins({});
    all->addWidget(halves);
    setTabOrder(text_, try_);
    setTabOrder(try_, stop_);
    setTabOrder(stop_, rows_);
    setTabOrder(rows_, tables_);
}

void TSqlEditor::SetDatabase(const QString &databaseName, const QVariantMap &params)
{
    databaseName_ = databaseName;
    params_ = params;
    tables_->SetDatabase(databaseName);
}

QString TSqlEditor::Text() const
{
    // Qt's plain text has lost the blanks that do not break.
    return text_->document()
        ->toRawText()
        .replace(QChar::ParagraphSeparator, u'\n')
        .replace(QChar::LineSeparator, u'\n');
}

void TSqlEditor::SetText(const QString &text)
{
    text_->setPlainText(text);
    text_->document()->setModified(false);
    rows_->clear();
    rows_->setRowCount(0);
    rows_->setColumnCount(0);
    ShowState();
}

bool TSqlEditor::Changed() const
{
    return text_->document()->isModified();
}

void TSqlEditor::Try()
{
    tried_ = Text();
    ClearError();
    nuvo::ScanSource source;
    source.databaseName = databaseName_;
    source.params = params_;
    source.sql = tried_;
    trial_->Start(source, RowsTried);
    ShowState();
}

bool TSqlEditor::Trying() const
{
    return trial_->Running();
}

void TSqlEditor::Stop()
{
    trial_->Stop();
    ShowState();
    if (Trying())
        state_->setText(tr("Stopping…"));
}

void TSqlEditor::ShowState()
{
    const bool trying = Trying();
    stop_->setEnabled(trying);
    if (trying)
        state_->setText(tr("Reading…"));
    else if (rows_->columnCount() == 0)
        state_->setText(tr("F5 tries the statement and shows its first rows."));
}

void TSqlEditor::Show(const nuvo::TrialAnswer &answer)
{
    if (answer.stopped)
        state_->setText(tr("Stopped."));
    else if (!answer.error.isEmpty())
        ShowError(answer.error, tried_ == Text() ? answer.errorPosition : -1);
    else
        ShowRows(answer);
    stop_->setEnabled(false);
    Q_EMIT Tried();
}

void TSqlEditor::ShowRows(const nuvo::TrialAnswer &answer)
{
    rows_->clear();
    rows_->setColumnCount(int(answer.columns.size()));
    rows_->setRowCount(int(answer.rows.size()));
    int numeric = 0;
    for (int column = 0; column < rows_->columnCount(); ++column) {
        const nuvo::Column &one = answer.columns[std::size_t(column)];
        numeric += nuvo::isNumeric(one.kind) ? 1 : 0;
        auto *title = new QTableWidgetItem(nuvo::withoutControls(one.name) + u'\n' + nuvo::fieldKind(one.kind));
        title->setToolTip(one.declaredType.isEmpty() ? one.name : one.name + u' ' + one.declaredType);
        rows_->setHorizontalHeaderItem(column, title);
        for (int row = 0; row < rows_->rowCount(); ++row) {
            const QVariant value = answer.rows[std::size_t(row)][column];
            const QString text = value.isNull() ? QStringLiteral("null") : nuvo::textFromValue(value);
            auto *cell = new QTableWidgetItem(
                nuvo::withoutControls(text.first(std::min<qsizetype>(text.size(), LettersOfACell))));
            if (value.isNull())
                cell->setData(nuvo::QuietRole, true);
            if (nuvo::isNumeric(one.kind))
                cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            rows_->setItem(row, column, cell);
        }
    }
    rows_->resizeColumnsToContents();
    const int columnCount = rows_->columnCount();
    const int rowCount = rows_->rowCount();
    QString text =
        (answer.more ? tr("%1, %2 of them with numbers; the first %3.") : tr("%1, %2 of them with numbers; %3."))
            .arg(columnCount == 1 ? tr("1 column") : tr("%1 columns").arg(columnCount))
            .arg(numeric)
            .arg(rowCount == 1 ? tr("1 row") : tr("%1 rows").arg(rowCount));
    if (!answer.nullParameters.isEmpty())
        text +=
            u' ' +
            tr("Without a value, and taken as null here: %1.").arg(answer.nullParameters.join(QStringLiteral(", ")));
    state_->setText(text);
}

void TSqlEditor::ShowError(const QString &sentence, qsizetype position)
{
    const int side = state_->fontMetrics().height();
    sign_->setPixmap(
        style()->standardIcon(QStyle::SP_MessageBoxCritical).pixmap(QSize(side, side), devicePixelRatioF()));
    sign_->show();
    state_->setToolTip(nuvo::withoutControls(sentence)); // whole, however small the window is
    if (position < 0) {
        state_->setText(nuvo::withoutControls(sentence));
        return;
    }
    QTextCursor place(text_->document());
    place.setPosition(int(std::min<qsizetype>(position, Text().size())));
    state_->setText(nuvo::withoutControls(sentence) + u' ' +
                    tr("(Line %1, letter %2.)").arg(place.blockNumber() + 1).arg(place.positionInBlock() + 1));
    text_->setTextCursor(place);
    place.movePosition(QTextCursor::EndOfWord, QTextCursor::KeepAnchor);
    if (!place.hasSelection())
        place.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
    QTextEdit::ExtraSelection mark;
    mark.cursor = place;
    mark.format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
    mark.format.setUnderlineColor(QColor(0xe0, 0x30, 0x30));
    mark.format.setFontWeight(QFont::Bold);
    text_->setExtraSelections({mark});
}

void TSqlEditor::ClearError()
{
    text_->setExtraSelections({});
    sign_->clear();
    sign_->hide();
    state_->setToolTip({});
}

bool TSqlEditor::CheckStatement()
{
    try {
        nuvo::readingStatement(Text(), tables_->DatabaseDialect());
        return true;
    } catch (const EPlatformError &error) {
        ShowError(error.Message(), -1);
        return false;
    }
}

void TSqlEditor::changeEvent(QEvent *event)
{
    // Not at once: the text does not have its new colours yet.
    if (event->type() == QEvent::PaletteChange)
        QMetaObject::invokeMethod(highlighter_, &QSyntaxHighlighter::rehighlight, Qt::QueuedConnection);
    QWidget::changeEvent(event);
}

void TSqlEditor::focusInEvent(QFocusEvent *event)
{
    // As a proxy it would be gone back to with Tab, and what is beside the editor never reached.
    text_->setFocus(event->reason());
}
