// SPDX-License-Identifier: MIT
#include <QCoreApplication>
#include <QDesignerCustomWidgetInterface>
#include <QDesignerFormEditorInterface>
#include <QDesignerWidgetBoxInterface>
#include <QIcon>
#include <QTimer>

#include <cstdio>

/// A custom widget that stands on no page of its own.
class Palette : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetInterface")

public:
    QString name() const override { return QStringLiteral("QWidget"); }
    QString group() const override { return {}; }
    QString toolTip() const override { return {}; }
    QString whatsThis() const override { return {}; }
    QString includeFile() const override { return {}; }
    QIcon icon() const override { return {}; }
    QString domXml() const override { return {}; }
    bool isContainer() const override { return false; }
    QWidget *createWidget(QWidget *) override { return nullptr; }

    /// Comes when Qt Designer has read its plugins; the palette is filled by the turn of the loop after the windows'.
    void initialize(QDesignerFormEditorInterface *core) override
    {
        QTimer::singleShot(2000, this, [core] {
            const QDesignerWidgetBoxInterface *box = core->widgetBox();
            for (int i = 0; i < box->categoryCount(); ++i) {
                const auto page = box->category(i);
                for (int j = 0; j < page.widgetCount(); ++j)
                    std::printf("%s: %s\n", qPrintable(page.name()), qPrintable(page.widget(j).name()));
            }
            std::fflush(stdout);
            QCoreApplication::exit();
        });
    }
};

#include "Palette.moc"
