// SPDX-License-Identifier: MIT
#include "workbench/Language.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace nuvo {

Language::Language(const QString &wanted)
    : code_(wanted.isEmpty() ? firstKnown(QLocale::system().uiLanguages()) : wanted)
{
    if (!wanted.isEmpty() && before_.language() != QLocale(wanted).language())
        QLocale::setDefault(QLocale(wanted));
    if (qt_.load(QStringLiteral("qtbase_") + code_, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&qt_);
    // English has a file for its plurals.
    if (own_.load(QStringLiteral(":/translations/nuvo_%1.qm").arg(code_)))
        QCoreApplication::installTranslator(&own_);
}

Language::~Language()
{
    QCoreApplication::removeTranslator(&own_);
    QCoreApplication::removeTranslator(&qt_);
    QLocale::setDefault(before_);
}

const QStringList &Language::known()
{
    static const QStringList languages{QStringLiteral("en"), QStringLiteral("de")};
    return languages;
}

QString Language::firstKnown(const QStringList &languages)
{
    for (const QString &language : languages) {
        const QString code = QString(language).replace(u'_', u'-').section(u'-', 0, 0);
        if (known().contains(code))
            return code;
    }
    return known().front();
}

} // namespace nuvo
