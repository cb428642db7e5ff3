// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QString>

#include <functional>

class QWidget;

enum class TMsgDlgType { mtWarning, mtError, mtInformation, mtConfirmation };

/// Buttons of a message box; combine with |.
enum TMsgDlgButtons : unsigned { mbOK = 1, mbCancel = 2, mbYes = 4, mbNo = 8 };

/// What a message box returns; 0 stands for a box that was not shown.
enum TModalResult : int { mrNone = 0, mrOk = 1, mrCancel = 2, mrYes = 6, mrNo = 7 };

/// Shows a message box and returns the button pressed, as a TModalResult. Every box of the system comes through here.
/// The text keeps its own line ends ("\n\r"); the default handler turns them into lines. On the `offscreen` and
/// `minimal` platforms and without a QApplication, where there is no user to answer, the default handler writes one
/// line (nuvo::messageLine) to standard error and answers with the first button: the lowest bit, OK when none is
/// asked for. The default handler knows no help, so it shows no help button whatever the context; 0 means none.
NUVO_EXPORT int MessageDlg(const QString &text, TMsgDlgType type, unsigned buttons = mbOK, int helpContext = 0);

using TMessageHandler = std::function<int(const QString &text, TMsgDlgType type, unsigned buttons, int helpContext)>;

/// Replaces the handler of MessageDlg and returns the one before; an empty handler restores the default.
/// \pre called on the user-interface thread.
NUVO_EXPORT TMessageHandler SetMessageHandler(TMessageHandler handler);

/// Turns the "\n\r" line ends of our texts into "\n", as Qt's controls and terminals want them. The ends of other
/// systems ("\r\n", "\n", "\r") count as well.
NUVO_EXPORT QString DisplayLines(const QString &text);

namespace nuvo {

/// Control characters turned into blanks: names and texts of the user's own cannot steer a terminal.
NUVO_EXPORT QString withoutControls(QString text);

/// The message as one line without its end, for terminals and logs: "warning: ", "error: ", "information: " or
/// "question: " and the text, whose line breaks become single blanks.
NUVO_EXPORT QString messageLine(const QString &text, TMsgDlgType type);

/// What the default handler does where a user can answer: a modal QMessageBox titled by its kind ("Warning",
/// "Error", "Information", "Question"), the text as plain text, an override cursor (the hourglass) put aside while it
/// is open. Returns the button pressed as a TModalResult.
NUVO_EXPORT int showMessageBox(const QString &text, TMsgDlgType type, unsigned buttons);

/// The window that a new dialog belongs in front of; nullptr when the application has none.
NUVO_EXPORT QWidget *windowInFront();

} // namespace nuvo
