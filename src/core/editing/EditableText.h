#pragma once
// EditableText: a file's bytes as the text an editor shows, and that text back as the bytes a
// save writes — so that a save changes only what was edited. The editor's text has "\n" line
// breaks; the file's form (a UTF-8 byte-order mark, CRLF or LF line ends) is kept aside and put
// back on save.
//
// A file the editor can't give back byte for byte is open read-only, with the reason in one
// sentence: bytes that aren't UTF-8 (shown as Latin-1), or line breaks a text view would change
// (a lone CR, U+2029). Bytes with a NUL aren't text at all. Pure; safe on any thread.

#include "base/Result.h"

#include <QByteArray>
#include <QString>

namespace orwick::editing {

enum class LineEnding { lf, crlf };

struct TextForm {
    bool byteOrderMark = false;
    LineEnding ending = LineEnding::lf;
    bool mixedEndings = false; // both CRLF and LF: a save writes `ending` everywhere
    bool operator==(const TextForm&) const = default;
};

struct EditableText {
    QString text;           // "\n" between lines
    TextForm form;
    QString readOnlyReason; // empty when the text may be edited and saved
    QString note;           // what a save will change besides the edit ("Mixed line ends: …")
};

// The text of `bytes` from the file `fileName` (named in the sentences); a failure when the
// bytes aren't text (a NUL among them).
[[nodiscard]] Result<EditableText> decodeForEditing(const QByteArray& bytes, const QString& fileName);

// The bytes a save writes for `text` in `form`.
QByteArray encodeEdited(const QString& text, const TextForm& form);

} // namespace orwick::editing
