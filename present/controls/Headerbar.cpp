// SPDX-License-Identifier: MIT
#include "present/controls/Headerbar.h"

#include <QStandardItemModel>

#include <algorithm>
#include <numeric>

THeader::THeader(QWidget *parent) : QHeaderView(Qt::Horizontal, parent), model_(new QStandardItemModel(this))
{
    setModel(model_);
    setTextElideMode(Qt::ElideNone);
    setStretchLastSection(true);
    setSectionsClickable(false);
    setFocusPolicy(Qt::NoFocus);
}

QStringList THeader::Sections() const
{
    QStringList captions;
    for (int i = 0; i < count(); ++i)
        captions += model_->headerData(i, Qt::Horizontal).toString();
    return captions;
}

void THeader::SetSections(const QStringList &captions, const QList<int> &widths)
{
    model_->clear();
    model_->setColumnCount(int(captions.size()));
    for (int i = 0; i < captions.size(); ++i) {
        model_->setHeaderData(i, Qt::Horizontal, captions[i]);
        model_->setHeaderData(i, Qt::Horizontal, captions[i], Qt::ToolTipRole);
    }
    widths_ = widths;
    setAccessibleName(captions.join(QLatin1String("; ")));
    LayOut();
}

int THeader::Needed(int section) const
{
    return sectionSizeFromContents(section).width();
}

int THeader::NeededWidth() const
{
    int needed = 0;
    for (int i = 0; i < count(); ++i)
        needed += Needed(i);
    return needed;
}

void THeader::resizeEvent(QResizeEvent *event)
{
    QHeaderView::resizeEvent(event);
    LayOut();
}

QSize THeader::Broken(int section, int width, int flags) const
{
    const QString caption = model_->headerData(section, Qt::Horizontal).toString();
    const QSize oneLine = sectionSizeFromContents(section);
    const QSize margins = oneLine - fontMetrics().size(0, caption);
    const int room = std::max(1, width - margins.width());
    return fontMetrics().boundingRect(QRect(0, 0, room, 10000), flags, caption).size() + margins;
}

int THeader::BreakingIn(const QList<int> &widths) const
{
    for (int i = 0; i < count(); ++i) {
        // A word that is wider than its section has to be broken itself.
        if (Broken(i, widths[i], Qt::TextWordWrap).width() > widths[i])
            return Qt::TextWrapAnywhere;
    }
    return Qt::TextWordWrap;
}

int THeader::NeededHeight(int width) const
{
    const QList<int> widths = WidthsIn(width);
    const int breaking = BreakingIn(widths);
    int height = 0;
    for (int i = 0; i < count(); ++i)
        height = std::max(height, Broken(i, widths[i], breaking).height());
    return height;
}

QList<int> THeader::WidthsIn(int width) const
{
    // Captions that fit get what they need, or what they were given; the longest ones share the rest evenly.
    QList<int> byNeed(count());
    std::iota(byNeed.begin(), byNeed.end(), 0);
    std::stable_sort(byNeed.begin(), byNeed.end(), [this](int a, int b) { return Needed(a) < Needed(b); });
    QList<int> widths(count());
    int spare = std::max(0, width - NeededWidth());
    int left = width;
    int sections = count();
    for (const int i : byNeed) {
        const int more = std::clamp(widths_.value(i) - Needed(i), 0, spare);
        widths[i] = std::max(minimumSectionSize(), std::min(Needed(i), left / sections) + more);
        spare -= more;
        left -= widths[i];
        --sections;
    }
    return widths;
}

void THeader::LayOut()
{
    const QList<int> widths = WidthsIn(width());
    for (int i = 0; i < count(); ++i)
        resizeSection(i, widths[i]);
    setDefaultAlignment(Qt::Alignment::fromInt(Qt::AlignLeft | Qt::AlignVCenter | BreakingIn(widths)));
}
