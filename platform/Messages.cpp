// SPDX-License-Identifier: MIT
#include "platform/Messages.h"

#include "platform/Modal.h"

#include <QApplication>
#include <QCursor>
#include <QMessageBox>
#include <QPointer>

#include <array>
#include <cstdio>
#include <utility>

namespace {

struct Button
{
    unsigned bit;
    QMessageBox::StandardButton standard;
    int result;
};

constexpr std::array<Button, 4> Buttons{{{mbOK, QMessageBox::Ok, mrOk},
                                         {mbCancel, QMessageBox::Cancel, mrCancel},
                                         {mbYes, QMessageBox::Yes, mrYes},
                                         {mbNo, QMessageBox::No, mrNo}}};

struct Kind
{
    QMessageBox::Icon icon;
    const char *title;
};

const Kind &kindOf(TMsgDlgType type)
{
    static constexpr Kind Warning{QMessageBox::Warning, "Warning"};
    static constexpr Kind Error{QMessageBox::Critical, "Error"};
    static constexpr Kind Information{QMessageBox::Information, "Information"};
    static constexpr Kind Question{QMessageBox::Question, "Question"};
    switch (type) {
    case TMsgDlgType::mtWarning:
        return Warning;
    case TMsgDlgType::mtError:
        return Error;
    case TMsgDlgType::mtInformation:
        return Information;
    case TMsgDlgType::mtConfirmation:
        break;
    }
    return Question;
}

/// Takes the override cursors off for as long as it lives: an hourglass over a box that waits for an answer misleads.
class PlainCursor
{
public:
    PlainCursor()
    {
        while (const QCursor *cursor = QGuiApplication::overrideCursor()) {
            put_aside_.append(*cursor);
            QGuiApplication::restoreOverrideCursor();
        }
    }
    ~PlainCursor()
    {
        while (!put_aside_.isEmpty())
            QGuiApplication::setOverrideCursor(put_aside_.takeLast());
    }
    PlainCursor(const PlainCursor &) = delete;
    PlainCursor &operator=(const PlainCursor &) = delete;

private:
    QList<QCursor> put_aside_;
};

int firstButton(unsigned buttons)
{
    for (const Button &button : Buttons) {
        if (buttons & button.bit)
            return button.result;
    }
    return mrOk;
}

int defaultHandler(const QString &text, TMsgDlgType type, unsigned buttons)
{
    if (nuvo::somebodyCanAnswer())
        return nuvo::showMessageBox(text, type, buttons);
    const QByteArray line = nuvo::messageLine(text, type).toUtf8() + '\n';
    std::fwrite(line.constData(), 1, std::size_t(line.size()), stderr);
    return firstButton(buttons);
}

TMessageHandler &currentHandler()
{
    static TMessageHandler handler;
    return handler;
}

} // namespace

int MessageDlg(const QString &text, TMsgDlgType type, unsigned buttons, int helpContext)
{
    // A copy: the handler may be replaced while it runs.
    if (const TMessageHandler handler = currentHandler())
        return handler(text, type, buttons, helpContext);
    return defaultHandler(text, type, buttons);
}

TMessageHandler SetMessageHandler(TMessageHandler handler)
{
    return std::exchange(currentHandler(), std::move(handler));
}

QString DisplayLines(const QString &text)
{
    QString lines;
    lines.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c != u'\n' && c != u'\r') {
            lines += c;
            continue;
        }
        lines += u'\n';
        const QChar partner = c == u'\n' ? u'\r' : u'\n';
        if (i + 1 < text.size() && text[i + 1] == partner)
            ++i;
    }
    return lines;
}

namespace nuvo {

QString withoutControls(QString text)
{
    for (QChar &c : text) {
        if (c.category() == QChar::Other_Control)
            c = u' ';
    }
    return text;
}

QString messageLine(const QString &text, TMsgDlgType type)
{
    return QString::fromLatin1(kindOf(type).title).toLower() + QLatin1String(": ") +
           DisplayLines(text).split(u'\n', Qt::SkipEmptyParts).join(u' ');
}

int showMessageBox(const QString &text, TMsgDlgType type, unsigned buttons)
{
    const Kind &kind = kindOf(type);
    QMessageBox::StandardButtons standard;
    for (const Button &button : Buttons)
        standard.setFlag(button.standard, (buttons & button.bit) != 0);
    if (standard == QMessageBox::NoButton)
        standard = QMessageBox::Ok;

    // The window that it belongs to can go away while it is open, and takes the box along.
    const QPointer<QMessageBox> box =
        new QMessageBox(kind.icon, QLatin1String(kind.title), QString(), standard, windowInFront());
    // Before the text: a field's name can look like mark-up.
    box->setTextFormat(Qt::PlainText);
    box->setText(DisplayLines(text));

    const PlainCursor plainCursor;
    const int pressed = box->exec();
    delete box;
    for (const Button &button : Buttons) {
        if (pressed == button.standard)
            return button.result;
    }
    return mrNone;
}

QWidget *windowInFront()
{
    QWidget *modal = QApplication::activeModalWidget();
    return modal != nullptr ? modal : QApplication::activeWindow();
}

} // namespace nuvo
