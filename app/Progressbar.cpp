// SPDX-License-Identifier: MIT
#include "app/Progressbar.h"

#include "app/Console.h"

#include <algorithm>

namespace nuvo {

ProgressBar::ProgressBar() : shown_(errorIsTerminal()) {}

ProgressBar::~ProgressBar()
{
    if (drawn_ >= 0)
        writeErrorText(QStringLiteral("\r\033[K"));
}

void ProgressBar::draw(int percent, const QString &text)
{
    if (!shown_)
        return;
    constexpr int cells = 40;
    const int full = std::clamp(percent, 0, 100) * cells / 100;
    writeErrorText(QStringLiteral("\r[%1%2] %3 %  %4\033[K")
                       .arg(QString(full, u'#'), QString(cells - full, u'.'))
                       .arg(percent, 3)
                       .arg(text));
    drawn_ = percent;
}

void ProgressBar::update(int percent, const QString &text)
{
    if (percent != drawn_)
        draw(percent, text);
}

} // namespace nuvo
