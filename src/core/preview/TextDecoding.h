#pragma once
// TextDecoding: the first part of a file turned into text the panel can show at once — UTF-8
// (a byte-order mark dropped, a character cut off at the end ignored), else Latin-1 with a note;
// line ends made "\n" (CRLF and lone CR); each line cut at a length a text view lays out quickly.
// Pure; safe on any thread.

#include <QByteArrayView>
#include <QString>
#include <QStringList>

namespace orwick::preview {

// True when the bytes hold a NUL in their first 8 kB: a binary file, shown as a hex dump.
bool looksBinary(QByteArrayView bytes);

struct DecodedText {
    QString text;
    QStringList notes; // "Not UTF-8: shown as Latin-1", "Lines longer than 4,000 characters are cut"
    bool isUtf8 = true;
};

DecodedText decodeText(QByteArrayView bytes, int lineChars);

// Rows of "offset  16 bytes in hex  |printable|", the offset counting from `start`.
QString hexDump(QByteArrayView bytes, qint64 start = 0);

} // namespace orwick::preview
