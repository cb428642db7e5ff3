#pragma once

#include "platform/Export.h"

#include <QString>

#include <functional>

enum class TMsgDlgType { mtWarning, mtError, mtInformation, mtConfirmation };

/// Buttons of a message box; combine with |.
enum TMsgDlgButtons : unsigned { mbOK = 1, mbCancel = 2, mbYes = 4, mbNo = 8 };

/// What a message box returns; 0 stands for a box that was not shown.
enum TModalResult : int { mrNone = 0, mrOk = 1, mrCancel = 2, mrYes = 6, mrNo = 7 };

/// Shows a message box and returns the button pressed, as a TModalResult. Every box of the system comes through here.
/// The text keeps its own line ends ("\n\r"); the default handler turns them into lines. On the `offscreen` and
/// `minimal` platforms, where nobody could answer, the default handler writes one line to standard error and
/// answers with the first button.
NUVO_EXPORT int MessageDlg(const QString &text, TMsgDlgType type, unsigned buttons = mbOK, int helpContext = 0);

using TMessageHandler = std::function<int(const QString &text, TMsgDlgType type, unsigned buttons, int helpContext)>;

/// Replaces the handler of MessageDlg and returns the one before; an empty handler restores the default.
/// \pre called on the user-interface thread.
NUVO_EXPORT TMessageHandler SetMessageHandler(TMessageHandler handler);

/// Turns the "\n\r" line ends of our texts into "\n", as Qt's controls and terminals want them.
NUVO_EXPORT QString DisplayLines(const QString &text);
