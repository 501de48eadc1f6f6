// Fuzzes the reading of the links in a note, which any program (or person) writes. Any bytes
// must read without crashing; bytes that aren't UTF-8 give no links; every link has a target, a
// line within the text and a line text no longer than the limit (plus the ellipsis); lines
// ascend; and a wikilink's name resolves in a vault without crashing.

#include "FuzzCheck.h"
#include "notes/NoteLinks.h"
#include "notes/NoteNames.h"

using namespace orwick;
using fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const QByteArray input = fuzz::bytesOf(bytes, size);
    const std::optional<QList<NoteLink>> links = notelinks::linksInBytes(input);
    if (!isValidUtf8(input)) {
        check(!links.has_value(), "bytes that aren't UTF-8 give no links");
        return 0;
    }
    check(links.has_value(), "UTF-8 text reads");
    const qsizetype lines = input.count('\n') + 1;
    NoteNames names(FilePath::fromNative("/vault"));
    names.add(FilePath::fromNative("/vault/a/Note.md"));
    names.add(FilePath::fromNative("/vault/Note.md"));
    const FilePath from = FilePath::fromNative("/vault/b/from.md");
    int last = 0;
    for (const NoteLink& link : *links) {
        check(!link.target.isEmpty(), "a link has a target");
        check(link.line >= 1 && link.line <= lines, "a link's line is in the text");
        check(link.line >= last, "links come in text order");
        check(link.lineText.size() <= notelinks::kLineTextLength + 1, "a line's text is cut to the limit");
        last = link.line;
        if (link.kind == NoteLink::Kind::wikilink)
            (void)names.resolve(link.target, from);
        else
            check(!notelinks::markdownTargetPath(link.target, from.parent()).isEmpty(), "a Markdown target is a path");
    }
    return 0;
}
