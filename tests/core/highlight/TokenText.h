#pragma once
// Tokens as readable rows ("keyword func"), so a test states the expected highlighting of a
// snippet as the words a reader sees instead of offsets.

#include "highlight/Language.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace orwick::test {

// Each token as "KIND TEXT" (a line feed in the text shows as "\n").
inline QStringList tokenText(const QString& text, const SyntaxHighlighter::Language& language)
{
    QStringList rows;
    for (const SyntaxHighlighter::Token& token : SyntaxHighlighter::tokens(text, language))
        rows.append(SyntaxHighlighter::kindName(token.kind) + u' '
                    + text.mid(token.start, token.length).replace(u'\n', QStringLiteral("\\n")));
    return rows;
}

inline const SyntaxHighlighter::Language& languageKeyed(const char* key)
{
    const SyntaxHighlighter::Language* language = SyntaxHighlighter::languageWithKey(QString::fromLatin1(key));
    if (!language)
        ADD_FAILURE() << "no language " << key;
    return language ? *language : *SyntaxHighlighter::allLanguages().front();
}

inline QStringList tokenText(const QString& text, const char* key) { return tokenText(text, languageKeyed(key)); }

} // namespace orwick::test

namespace orwick::SyntaxHighlighter {
inline void PrintTo(const Token& token, std::ostream* os)
{
    *os << "{" << token.start << ", " << token.length << ", " << kindNameLatin1(token.kind) << "}";
}
} // namespace orwick::SyntaxHighlighter

// Lets failures print the rows.
inline void PrintTo(const QStringList& rows, std::ostream* os) { *os << "[" << rows.join(QStringLiteral(" | ")).toStdString() << "]"; }
