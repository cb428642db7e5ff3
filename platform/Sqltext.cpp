// SPDX-License-Identifier: MIT
#include "platform/Sqltext.h"

#include "platform/Errors.h"

#include <algorithm>

namespace nuvo {

namespace {

bool startsWord(QChar c)
{
    return c.isLetterOrNumber() || c == u'_' || c.isSurrogate();
}

bool continuesWord(QChar c)
{
    return startsWord(c) || c == u'$' || c == u'.' || c.isMark();
}

class Scanner
{
public:
    Scanner(QStringView text, Dialect dialect) : text_(text), dialect_(dialect) {}

    bool atEnd() const { return at_ >= text_.size(); }

    SqlPiece next()
    {
        SqlPiece piece;
        piece.begin = at_;
        piece.kind = step();
        piece.end = at_;
        return piece;
    }

private:
    QChar peek(qsizetype ahead = 0) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : QChar(); }

    SqlPiece::Kind step()
    {
        const QChar c = peek();
        if (c.isSpace()) {
            while (peek().isSpace())
                ++at_;
            return SqlPiece::Blank;
        }
        const bool mysql = dialect_ == Dialect::Mysql;
        if ((mysql && c == u'#') ||
            (c == u'-' && peek(1) == u'-' && (!mysql || peek(2).isSpace() || peek(2).isNull())))
            return lineComment();
        if (c == u'/' && peek(1) == u'*')
            return blockComment();
        if (c == u'\'')
            return quoted(u'\'', mysql, SqlPiece::Literal, u"text");
        if (c == u'"')
            return quoted(u'"', mysql, SqlPiece::Name, u"name");
        if (c == u'`' && dialect_ != Dialect::Postgres)
            return quoted(u'`', false, SqlPiece::Name, u"name");
        if (c == u'[' && dialect_ == Dialect::Sqlite)
            return bracketed();
        if (c == u'$' && dialect_ == Dialect::Postgres && dollarTagLength() > 0)
            return dollarQuoted();
        if (c == u':' && peek(1) == u':') {
            at_ += 2;
            return SqlPiece::Symbol;
        }
        if (c == u':' && (peek(1).isLetter() || peek(1) == u'_')) {
            ++at_;
            while (peek().isLetterOrNumber() || peek() == u'_')
                ++at_;
            return SqlPiece::Parameter;
        }
        if (startsWord(c))
            return word();
        ++at_;
        return SqlPiece::Symbol;
    }

    SqlPiece::Kind word()
    {
        // E'…' is a literal in which a backslash escapes.
        if (dialect_ == Dialect::Postgres && peek().toUpper() == u'E' && peek(1) == u'\'') {
            ++at_;
            return quoted(u'\'', true, SqlPiece::Literal, u"text");
        }
        while (continuesWord(peek()))
            ++at_;
        return SqlPiece::Word;
    }

    SqlPiece::Kind lineComment()
    {
        while (at_ < text_.size() && text_[at_] != u'\n')
            ++at_;
        return SqlPiece::Blank;
    }

    SqlPiece::Kind blockComment()
    {
        // What stands in such a comment is executed, so it cannot be passed over.
        if (dialect_ == Dialect::Mysql && peek(2) == u'!')
            throw EDatabaseError(QStringLiteral("Comments of the kind \"/*!\" are not taken."));
        int depth = 0;
        while (at_ < text_.size()) {
            if (peek() == u'/' && peek(1) == u'*' && (depth == 0 || dialect_ == Dialect::Postgres)) {
                ++depth;
                at_ += 2;
            } else if (peek() == u'*' && peek(1) == u'/') {
                at_ += 2;
                if (--depth == 0)
                    return SqlPiece::Blank;
            } else {
                ++at_;
            }
        }
        throw EDatabaseError(QStringLiteral("A comment in the SQL text has no end."));
    }

    SqlPiece::Kind quoted(QChar quote, bool backslashes, SqlPiece::Kind kind, QStringView what)
    {
        ++at_;
        while (at_ < text_.size()) {
            const QChar c = text_[at_];
            if ((backslashes && c == u'\\') || (c == quote && peek(1) == quote)) {
                at_ += 2;
                continue;
            }
            ++at_;
            if (c == quote)
                return kind;
        }
        throw EDatabaseError(QStringLiteral("A quoted %1 in the SQL text has no closing %2.").arg(what, quote));
    }

    SqlPiece::Kind bracketed()
    {
        const qsizetype end = text_.indexOf(u']', at_);
        if (end < 0)
            throw EDatabaseError(QStringLiteral("A quoted name in the SQL text has no closing ]."));
        at_ = end + 1;
        return SqlPiece::Name;
    }

    qsizetype dollarTagLength() const
    {
        qsizetype end = at_ + 1;
        if (end < text_.size() && text_[end].isDigit())
            return 0;
        while (end < text_.size() && (text_[end].isLetterOrNumber() || text_[end] == u'_'))
            ++end;
        return end < text_.size() && text_[end] == u'$' ? end + 1 - at_ : 0;
    }

    SqlPiece::Kind dollarQuoted()
    {
        const QStringView tag = text_.mid(at_, dollarTagLength());
        const qsizetype end = text_.indexOf(tag, at_ + tag.size());
        if (end < 0)
            throw EDatabaseError(QStringLiteral("A quoted text in the SQL text has no closing %1.").arg(tag));
        at_ = end + tag.size();
        return SqlPiece::Literal;
    }

    QStringView text_;
    Dialect dialect_;
    qsizetype at_ = 0;
};

QStringView textOf(const SqlPiece &piece, QStringView text)
{
    return text.mid(piece.begin, piece.end - piece.begin);
}

bool isOneOf(QStringView word, std::initializer_list<QStringView> words)
{
    return std::any_of(words.begin(), words.end(),
                       [&](QStringView known) { return word.compare(known, Qt::CaseInsensitive) == 0; });
}

/// Checks what a statement does by its first word; for WITH, by the first verb outside parentheses.
void checkVerb(const std::vector<SqlPiece> &pieces, QStringView text, bool &wrappable)
{
    static constexpr char kRefusal[] =
        "Only statements that read are taken (SELECT, WITH, VALUES, SHOW), not \"%1\".";
    QStringView first;
    int depth = 0;
    bool with = false;
    for (const SqlPiece &piece : pieces) {
        const QStringView word = textOf(piece, text);
        if (piece.kind == SqlPiece::Symbol && word == u"(") {
            ++depth;
        } else if (piece.kind == SqlPiece::Symbol && word == u")") {
            --depth;
        } else if (piece.kind != SqlPiece::Blank && first.isEmpty()) {
            first = word;
            with = isOneOf(word, {u"WITH"});
            wrappable = !isOneOf(word, {u"SHOW"});
            if (!with && !isOneOf(word, {u"SELECT", u"VALUES", u"SHOW"}))
                throw EDatabaseError(QString::fromLatin1(kRefusal).arg(word));
            if (!with)
                return;
        } else if (piece.kind == SqlPiece::Word && depth == 0) {
            if (isOneOf(word, {u"SELECT", u"VALUES"}))
                return;
            if (isOneOf(word, {u"INSERT", u"UPDATE", u"DELETE", u"REPLACE", u"MERGE"}))
                throw EDatabaseError(QString::fromLatin1(kRefusal).arg(QStringLiteral("WITH … %1").arg(word)));
        }
    }
}

} // namespace

QString quotedName(const QString &name, Dialect dialect)
{
    const QChar quote = dialect == Dialect::Mysql ? u'`' : u'"';
    QString inner = name;
    inner.replace(quote, QString(2, quote));
    return quote + inner + quote;
}

std::vector<SqlPiece> sqlPieces(QStringView text, Dialect dialect)
{
    std::vector<SqlPiece> pieces;
    for (Scanner scanner(text, dialect); !scanner.atEnd();)
        pieces.push_back(scanner.next());
    return pieces;
}

void checkCondition(const QString &condition, Dialect dialect)
{
    const auto refuse = [&](const QString &why) {
        throw EDatabaseError(QStringLiteral("The filter \"%1\" is not one condition: %2.").arg(condition, why));
    };
    if (condition.contains(QChar()))
        refuse(QStringLiteral("it holds a zero character"));
    int depth = 0;
    bool empty = true;
    for (const SqlPiece &piece : sqlPieces(condition, dialect)) {
        const QStringView word = textOf(piece, condition);
        if (piece.kind == SqlPiece::Parameter)
            refuse(QStringLiteral("it holds the parameter %1").arg(word));
        if (piece.kind != SqlPiece::Blank)
            empty = false;
        if (piece.kind != SqlPiece::Symbol)
            continue;
        // It would take the value of a parameter of ours, or none.
        if (word == u"?" && dialect != Dialect::Postgres)
            refuse(QStringLiteral("it holds a parameter (?)"));
        if (word == u";")
            refuse(QStringLiteral("it holds a semicolon"));
        if (word == u"(")
            ++depth;
        if (word == u")" && --depth < 0)
            break;
    }
    if (depth != 0)
        refuse(QStringLiteral("its parentheses do not match"));
    if (empty)
        refuse(QStringLiteral("it is empty"));
}

QString ReadingStatement::with(const QStringList &values) const
{
    QString result;
    qsizetype from = 0;
    for (qsizetype i = 0; i < places.size(); ++i) {
        result += QStringView(text).mid(from, places[i] - from);
        result += values.value(i);
        from = places[i] + 1;
    }
    result += QStringView(text).mid(from);
    return result;
}

ReadingStatement readingStatement(const QString &sql, Dialect dialect)
{
    ReadingStatement statement;
    if (sql.contains(QChar()))
        throw EDatabaseError(QStringLiteral("The SQL text holds a zero character."));
    const std::vector<SqlPiece> pieces = sqlPieces(sql, dialect);
    bool ended = false;
    qsizetype length = 0; // of the text up to its last piece that is no blank
    for (const SqlPiece &piece : pieces) {
        const QStringView word = textOf(piece, sql);
        if (piece.kind == SqlPiece::Blank) {
            // A comment counts as a blank; line ends stay for the engine's own messages.
            statement.text += word.startsWith(u'-') || word.startsWith(u'/') || word.startsWith(u'#') ? u" " : word;
            continue;
        }
        if (piece.kind == SqlPiece::Symbol && word == u";") {
            ended = length > 0;
            continue;
        }
        if (ended)
            throw EDatabaseError(QStringLiteral("The SQL text holds more than one statement."));
        if (piece.kind == SqlPiece::Parameter) {
            statement.places.append(statement.text.size());
            statement.parameters.append(word.mid(1).toString());
            statement.text += u'?';
        } else {
            // A "?" that is not ours would take the value of one of our parameters.
            if (piece.kind == SqlPiece::Symbol && word == u"?" && dialect != Dialect::Postgres)
                throw EDatabaseError(QStringLiteral("Parameters are written with a name (:name), not \"?\"."));
            statement.text += word;
        }
        length = statement.text.size();
    }
    statement.text.truncate(length);
    if (length == 0)
        throw EDatabaseError(QStringLiteral("There is no SQL text."));
    checkVerb(pieces, sql, statement.wrappable);
    return statement;
}

QStringList parameterNames(const QString &sql, Dialect dialect)
{
    QStringList names;
    try {
        for (Scanner scanner(sql, dialect); !scanner.atEnd();) {
            const SqlPiece piece = scanner.next();
            const QString name = textOf(piece, sql).mid(1).toString();
            if (piece.kind == SqlPiece::Parameter && !names.contains(name, Qt::CaseInsensitive))
                names.append(name);
        }
    } catch (const EDatabaseError &) {
        // The text is still being written; opening it says what is wrong.
    }
    return names;
}

} // namespace nuvo
