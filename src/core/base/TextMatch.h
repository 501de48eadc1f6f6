#pragma once
// TextMatch: the one way search compares what the user typed with a name or a file's text —
// case and accents folded on both sides (NFKD, combining marks dropped, case folded), the text
// taken literally (no wildcard or pattern characters), found anywhere. Prepared once per query;
// matching is thread-safe and, for the common all-ASCII name, works on the bytes without
// allocating.

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace orwick {

// Case- and accent-folded text, as names are compared ("Résumé" → "resume").
QString foldForSearch(QStringView text);

class TextNeedle {
public:
    TextNeedle() = default;
    explicit TextNeedle(const QString& typed);

    // True when there is nothing to look for (blank text).
    bool isEmpty() const { return m_folded.isEmpty(); }
    const QString& folded() const { return m_folded; }

    // Whether a name (UTF-8 bytes, or any bytes) contains the text.
    bool inName(QByteArrayView name) const;
    bool inText(QStringView text) const;
    // Whether a file's contents (bytes, read as UTF-8) contain the text.
    bool inContent(QByteArrayView content) const;

private:
    QString m_folded;
    QByteArray m_ascii; // the folded text in bytes, when it is all ASCII
};

// True for bytes that look binary: a NUL in the first 8 KiB.
bool looksBinary(QByteArrayView head);

} // namespace orwick
