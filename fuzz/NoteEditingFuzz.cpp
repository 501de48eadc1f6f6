// Fuzzes what the editor does with a file it opens: the bytes as the editor's text and back, and
// the Markdown colouring of that text. A file the editor may save must come back byte for byte
// when nothing was edited (unless its line ends were mixed, which the editor says), and bytes
// that aren't UTF-8 are never editable. Colouring spans lie inside the text, are never empty and
// ascend; each line's state survives the editor's block state.

#include "FuzzCheck.h"
#include "base/FilePath.h"
#include "editing/EditableText.h"
#include "editing/MarkdownSyntax.h"

using namespace orwick;
using fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes = fuzz::bytesOf(data, size);
    const Result<editing::EditableText> text = editing::decodeForEditing(bytes, QStringLiteral("note.md"));
    if (!text) {
        check(bytes.contains('\0'), "only bytes with a NUL aren't text");
        return 0;
    }
    const bool bodyIsUtf8 = isValidUtf8(text->form.byteOrderMark ? QByteArrayView(bytes).sliced(3) : QByteArrayView(bytes));
    check(bodyIsUtf8 || !text->readOnlyReason.isEmpty(), "bytes that aren't UTF-8 are read-only");
    if (text->readOnlyReason.isEmpty()) {
        check(!text->text.contains(u'\r'), "the editor's text has no CR");
        if (!text->form.mixedEndings)
            check(editing::encodeEdited(text->text, text->form) == bytes, "unedited text saves as the same bytes");
    }

    const std::vector<MarkdownSyntax::Span> spans = MarkdownSyntax::colourText(text->text);
    int last = 0;
    for (const MarkdownSyntax::Span& span : spans) {
        check(span.length > 0, "a span is never empty");
        check(span.start >= 0 && span.end() <= text->text.size(), "a span lies inside the text");
        check(span.start >= last, "spans ascend");
        last = span.start;
    }
    MarkdownSyntax::LineState state;
    for (const QStringView line : QStringView(text->text).split(u'\n')) {
        const MarkdownSyntax::Line coloured = MarkdownSyntax::colourLine(line, state);
        check(MarkdownSyntax::LineState::fromInt(coloured.next.toInt()) == coloured.next, "a line's state survives as an int");
        for (const MarkdownSyntax::Span& span : coloured.spans)
            check(span.end() <= line.size(), "a span stays inside its line");
        state = coloured.next;
    }
    return 0;
}
