// SPDX-License-Identifier: MIT
#include "design/sql/Trial.h"

#include <chrono>
#include <csignal>
#include <exception>
#include <utility>

namespace nuvo {

namespace {

constexpr std::chrono::milliseconds Patience(200);

TrialAnswer answerOf(FirstRows &reader)
{
    TrialAnswer answer;
    try {
        answer.stopped = !reader.read();
        answer.columns = reader.columns();
        answer.rows = reader.rows();
        answer.more = reader.more();
        answer.nullParameters = reader.nullParameters();
    } catch (const std::exception &error) {
        answer.error = QString::fromUtf8(error.what());
        answer.errorPosition = reader.errorPosition();
    }
    return answer;
}

} // namespace

Trial::Trial(QObject *parent) : QObject(parent)
{
    again_.setInterval(Patience);
    connect(&again_, &QTimer::timeout, this, [this] { reader_->cancel(); });
}

Trial::~Trial()
{
    GiveUp();
}

void Trial::Start(const ScanSource &source, int rows)
{
    GiveUp();
    reader_ = std::make_unique<FirstRows>(source, rows);
    ended_ = false;
    stopped_ = false;
    const int number = ++number_;
    // Signals are the program's business, not this thread's.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    thread_ = std::thread([this, number] {
        answer_ = answerOf(*reader_);
        ended_ = true;
        QMetaObject::invokeMethod(
            this,
            [this, number] {
                if (number == number_ && Running())
                    Finish();
            },
            Qt::QueuedConnection);
    });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

void Trial::Stop()
{
    if (!Running())
        return;
    stopped_ = true;
    reader_->cancel();
    again_.start();
}

void Trial::GiveUp()
{
    if (!Running())
        return;
    again_.stop();
    for (int round = 0; !ended_; ++round) {
        constexpr int rounds = 20;
        if (round % rounds == 0)
            reader_->cancel();
        std::this_thread::sleep_for(Patience / rounds);
    }
    thread_.join();
    reader_.reset();
    answer_.reset();
}

void Trial::Finish()
{
    again_.stop();
    thread_.join();
    reader_.reset();
    TrialAnswer answer = std::move(*answer_);
    answer_.reset();
    answer.stopped = answer.stopped || stopped_;
    Q_EMIT Ended(answer);
}

} // namespace nuvo
