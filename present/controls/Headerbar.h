// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Export.h"

#include <QHeaderView>

class QStandardItemModel;

/// A bar of captioned sections side by side; the last one takes what is left. A section is at least
/// as wide as its caption while there is room; then the longest captions end in an ellipsis and are whole in the
/// tooltip.
class NUVO_EXPORT THeader : public QHeaderView
{
    Q_OBJECT

public:
    explicit THeader(QWidget *parent = nullptr);

    /// The captions.
    QStringList Sections() const;
    /// Replaces the sections; the widths are those to have where there is room.
    void SetSections(const QStringList &captions, const QList<int> &widths = {});
    /// Pixels that all captions need side by side.
    int NeededWidth() const;
    /// The height in which all captions have room when the bar is that wide.
    int NeededHeight(int width) const;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    QList<int> WidthsIn(int width) const;
    QSize Broken(int section, int width, int flags) const;
    int BreakingIn(const QList<int> &widths) const;
    void LayOut();
    int Needed(int section) const;

    QStandardItemModel *model_;
    QList<int> widths_;
};
