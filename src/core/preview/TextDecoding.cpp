#include "preview/TextDecoding.h"

#include <QLocale>
#include <QStringDecoder>

namespace orwick::preview {

bool looksBinary(QByteArrayView bytes)
{
    return bytes.first(std::min<qsizetype>(bytes.size(), 8192)).contains('\0');
}

namespace {

QString decodeUtf8(QByteArrayView bytes, bool* ok)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    // Stateless: a character cut off at the end would count as an error, so leave it out first.
    qsizetype end = bytes.size();
    for (qsizetype back = 1; back <= 3 && end - back >= 0; ++back) {
        const auto c = static_cast<unsigned char>(bytes[end - back]);
        if ((c & 0xC0) != 0x80) { // the lead byte of the last character
            const int needed = c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : c >= 0xC0 ? 2 : 1;
            if (needed > back)
                end -= back;
            break;
        }
    }
    QString text = decoder.decode(bytes.first(end));
    *ok = !decoder.hasError();
    return text;
}

// "\r\n" and lone "\r" become "\n"; lines over `lineChars` end in "…". Returns whether any was cut.
bool normalizeLines(QString& text, int lineChars)
{
    QString out;
    out.reserve(text.size());
    bool cut = false;
    qsizetype lineLength = 0;
    const qsizetype n = text.size();
    for (qsizetype i = 0; i < n; ++i) {
        QChar c = text.at(i);
        if (c == u'\r') {
            if (i + 1 < n && text.at(i + 1) == u'\n')
                ++i;
            c = u'\n';
        }
        if (c == u'\n') {
            out.append(c);
            lineLength = 0;
            continue;
        }
        if (lineLength == lineChars) {
            out.append(QChar(0x2026));
            cut = true;
        }
        if (lineLength++ >= lineChars)
            continue;
        out.append(c);
    }
    text = std::move(out);
    return cut;
}

} // namespace

DecodedText decodeText(QByteArrayView bytes, int lineChars)
{
    DecodedText decoded;
    if (bytes.startsWith("\xEF\xBB\xBF"))
        bytes = bytes.sliced(3);
    bool ok = false;
    decoded.text = decodeUtf8(bytes, &ok);
    if (!ok) {
        decoded.isUtf8 = false;
        decoded.text = QString::fromLatin1(bytes.data(), bytes.size());
        decoded.notes.append(QStringLiteral("Not UTF-8: shown as Latin-1"));
    }
    if (normalizeLines(decoded.text, lineChars))
        decoded.notes.append(QStringLiteral("Lines longer than %1 characters are cut").arg(QLocale(QLocale::English).toString(lineChars)));
    return decoded;
}

QString hexDump(QByteArrayView bytes, qint64 start)
{
    static const char digits[] = "0123456789abcdef";
    QString out;
    out.reserve(bytes.size() * 5);
    for (qsizetype row = 0; row < bytes.size(); row += 16) {
        out += QStringLiteral("%1  ").arg(start + row, 8, 16, QLatin1Char('0'));
        QString printable;
        for (qsizetype i = row; i < row + 16; ++i) {
            if (i < bytes.size()) {
                const auto c = static_cast<unsigned char>(bytes[i]);
                out += QLatin1Char(digits[c >> 4]);
                out += QLatin1Char(digits[c & 15]);
                out += QLatin1Char(' ');
                printable += c >= 0x20 && c < 0x7F ? QLatin1Char(char(c)) : QLatin1Char('.');
            } else {
                out += QStringLiteral("   ");
            }
            if (i == row + 7)
                out += QLatin1Char(' ');
        }
        out += QStringLiteral(" |") + printable + QStringLiteral("|\n");
    }
    return out;
}

} // namespace orwick::preview
