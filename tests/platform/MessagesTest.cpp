// SPDX-License-Identifier: MIT
#include "platform/Messages.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <optional>

namespace {

/// What a message box looked like while it was open.
struct Seen
{
    QString title;
    QString text;
    QString shownText;
    Qt::TextFormat format = Qt::AutoText;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    bool modal = false;
    bool hourglass = false;
};

/// Shows a real box, looks at it and presses a button (or closes the box, without one).
int answer(const QString &text, TMsgDlgType type, unsigned buttons, QMessageBox::StandardButton press, Seen &seen)
{
    QTimer::singleShot(0, [&seen, press] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        seen = {box->windowTitle(),
                box->text(),
                box->findChild<QLabel *>(QStringLiteral("qt_msgbox_label"))->text(),
                box->textFormat(),
                box->icon(),
                box->standardButtons(),
                box->isModal(),
                QGuiApplication::overrideCursor() != nullptr};
        if (press == QMessageBox::NoButton)
            box->close();
        else
            box->button(press)->click();
    });
    return nuvo::showMessageBox(text, type, buttons);
}

} // namespace

TEST(DisplayedLines, EveryKindOfLineEndBecomesALine)
{
    const std::pair<const char *, const char *> rows[] = {
        {"a\n\rb", "a\nb"},
        {"a\r\nb", "a\nb"},
        {"a\nb", "a\nb"},
        {"a\rb", "a\nb"},
        {"a\n\r\n\rb", "a\n\nb"},
        {"a\r\n\r\nb", "a\n\nb"},
        {"a\n\nb", "a\n\nb"},
        {"a\r\rb", "a\n\nb"},
        {"\n\ra", "\na"},
        {"a\n\r", "a\n"},
        {"a\r\n\rb", "a\n\nb"},
        {"a\n\r\r\nb", "a\n\nb"},
        {"", ""},
        {"a", "a"},
        {"\r", "\n"},
        {"\n\r", "\n"},
    };
    for (const auto &[text, lines] : rows)
        EXPECT_EQ(DisplayLines(QString::fromLatin1(text)).toStdString(), lines);
}

TEST(MessageLine, IsOneLineWithTheKindInFront)
{
    EXPECT_EQ(nuvo::messageLine(QStringLiteral("The dataset has an invariant\n\rcolumn. Matrix is singular!"),
                                TMsgDlgType::mtError),
              QStringLiteral("error: The dataset has an invariant column. Matrix is singular!"));
    EXPECT_EQ(nuvo::messageLine(QStringLiteral("a\n\r\n\rb\n\r"), TMsgDlgType::mtWarning),
              QStringLiteral("warning: a b"));
    EXPECT_EQ(nuvo::messageLine(QStringLiteral("a  b"), TMsgDlgType::mtInformation),
              QStringLiteral("information: a  b"));
    EXPECT_EQ(nuvo::messageLine(QStringLiteral("größe?"), TMsgDlgType::mtConfirmation),
              QStringLiteral("question: größe?"));
}

TEST(MessageBox, HasTheIconAndTitleOfItsKindAndTheTextInLines)
{
    struct Row
    {
        TMsgDlgType type;
        QMessageBox::Icon icon;
        const char *title;
    };
    for (const Row &row : {Row{TMsgDlgType::mtWarning, QMessageBox::Warning, "Warning"},
                           Row{TMsgDlgType::mtError, QMessageBox::Critical, "Error"},
                           Row{TMsgDlgType::mtInformation, QMessageBox::Information, "Information"},
                           Row{TMsgDlgType::mtConfirmation, QMessageBox::Question, "Question"}}) {
        Seen seen;
        EXPECT_EQ(answer(QStringLiteral("one\n\rtwo"), row.type, mbOK, QMessageBox::Ok, seen), mrOk);
        EXPECT_EQ(seen.icon, row.icon);
        EXPECT_EQ(seen.title, QLatin1String(row.title));
        EXPECT_EQ(seen.text, QStringLiteral("one\ntwo"));
        EXPECT_EQ(seen.buttons, QMessageBox::Ok);
        EXPECT_TRUE(seen.modal);
    }
}

TEST(MessageBox, ShowsMarkUpAsItStands)
{
    Seen seen;
    const QString text = QStringLiteral("No field \"<b>x</b><img src='file:///x'>\" & co.");
    answer(text, TMsgDlgType::mtError, mbOK, QMessageBox::Ok, seen);
    EXPECT_EQ(seen.format, Qt::PlainText);
    EXPECT_EQ(seen.shownText, text);
}

TEST(MessageBox, ReturnsTheButtonPressed)
{
    Seen seen;
    const QString text = QStringLiteral("Remove it?");
    constexpr unsigned All = mbOK | mbCancel | mbYes | mbNo;
    EXPECT_EQ(answer(text, TMsgDlgType::mtConfirmation, All, QMessageBox::Ok, seen), mrOk);
    EXPECT_EQ(seen.buttons, QMessageBox::Ok | QMessageBox::Cancel | QMessageBox::Yes | QMessageBox::No);
    EXPECT_EQ(answer(text, TMsgDlgType::mtConfirmation, All, QMessageBox::Cancel, seen), mrCancel);
    EXPECT_EQ(answer(text, TMsgDlgType::mtConfirmation, All, QMessageBox::Yes, seen), mrYes);
    EXPECT_EQ(answer(text, TMsgDlgType::mtConfirmation, All, QMessageBox::No, seen), mrNo);
}

TEST(MessageBox, ClosingItAnswersWithTheButtonThatRefuses)
{
    Seen seen;
    const QString text = QStringLiteral("Go on?");
    EXPECT_EQ(answer(text, TMsgDlgType::mtConfirmation, mbYes | mbNo, QMessageBox::NoButton, seen), mrNo);
    EXPECT_EQ(answer(text, TMsgDlgType::mtConfirmation, mbOK | mbCancel, QMessageBox::NoButton, seen), mrCancel);
    EXPECT_EQ(answer(text, TMsgDlgType::mtError, mbOK, QMessageBox::NoButton, seen), mrOk);
    EXPECT_EQ(answer(text, TMsgDlgType::mtError, 0, QMessageBox::NoButton, seen), mrOk);
    EXPECT_EQ(seen.buttons, QMessageBox::Ok);
}

TEST(MessageBox, TakesTheHourglassAwayWhileItIsOpen)
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    QGuiApplication::setOverrideCursor(Qt::BusyCursor);
    Seen seen;
    seen.hourglass = true;
    answer(QStringLiteral("x"), TMsgDlgType::mtInformation, mbOK, QMessageBox::Ok, seen);
    EXPECT_FALSE(seen.hourglass);
    ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::BusyCursor);
    QGuiApplication::restoreOverrideCursor();
    ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
    QGuiApplication::restoreOverrideCursor();
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST(MessageBox, SurvivesTheWindowItStandsInFrontOf)
{
    auto *window = new QWidget;
    window->show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    ASSERT_EQ(nuvo::windowInFront(), window);
    QTimer::singleShot(0, [window] { delete window; });
    EXPECT_EQ(nuvo::showMessageBox(QStringLiteral("x"), TMsgDlgType::mtError, mbOK), mrNone);
}

TEST(Messages, WhereNobodyCanAnswerALineGoesToStandardErrorAndTheFirstButtonIsTheAnswer)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(MessageDlg(QStringLiteral("Größe:\n\r\n\rtoo large"), TMsgDlgType::mtWarning, mbNo | mbYes), mrYes);
    EXPECT_EQ(MessageDlg(QStringLiteral("done"), TMsgDlgType::mtInformation), mrOk);
    EXPECT_EQ(MessageDlg(QStringLiteral("sure?"), TMsgDlgType::mtConfirmation, mbCancel | mbNo, 17), mrCancel);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "warning: Größe: too large\ninformation: done\nquestion: sure?\n");
}

TEST(Messages, AHandlerSeesEveryMessageAsItWasGiven)
{
    struct Call
    {
        QString text;
        TMsgDlgType type;
        unsigned buttons;
        int helpContext;
    };
    std::optional<Call> call;
    TMessageHandler before =
        SetMessageHandler([&call](const QString &text, TMsgDlgType type, unsigned buttons, int help) {
            call = Call{text, type, buttons, help};
            return int(mrNo);
        });
    EXPECT_FALSE(before) << "the default handler is told by an empty one";
    EXPECT_EQ(MessageDlg(QStringLiteral("a\n\rb"), TMsgDlgType::mtConfirmation, mbYes | mbNo, 5), mrNo);
    ASSERT_TRUE(call.has_value());
    EXPECT_EQ(call->text, QStringLiteral("a\n\rb"));
    EXPECT_EQ(call->type, TMsgDlgType::mtConfirmation);
    EXPECT_EQ(call->buttons, unsigned(mbYes | mbNo));
    EXPECT_EQ(call->helpContext, 5);
    EXPECT_TRUE(SetMessageHandler(std::move(before)));

    call.reset();
    testing::internal::CaptureStderr();
    MessageDlg(QStringLiteral("x"), TMsgDlgType::mtError);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "error: x\n");
    EXPECT_FALSE(call.has_value());
}

TEST(Messages, AHandlerMayReplaceItselfWhileItRuns)
{
    SetMessageHandler([](const QString &text, TMsgDlgType, unsigned, int) {
        SetMessageHandler([](const QString &, TMsgDlgType, unsigned, int) { return int(mrCancel); });
        return text.isEmpty() ? int(mrNone) : int(mrYes);
    });
    EXPECT_EQ(MessageDlg(QStringLiteral("x"), TMsgDlgType::mtError), mrYes);
    EXPECT_EQ(MessageDlg(QStringLiteral("x"), TMsgDlgType::mtError), mrCancel);
    SetMessageHandler({});
}
