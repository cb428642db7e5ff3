// SPDX-License-Identifier: MIT
#pragma once

class QLabel;
class QPushButton;
class QString;
class QWidget;

namespace nuvo {

// What the editors of a model and of a statement are made of alike.

/// A button with a hint that is shown and can be read aloud; Enter does not press it.
/// \param text with '&' before the letter for Alt
QPushButton *editorButton(QWidget *parent, const char *name, const QString &text, const QString &hint);

/// A sentence that takes as many lines as it needs.
QLabel *sentenceLabel(QWidget *parent, const char *name);

} // namespace nuvo
