#pragma once
// MarkdownHighlighter: draws the core's colouring of a note's source (MarkdownSyntax) in the
// editor, line by line as the text changes, keeping each line's state (front matter, a fence)
// in its block. It decides nothing itself: the ranges and kinds are the core's, the colours the
// theme's syntax colours (the same keys as the preview's highlighted code). Follows theme
// changes. Lives on the GUI thread.

#include <QSyntaxHighlighter>

namespace orwick {

class MarkdownHighlighter : public QSyntaxHighlighter {
    Q_OBJECT
public:
    explicit MarkdownHighlighter(QTextDocument* document);

protected:
    void highlightBlock(const QString& text) override;
};

} // namespace orwick
