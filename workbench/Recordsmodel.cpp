// SPDX-License-Identifier: MIT
#include "workbench/Recordsmodel.h"

#include "platform/Errors.h"
#include "workbench/Background.h"
#include "workbench/Waiting.h"

#include <QLocale>
#include <QPointer>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <limits>
#include <mutex>
#include <utility>

namespace nuvo {

namespace {

constexpr int kPage = 256;     // records
constexpr int kPagesKept = 64; //
constexpr int kRowsAtOnce = 200000;
constexpr size_t kMostAsked = 8;                  // pages; who scrolls by has gone on
constexpr qsizetype kMostCharacters = 50'000'000; // of rows that are copied

/// Numbers have the decimal sign that they have on the other pages, other texts stay as they are.
QString shown(const QString &text)
{
    bool isNumber = false;
    if (text.contains(u'.'))
        text.toDouble(&isNumber);
    return isNumber ? QString(text).replace(u'.', QLocale().decimalPoint()) : text;
}

} // namespace

/// Reads what the model asks for, in a thread or at once. The thread may outlive the model: it ends when a database
/// that does not answer lets it go.
class RecordsModel::Reader : public std::enable_shared_from_this<Reader>
{
public:
    Reader(RecordsModel &model, const ScanSource &table, bool atOnce) : model_(&model), atOnce_(atOnce), table_(table)
    {
    }

    void start()
    {
        if (atOnce_)
            guarded([this] { begin(); }, false);
        else
            inBackground([self = shared_from_this()] { self->run(); });
    }
    void ask(qint64 page, int order)
    {
        if (atOnce_) {
            guarded([&] { read(page, order); });
            return;
        }
        {
            const std::lock_guard lock(mutex_);
            if (std::find(asked_.begin(), asked_.end(), page) != asked_.end())
                return;
            asked_.push_front(page);
            if (asked_.size() > kMostAsked)
                asked_.pop_back();
        }
        changed_.notify_all();
    }
    void sort(int column, bool descending, int order)
    {
        {
            const std::lock_guard lock(mutex_);
            wantedSort_ = {column, descending, order};
            asked_.clear();
        }
        if (atOnce_)
            guarded([this] { sortNow(); });
        changed_.notify_all();
    }
    /// Reads rows on behalf of another thread, or at once; before a task is ended, and between two pages.
    Records rows(const std::vector<std::pair<int, int>> &ranges, Task &task)
    {
        const auto copy = std::make_shared<Copy>(Copy{ranges});
        if (atOnce_) {
            while (readFor(*copy)) {
            }
            return std::move(copy->rows);
        }
        std::unique_lock lock(mutex_);
        copy_ = copy;
        changed_.notify_all();
        while (!copy->isDone && !ended_ && !over_ && !task.IsStopped()) {
            changed_.wait_for(lock, std::chrono::milliseconds(50));
            task.records = copy->read;
        }
        if (copy_ == copy)
            copy_.reset();
        if (copy->error)
            std::rethrow_exception(copy->error);
        if (!copy->isDone && !task.IsStopped())
            throw EPlatformError(RecordsModel::tr("The records are not shown any more."));
        return copy->isDone ? std::move(copy->rows) : Records();
    }
    void end()
    {
        {
            const std::lock_guard lock(mutex_);
            ended_ = true;
            if (pages_)
                pages_->cancel();
        }
        changed_.notify_all();
        if (atOnce_)
            pages_.reset();
    }

private:
    struct Sort
    {
        int column;
        bool descending;
        int order;
    };
    /// Rows that somebody waits for. The rest is for who reads, but `read`, `isDone` and `error`, which the lock
    /// guards.
    struct Copy
    {
        const std::vector<std::pair<int, int>> ranges;
        Records rows = {};
        size_t range = 0; ///< that is read next,
        int from = 0;     ///< after so many of its rows
        qsizetype characters = 0;
        qint64 read = 0;
        bool isDone = false;
        std::exception_ptr error = {};
    };

    /// \param later whether an error is told when a view's question is answered
    template <class Task>
    void guarded(const Task &work, bool later = true)
    {
        try {
            work();
        } catch (const std::exception &error) {
            say([why = QString::fromUtf8(error.what())](RecordsModel &model) { model.Fail(why); }, later);
        }
    }
    void say(std::function<void(RecordsModel &)> what, bool later = false)
    {
        if (atOnce_ && !later) {
            what(*model_);
            return;
        }
        sayLater([self = shared_from_this(), what = std::move(what)] {
            if (self->model_ && self->model_->reader_ == self)
                what(*self->model_);
        });
    }
    void begin()
    {
        if (atOnce_)
            pages_.emplace(table_);
        pages_->open();
        Records first = pages_->rows(0, kPage);
        const bool all = first.size() < size_t(kPage);
        const qint64 known = qint64(first.size());
        say([fields = pages_->fields(), first = std::move(first)](RecordsModel &model) {
            model.ShowFields(fields, first);
        });
        const qint64 count = all ? known : pages_->count();
        say([count](RecordsModel &model) { model.ShowCount(count); });
    }
    void read(qint64 page, int order)
    {
        Records rows = pages_->rows(page * kPage, kPage);
        say([page, order, rows = std::move(rows)](RecordsModel &model) {
            if (order == model.order_)
                model.ShowPage(page, rows);
        });
    }
    /// The next page of a copy; false where there is none.
    bool readFor(Copy &copy)
    {
        if (copy.range == copy.ranges.size())
            return false;
        const auto &[first, last] = copy.ranges[copy.range];
        const int most = std::min(kPage, last - first + 1 - copy.from);
        Records rows = pages_->rows(first + copy.from, most, kMostCharacters);
        for (QStringList &row : rows) {
            for (const QString &cell : row)
                copy.characters += cell.size();
            copy.rows.push_back(std::move(row));
        }
        if (copy.characters > kMostCharacters)
            throw EPlatformError(RecordsModel::tr("The texts of these records are too long to copy, more than %1 "
                                                  "characters: select fewer of them.")
                                     .arg(QLocale().toString(kMostCharacters)));
        copy.from += most;
        if (first + copy.from > last || rows.size() < size_t(most)) {
            ++copy.range;
            copy.from = 0;
        }
        return true;
    }
    /// Whoever waits for it may have given up meanwhile. \pre the lock is held
    void readCopy(std::unique_lock<std::mutex> &lock)
    {
        const std::shared_ptr<Copy> copy = copy_;
        lock.unlock();
        bool more = false;
        std::exception_ptr error;
        try {
            more = readFor(*copy);
        } catch (...) {
            error = std::current_exception();
        }
        lock.lock();
        copy->read = qint64(copy->rows.size());
        copy->error = error;
        copy->isDone = !more;
        if (copy->isDone && copy_ == copy)
            copy_.reset();
        changed_.notify_all();
    }
    void sortNow()
    {
        std::optional<Sort> sort;
        {
            const std::lock_guard lock(mutex_);
            sort = std::exchange(wantedSort_, std::nullopt);
        }
        order_ = sort->order;
        pages_->sort(sort->column, sort->descending);
        say([order = order_](RecordsModel &model) {
            if (order == model.order_ && model.rows_ > 0)
                Q_EMIT model.dataChanged(model.index(0, 0), model.index(model.rows_ - 1, model.columnCount() - 1));
        });
    }
    void run()
    {
        guarded([this] {
            {
                const std::lock_guard lock(mutex_);
                if (ended_)
                    return;
                pages_.emplace(table_);
            }
            begin();
            for (;;) {
                std::unique_lock lock(mutex_);
                changed_.wait(lock, [this] { return ended_ || wantedSort_ || !asked_.empty() || copy_; });
                if (ended_)
                    return;
                if (wantedSort_) {
                    lock.unlock();
                    sortNow();
                    continue;
                }
                if (asked_.empty()) {
                    readCopy(lock);
                    continue;
                }
                const qint64 page = asked_.front();
                lock.unlock();
                read(page, order_);
                lock.lock();
                std::erase(asked_, page);
            }
        });
        const std::lock_guard lock(mutex_);
        over_ = true;
        pages_.reset(); // in the thread that its connection belongs to
    }

    const QPointer<RecordsModel> model_;
    const bool atOnce_;
    const ScanSource table_;
    std::optional<RecordPages> pages_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<qint64> asked_;
    std::optional<Sort> wantedSort_;
    int order_ = 0;
    std::shared_ptr<Copy> copy_;
    bool ended_ = false;
    bool over_ = false; ///< the thread does nothing more, perhaps after an error
};

RecordsModel::RecordsModel(QObject *parent) : QAbstractTableModel(parent), pages_(kPagesKept) {}

RecordsModel::~RecordsModel()
{
    if (reader_)
        reader_->end();
}

void RecordsModel::SetSource(const std::optional<ScanSource> &table, bool atOnce)
{
    if (reader_)
        std::exchange(reader_, nullptr)->end();
    beginResetModel();
    fields_.clear();
    pages_.clear();
    rows_ = 0;
    counted_ = false;
    sortedBy_ = -1;
    ++order_;
    endResetModel();
    if (!table)
        return;
    atOnce_ = atOnce;
    reader_ = std::make_shared<Reader>(*this, *table, atOnce);
    order_ = 0;
    reader_->start();
}

void RecordsModel::SortBy(int column, Qt::SortOrder order)
{
    if (!reader_)
        return;
    sortedBy_ = column;
    pages_.clear();
    reader_->sort(column, order == Qt::DescendingOrder, ++order_);
    if (rows_ > 0)
        Q_EMIT dataChanged(index(0, 0), index(rows_ - 1, columnCount() - 1));
}

std::optional<Page::Table> RecordsModel::Rows(const std::vector<std::pair<int, int>> &ranges, QWidget &window) const
{
    Page::Table table;
    for (const RecordPages::Field &field : fields_)
        table.columns.append({field.name, field.numeric});
    if (!reader_)
        return table;
    const auto rows = std::make_shared<Records>();
    const auto read = [reader = reader_, ranges, rows](Task &task) { *rows = reader->rows(ranges, task); };
    if (atOnce_) {
        Task task;
        read(task);
    } else if (!waitFor(&window, tr("Copy records"), tr("Reading the records…"), read)) {
        return std::nullopt;
    }
    for (QStringList &row : *rows) {
        for (qsizetype i = 0; i < row.size(); ++i) {
            if (table.columns[i].figures)
                row[i] = shown(row[i]);
        }
        table.rows.append(std::move(row));
    }
    return table;
}

int RecordsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : rows_;
}

int RecordsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(fields_.size());
}

QVariant RecordsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rows_ || index.column() >= columnCount())
        return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant(Qt::AlignVCenter |
                        (fields_[size_t(index.column())].numeric ? Qt::AlignRight : Qt::AlignLeft));
    if (role != Qt::DisplayRole)
        return {};
    const qint64 number = index.row() / kPage;
    const Records *page = pages_.object(number);
    if (page == nullptr) {
        asking_ = true;
        reader_->ask(number, order_);
        asking_ = false;
        page = pages_.object(number);
    }
    if (page == nullptr)
        return QString(QChar(0x2026));
    const size_t row = size_t(index.row() % kPage);
    const QString text = row < page->size() ? (*page)[row].value(index.column()) : QString();
    return fields_[size_t(index.column())].numeric ? shown(text) : text;
}

QVariant RecordsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && section >= 0 && section < columnCount()) {
        if (role == Qt::DisplayRole)
            return fields_[size_t(section)].name;
        if (role == Qt::TextAlignmentRole)
            return QVariant(Qt::AlignVCenter | (fields_[size_t(section)].numeric ? Qt::AlignRight : Qt::AlignLeft));
    }
    return QAbstractTableModel::headerData(section, orientation, role);
}

void RecordsModel::ShowFields(std::vector<RecordPages::Field> fields, Records first)
{
    beginResetModel();
    fields_ = std::move(fields);
    rows_ = int(first.size());
    pages_.insert(0, new Records(std::move(first)));
    endResetModel();
}

void RecordsModel::ShowCount(qint64 count)
{
    toShow_ = int(std::min<qint64>(count, std::numeric_limits<int>::max() - 1));
    Grow();
}

/// A view takes some time for a million rows, so it is given them one after the other.
void RecordsModel::Grow()
{
    const int rows = std::min(toShow_, rows_ + kRowsAtOnce);
    if (rows > rows_) {
        beginInsertRows({}, rows_, rows - 1);
        rows_ = rows;
        endInsertRows();
    }
    if (rows_ < toShow_) {
        sayLater([self = QPointer(this), reader = reader_] {
            if (self && self->reader_ == reader)
                self->Grow();
        });
        return;
    }
    counted_ = true;
    Q_EMIT Counted();
}

void RecordsModel::ShowPage(qint64 page, Records rows)
{
    const int first = int(page * kPage);
    const int last = std::min(first + kPage, rows_) - 1;
    pages_.insert(page, new Records(std::move(rows)));
    if (first <= last && !asking_)
        Q_EMIT dataChanged(index(first, 0), index(last, columnCount() - 1));
}

void RecordsModel::Fail(const QString &why)
{
    Q_EMIT Failed(why);
}

} // namespace nuvo
