#include "platform/Headerbar.h"

#include <QStandardItemModel>

#include <algorithm>
#include <numeric>
#include <vector>

THeader::THeader(QWidget *parent) : QHeaderView(Qt::Horizontal, parent), model_(new QStandardItemModel(this))
{
    setModel(model_);
    setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    setTextElideMode(Qt::ElideRight);
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

void THeader::LayOut()
{
    if (count() == 0)
        return;
    // Captions that fit get what they need, or what they were given; the longest ones share the rest evenly.
    std::vector<int> byNeed(static_cast<std::size_t>(count()));
    std::iota(byNeed.begin(), byNeed.end(), 0);
    std::stable_sort(byNeed.begin(), byNeed.end(), [this](int a, int b) { return Needed(a) < Needed(b); });
    int spare = std::max(0, width() - NeededWidth());
    int left = width();
    int sections = count();
    for (const int i : byNeed) {
        const int more = std::clamp(widths_.value(i) - Needed(i), 0, spare);
        const int given = std::min(Needed(i) + more, left / sections + more);
        resizeSection(i, std::max(given, minimumSectionSize()));
        spare -= more;
        left -= given;
        --sections;
    }
}
