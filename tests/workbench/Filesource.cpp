// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QDrag>
#include <QFileInfo>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>

/// A file to drag away, as in a window of a file manager: filesource FILE X Y
class FileSource : public QLabel
{
public:
    explicit FileSource(const QString &file) : file_(file)
    {
        setText(QStringLiteral("<center><big>🗎</big><br>%1</center>").arg(QFileInfo(file).fileName()));
        setAlignment(Qt::AlignCenter);
        setObjectName(QStringLiteral("FileSource"));
    }

protected:
    void mouseMoveEvent(QMouseEvent *) override
    {
        auto *const content = new QMimeData;
        content->setUrls({QUrl::fromLocalFile(file_)});
        auto *const drag = new QDrag(this);
        drag->setMimeData(content);
        drag->exec(Qt::CopyAction);
    }

private:
    const QString file_;
};

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 4)
        return 2;
    FileSource source(QFileInfo(arguments[1]).absoluteFilePath());
    source.setGeometry(arguments[2].toInt(), arguments[3].toInt(), 140, 90);
    source.show();
    return QApplication::exec();
}
