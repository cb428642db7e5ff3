// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>
#include <QString>
#include <QStringList>
#include <QTranslator>

#include <algorithm>
#include <limits>

namespace nuvo {

/// The language that the program speaks while this lives: its own texts, those of the library's widgets and Qt's. The
/// texts of the source are English. Qt's own buttons and dialogs follow where Qt's translations are installed.
class Language
{
public:
    /// \param wanted one of known(), which numbers are then written in as well; empty: the first of the system's
    /// languages that is known, else English
    explicit Language(const QString &wanted = {});
    Language(const Language &) = delete;
    Language &operator=(const Language &) = delete;
    ~Language();

    /// "de", "en".
    const QString &code() const { return code_; }

    /// Languages that there are texts in.
    static const QStringList &known();
    /// The first of some languages, as QLocale::uiLanguages() has them, that is known; "en" when none is.
    static QString firstKnown(const QStringList &languages);

private:
    const QLocale before_;
    QString code_;
    QTranslator qt_;
    QTranslator own_;
};

/// A number of records as tr() takes it for the choice of a plural.
inline int numerus(qint64 count)
{
    return int(std::min<qint64>(count, std::numeric_limits<int>::max()));
}

} // namespace nuvo
