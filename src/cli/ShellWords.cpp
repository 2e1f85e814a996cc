// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ShellWords.h"

using namespace Qt::StringLiterals;

namespace {

/// Reads one text; position and the word under construction are its state.
class Splitter
{
public:
    explicit Splitter(const QString &text)
        : m_text(text)
    {
    }

    TResult<QStringList> split()
    {
        while (!atEnd()) {
            const QChar c = next();
            if (c == u'\'' || c == u'"') {
                m_inWord = true;
                if (!(c == u'"' ? readDoubleQuoted() : readSingleQuoted()))
                    return TResult<QStringList>::failure(
                        u"the quote %1 is never closed in: %2"_s.arg(c).arg(m_text));
            } else if (c.isSpace()) {
                endWord();
            } else {
                add(c == u'\\' && !atEnd() ? next() : c);
            }
        }
        endWord();
        return m_words;
    }

private:
    bool atEnd() const { return m_position >= m_text.size(); }
    QChar next() { return m_text[m_position++]; }
    void add(QChar c)
    {
        m_inWord = true;
        m_word.append(c);
    }
    void endWord()
    {
        if (m_inWord)
            m_words.append(m_word);
        m_word.clear();
        m_inWord = false;
    }
    bool readSingleQuoted()
    {
        while (!atEnd()) {
            const QChar c = next();
            if (c == u'\'')
                return true;
            add(c);
        }
        return false;
    }
    bool readDoubleQuoted()
    {
        while (!atEnd()) {
            const QChar c = next();
            if (c == u'"')
                return true;
            const bool escapes =
                c == u'\\' && !atEnd() && u"$`\"\\\n"_s.contains(m_text[m_position]);
            add(escapes ? next() : c);
        }
        return false;
    }

    const QString &m_text;
    QStringList m_words;
    QString m_word;
    qsizetype m_position = 0;
    bool m_inWord = false;
};

bool needsNoQuotes(QChar c)
{
    return c.isLetterOrNumber() || u"_-+=:,./@%"_s.contains(c);
}

} // namespace

TResult<QStringList> splitShellWords(const QString &text)
{
    return Splitter(text).split();
}

QString shellQuoted(const QString &text)
{
    if (!text.isEmpty() && std::all_of(text.begin(), text.end(), needsNoQuotes))
        return text;
    QString quoted = text;
    return u'\'' + quoted.replace(u"'"_s, u"'\\''"_s) + u'\'';
}
