#include "ui/notes/MarkdownHighlighter.h"

#include "editing/MarkdownSyntax.h"
#include "theme/ThemeStore.h"
#include "ui/theme/Theme.h"

namespace orwick {

namespace {

QTextCharFormat formatOf(const MarkdownSyntax::Span& span, const SyntaxHighlighter::SyntaxPalette& palette, bool dark)
{
    const MarkdownSyntax::Look look = MarkdownSyntax::lookOf(span);
    QTextCharFormat format;
    if (look.colour)
        format.setForeground(SyntaxHighlighter::color(*look.colour, palette, dark));
    else if (look.dim)
        format.setForeground(theme::dimText());
    if (look.bold)
        format.setFontWeight(QFont::Bold);
    if (look.italic)
        format.setFontItalic(true);
    if (look.strikeOut)
        format.setFontStrikeOut(true);
    return format;
}

} // namespace

MarkdownHighlighter::MarkdownHighlighter(QTextDocument* document) : QSyntaxHighlighter(document)
{
    connect(&ThemeStore::shared(), &ThemeStore::changed, this, &QSyntaxHighlighter::rehighlight);
}

void MarkdownHighlighter::highlightBlock(const QString& text)
{
    const ThemeStore& themes = ThemeStore::shared();
    const auto palette = SyntaxHighlighter::SyntaxPalette::fromLookup([&themes](const QString& key) { return themes.syntaxColor(key); });
    const bool dark = theme::isDark();
    const MarkdownSyntax::Line line = MarkdownSyntax::colourLine(text, MarkdownSyntax::LineState::fromInt(previousBlockState()));
    for (const MarkdownSyntax::Span& span : line.spans) {
        // An inner span adds to the outer one's format (a link's colour in a bold heading).
        for (int i = span.start; i < span.end();) {
            const QTextCharFormat current = format(i);
            int run = i + 1;
            while (run < span.end() && format(run) == current)
                ++run;
            QTextCharFormat merged = current;
            merged.merge(formatOf(span, palette, dark));
            setFormat(i, run - i, merged);
            i = run;
        }
    }
    setCurrentBlockState(line.next.toInt());
}

} // namespace orwick
