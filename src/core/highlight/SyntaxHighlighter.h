#pragma once
// SyntaxHighlighter: colours source code for the text preview and for notes exported as HTML.
//
// A small table-driven scanner, not a grammar: twenty language descriptions (Language.h), a map
// of file extensions and Markdown fence names onto them, and one scanner with a few switches per
// language. `tokens` makes the list of coloured ranges; three renderers turn it into formats for
// a QTextLayout/QTextDocument (the preview), HTML spans (export), or the style sheet for those
// spans. Everything here is a pure function of its arguments, safe on any thread.
//
// Guarantees of `tokens`: ranges are in UTF-16 code units of the text given, ascend, never
// overlap and never split a surrogate pair; the time is linear in the text's length.
//
// Colours come from the theme (keys "keyword", "string", "number", "comment", "type",
// "function", "attribute", "property"); a key the theme doesn't set falls back to Orwick's own
// default for the appearance. `tag` has no key of its own and uses the keyword colour.

#include <QByteArray>
#include <QColor>
#include <QFont>
#include <QList>
#include <QString>
#include <QStringView>
#include <QTextCharFormat>
#include <QTextLayout>
#include <cstdint>
#include <functional>
#include <vector>

namespace orwick {

class FilePath;

namespace SyntaxHighlighter {

// What a token is; kindName gives the text value ("keyword", …), used in "tok-KIND".
enum class Kind : std::uint8_t { keyword, string, number, comment, type, function, tag, attribute, property };
inline constexpr int kKindCount = 9;
QString kindName(Kind kind);
const char* kindNameLatin1(Kind kind);

// One coloured range: `start` and `length` count UTF-16 code units of the scanned text.
struct Token {
    int start = 0;
    int length = 0;
    Kind kind = Kind::keyword;

    int end() const { return start + length; }
    bool operator==(const Token&) const = default;
};

// One language's description (its fields are in Language.h). Languages live in a static table
// for the whole process: a pointer to one stays valid and may cross threads.
struct Language;

// The table's key of a language: "swift", "js", "py", … "html".
QString languageKey(const Language& language);
// All twenty languages, in table order.
const std::vector<const Language*>& allLanguages();

// The language for a file, by its name first ("Makefile", "Dockerfile.dev", ".zshrc"), then by
// its extension; nullptr means no highlighting.
const Language* languageFor(const FilePath& path);
const Language* languageForFileName(QStringView fileName);
// The language for a Markdown fence name ("ts", "C++", "shell"): lower-cased, looked up in the
// aliases, then among the table's keys; nullptr when unknown.
const Language* languageNamed(QStringView name);

// The tokens of `text` in `language`, in one pass.
std::vector<Token> tokens(QStringView text, const Language& language);

// The theme's syntax colours. An invalid QColor means the theme sets none for that key, and the
// default for the appearance is used.
struct SyntaxPalette {
    QColor keyword, string, number, comment, type, function, attribute, property;

    // Reads each key through `lookup` (an invalid colour for a key the theme lacks), so a theme's
    // colour map of any shape can be passed: [&](const QString& key) { return map.value(key); }.
    static SyntaxPalette fromLookup(const std::function<QColor(const QString& key)>& lookup);
    // The theme key of each field, in the order above.
    static const QList<QString>& keys();
};

// Orwick's own colour of a kind for a light or a dark appearance.
QColor defaultColor(Kind kind, bool dark);
// The kind's colour: the palette's when set, else the default for the appearance.
QColor color(Kind kind, const SyntaxPalette& palette, bool dark);

// The character format of a kind in the preview: `font`, in the kind's colour (comments italic).
QTextCharFormat format(Kind kind, const QFont& font, const SyntaxPalette& palette, bool dark);

// The preview's coloured text: one format range per token (ranges as the tokens'), ready for
// QTextLayout::setFormats or to apply to a QTextDocument holding `text`. Text outside the
// ranges keeps the view's own font and colour.
QList<QTextLayout::FormatRange> attributed(QStringView text, const Language& language, const QFont& font,
                                           const SyntaxPalette& palette, bool dark);
// The same for tokens already made (the preview may cut them per line).
QList<QTextLayout::FormatRange> attributed(const std::vector<Token>& tokens, const QFont& font,
                                           const SyntaxPalette& palette, bool dark);

// The text escaped for HTML ("&", "<", ">", '"' as entities) with each token wrapped in
// <span class="tok-KIND">…</span>. No surrounding element: the caller puts it in a <pre><code>.
QString html(QStringView text, const Language& language);
// The same, written as UTF-8 onto the end of `out` (large texts: no intermediate QString).
void appendHtmlUtf8(QByteArray& out, QStringView text, const std::vector<Token>& tokens);

// The style sheet for the spans: one rule per kind, ".tok-KIND { color: rgba(r,g,b,a); }",
// colours as `color` gives them.
QString css(bool dark, const SyntaxPalette& palette = {});

} // namespace SyntaxHighlighter
} // namespace orwick
