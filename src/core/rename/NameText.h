#pragma once
// NameText: a file name's bytes as text that can be edited and turned back into the same bytes.
//
// Rename rules work on text (regular expressions, letter case), but a Linux name may hold bytes
// that are not UTF-8. Each such byte becomes one character of a private-use range while the name
// is text, and becomes the same byte again afterwards, so the bytes a rule leaves alone survive.
// Names that are valid UTF-8 decode and encode as plain UTF-8.

#include <QByteArray>
#include <QString>

namespace orwick {

struct NameText {
    QString text;
    bool escaped = false; // some bytes were not UTF-8 and stand as private-use characters

    static NameText fromBytes(QByteArrayView bytes);
    // The bytes again; private-use stand-ins become their bytes only when the name had them.
    static QByteArray toBytes(const QString& text, bool escaped);
};

} // namespace orwick
