#pragma once
// MarkdownSyntax: the colouring of a note's source in the editor — front matter, headings,
// emphasis, inline code, links and wikilinks, tags, code fences (their code coloured by the
// syntax highlighter when the fence names a language it knows), list markers, task boxes,
// quotes and rules. A line-by-line scanner, not a Markdown parser: what a line means depends
// only on the line and the state the line before left (inside front matter, inside a fence),
// which is what an editor's highlighter can keep per block.
//
// Guarantees of colourLine: spans lie within the line, are listed by ascending start, and may
// nest (a link inside emphasis, a heading's marker inside the heading): where two overlap the
// one listed later is the inner one and wins. Time is linear in the line's length apart from
// a closing delimiter's search. Pure; safe on any thread.

#include "highlight/SyntaxHighlighter.h"

#include <QStringView>
#include <cstdint>
#include <optional>
#include <vector>

namespace orwick::MarkdownSyntax {

enum class Kind : std::uint8_t {
    frontMatter,    // the "---" lines and what lies between them
    frontMatterKey, // "title" of "title: Plan"
    heading,        // a whole ATX heading line
    headingMarker,  // its "#"s
    emphasis,       // *a* _a_
    strong,         // **a** __a__
    strikethrough,  // ~~a~~
    inlineCode,     // `a`
    fence,          // a code fence's opening or closing line
    fencedCode,     // a line inside a fence
    codeToken,      // a token of fenced code; `code` says which
    link,           // [text] of [text](target), <https://…>, a bare URL
    linkTarget,     // (target)
    wikilink,       // [[Note]]
    tag,            // #tag
    listMarker,     // "-", "*", "+", "1." of a list item
    taskBox,        // "[ ]" or "[x]"
    doneTask,       // the text of a ticked task
    quote,          // a line starting with ">"
    rule,           // "***", "---", "___"
};

struct Span {
    int start = 0;
    int length = 0;
    Kind kind = Kind::frontMatter;
    SyntaxHighlighter::Kind code = SyntaxHighlighter::Kind::keyword; // codeToken only

    int end() const { return start + length; }
    bool operator==(const Span&) const = default;
};

// What the lines before leave: the start of the text, plain text, inside front matter, or
// inside a code fence (its character, its length and the language it names).
struct LineState {
    enum class Block : std::uint8_t { start, text, frontMatter, fence };
    Block block = Block::start;
    char16_t fenceChar = 0;
    int fenceLength = 0;
    const SyntaxHighlighter::Language* language = nullptr;

    // As one int for QSyntaxHighlighter's block state; -1 (Qt's "none yet") is the start.
    int toInt() const;
    static LineState fromInt(int value);
    bool operator==(const LineState&) const = default;
};

struct Line {
    std::vector<Span> spans;
    LineState next;
};

// One line (without its line break) after the lines before left `before`.
Line colourLine(QStringView line, const LineState& before);
// A whole text, line by line; offsets count from the start of `text`.
std::vector<Span> colourText(QStringView text);

// How a kind is drawn: one of the highlighter's colours (the theme's syntax keys), or the
// view's own; with weight, slant, a line through it, or dimmed.
struct Look {
    std::optional<SyntaxHighlighter::Kind> colour;
    bool bold = false;
    bool italic = false;
    bool strikeOut = false;
    bool dim = false;
};
Look lookOf(const Span& span);

} // namespace orwick::MarkdownSyntax
