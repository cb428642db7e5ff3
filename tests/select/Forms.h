// SPDX-License-Identifier: MIT
#pragma once

#include "engine/Mlrquery.h"
#include "engine/Mlrtable.h"
#include "select/Bkmain.h"
#include "select/Cvmain.h"
#include "select/Fwdmain.h"
#include "select/Stepmain.h"

#include <QBuffer>
#include <QUiLoader>

/// A form loaded as a program loads it at run time: a component after the other, each with its properties at once.
class ComponentLoader : public QUiLoader
{
public:
    QWidget *createWidget(const QString &className, QWidget *parent, const QString &name) override
    {
        QWidget *made = nullptr;
        const QByteArray kind = className.toLatin1();
        if (kind == "TTable")
            made = new TTable(parent);
        else if (kind == "TMLRTable")
            made = new TMLRTable(parent);
        else if (kind == "TMLRQuery")
            made = new TMLRQuery(parent);
        else if (kind == "TOptimizeMLR")
            made = new TOptimizeMLR(parent);
        else if (kind == "TStepWiseMLR")
            made = new TStepWiseMLR(parent);
        else if (kind == "TBackElimMLR")
            made = new TBackElimMLR(parent);
        else if (kind == "TFwdSelectMLR")
            made = new TFwdSelectMLR(parent);
        else
            return QUiLoader::createWidget(className, parent, name);
        made->setObjectName(name);
        return made;
    }

    /// A form whose components are given as the XML of their widgets.
    std::unique_ptr<QWidget> form(const QString &widgets)
    {
        QByteArray xml =
            QStringLiteral(
                "<ui version=\"4.0\"><class>Form</class><widget class=\"QWidget\" name=\"Form\">%1</widget>"
                "</ui>")
                .arg(widgets)
                .toUtf8();
        QBuffer buffer(&xml);
        buffer.open(QIODevice::ReadOnly);
        return std::unique_ptr<QWidget>(load(&buffer));
    }

    static QString widget(const char *className, const char *name, const QString &properties = {})
    {
        return QStringLiteral("<widget class=\"%1\" name=\"%2\">%3</widget>")
            .arg(QString::fromLatin1(className), QString::fromLatin1(name), properties);
    }
    static QString stringProperty(const char *name, const char *value)
    {
        return property(name, QStringLiteral("<string notr=\"true\">%1</string>").arg(QString::fromLatin1(value)));
    }
    static QString property(const char *name, const QString &value)
    {
        return QStringLiteral("<property name=\"%1\" stdset=\"0\">%2</property>")
            .arg(QString::fromLatin1(name), value);
    }
};
