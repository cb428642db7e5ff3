// SPDX-License-Identifier: MIT
#include "design/model/Editorparts.h"

#include <QLabel>
#include <QPushButton>

namespace nuvo {

QPushButton *editorButton(QWidget *parent, const char *name, const QString &text, const QString &hint)
{
    auto *made = new QPushButton(text, parent);
    made->setObjectName(QLatin1String(name));
    made->setToolTip(hint);
    made->setAccessibleName(QString(text).remove(u'&'));
    made->setAccessibleDescription(hint);
    made->setAutoDefault(false);
    return made;
}

QLabel *sentenceLabel(QWidget *parent, const char *name)
{
    auto *label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    label->setMinimumHeight(2 * label->fontMetrics().lineSpacing()); // what is above it stays in its place
    return label;
}

} // namespace nuvo
