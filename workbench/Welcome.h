#pragma once

#include <QWidget>

class QVBoxLayout;

namespace nuvo {

/// What is there to begin with, as long as nothing is open: open a file, a server, the samples, or what was open
/// before.
class Welcome : public QWidget
{
    Q_OBJECT

public:
    explicit Welcome(QWidget *parent = nullptr);

    /// Files and servers to offer.
    void SetRecent(const QStringList &names);

Q_SIGNALS:
    void FileWanted();
    void ServerWanted();
    void SamplesWanted();
    void RecentWanted(const QString &name);

private:
    QVBoxLayout *recent_;
};

} // namespace nuvo
