// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QVBoxLayout;

namespace nuvo {

/// What is there to begin with, as long as nothing is open: open a file, a server, the samples, what was open before,
/// or the guide.
class Welcome : public QWidget
{
    Q_OBJECT

public:
    explicit Welcome(QWidget *parent = nullptr);

    /// Files and servers to offer; more than there is room for are in the menu.
    void SetRecent(const QStringList &names);

Q_SIGNALS:
    void FileWanted();
    void ServerWanted();
    void SamplesWanted();
    void GuideWanted();
    void RecentWanted(const QString &name);

private:
    QVBoxLayout *recent_;
};

} // namespace nuvo
