// SPDX-License-Identifier: MIT
// A plugin that only the tests load: it walks through Qt Designer and writes down what was to be seen.
// DesignerTest.cpp reads that and says what it ought to have been.

#include "design/session/Walk.h"
#include "support/Text.h"

#include <QApplication>
#include <QFile>
#include <QJsonDocument>
#include <QTimer>
#include <QtDesigner/QtDesigner>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

#include <cstdio>
#include <cstdlib>

namespace {

class DriverWidget : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;
};

/// Not on the palette; it is there to be given the designer's core.
class Driver : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    QString name() const override { return u(DriverWidget::staticMetaObject.className()); }
    QString group() const override { return {}; }
    QString toolTip() const override { return {}; }
    QString whatsThis() const override { return {}; }
    QString includeFile() const override { return {}; }
    QIcon icon() const override { return {}; }
    bool isContainer() const override { return false; }
    QString domXml() const override { return {}; }
    QWidget *createWidget(QWidget *parent) override { return new DriverWidget(parent); }
    void initialize(QDesignerFormEditorInterface *core) override
    {
        core_ = core;
        QTimer::singleShot(0, this, &Driver::waitForForm);
    }

private:
    void waitForForm()
    {
        const QDesignerFormWindowInterface *form = core_->formWindowManager()->activeFormWindow();
        if (form == nullptr || form->mainContainer() == nullptr || !form->isVisible())
            return QTimer::singleShot(100, this, &Driver::waitForForm);
        if (qEnvironmentVariableIsSet("NUVO_DARK")) { // a dark desktop
            QPalette dark(QColor(0x35, 0x35, 0x35), QColor(0x2b, 0x2b, 0x2b));
            dark.setColor(QPalette::Highlight, QColor(0x2a, 0x82, 0xda));
            QApplication::setPalette(dark);
        }
        QJsonObject seen;
        if (const int rounds = qEnvironmentVariableIntValue("NUVO_RESETS"); rounds > 0) {
            seen = resetRows(*core_, rounds);
        } else if (qEnvironmentVariableIsSet("NUVO_FORM")) {
            seen = lookAtOpenedForm(*core_);
        } else {
            seen = walkThroughDesigner(*core_);
            for (const QJsonObject &more : {walkThroughModels(*core_), walkThroughPage(*core_),
                                            walkThroughRows(*core_), walkThroughLongFits(*core_)}) {
                for (auto one = more.begin(); one != more.end(); ++one)
                    seen.insert(one.key(), one.value());
            }
        }
        QFile file(u("seen.json"));
        if (file.open(QIODevice::WriteOnly))
            file.write(QJsonDocument(seen).toJson());
        file.close();
        // Designer would ask whether to save.
        std::fflush(nullptr);
        std::_Exit(0);
    }

    QDesignerFormEditorInterface *core_ = nullptr;
};

class DriverPlugin : public QObject, public QDesignerCustomWidgetCollectionInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
    Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

public:
    QList<QDesignerCustomWidgetInterface *> customWidgets() const override { return {driver_}; }

private:
    Driver *driver_ = new Driver;
};

} // namespace

#include "Driver.moc"
