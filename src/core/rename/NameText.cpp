#include "rename/NameText.h"

namespace orwick {

namespace {

// Stand-ins for single bytes 0x80…0xFF, in plane 16's private-use area.
constexpr char32_t kByteBase = 0x10FE00;

// The length of the valid UTF-8 sequence at `at`, or 0 when it isn't one.
int sequenceLength(QByteArrayView bytes, qsizetype at, char32_t& codePoint)
{
    const auto byte = [&](qsizetype i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char lead = byte(at);
    int length = 0;
    char32_t value = 0;
    if (lead < 0x80) {
        codePoint = lead;
        return 1;
    } else if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        value = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        value = lead & 0x0F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        value = lead & 0x07;
    } else {
        return 0;
    }
    if (at + length > bytes.size())
        return 0;
    for (int i = 1; i < length; ++i) {
        const unsigned char next = byte(at + i);
        if ((next & 0xC0) != 0x80)
            return 0;
        value = (value << 6) | (next & 0x3F);
    }
    const bool overlong = (length == 3 && value < 0x800) || (length == 4 && value < 0x10000);
    if (overlong || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
        return 0;
    codePoint = value;
    return length;
}

void append(QString& text, char32_t codePoint)
{
    if (codePoint < 0x10000) {
        text.append(QChar(char16_t(codePoint)));
    } else {
        text.append(QChar::highSurrogate(codePoint));
        text.append(QChar::lowSurrogate(codePoint));
    }
}

} // namespace

NameText NameText::fromBytes(QByteArrayView bytes)
{
    NameText name;
    bool ascii = true;
    for (const char c : bytes)
        ascii = ascii && static_cast<unsigned char>(c) < 0x80;
    if (ascii) { // most names: one character for each byte
        name.text = QString::fromLatin1(bytes);
        return name;
    }
    name.text.reserve(bytes.size());
    for (qsizetype at = 0; at < bytes.size();) {
        char32_t codePoint = 0;
        const int length = sequenceLength(bytes, at, codePoint);
        if (length == 0) {
            append(name.text, kByteBase + static_cast<unsigned char>(bytes[at]));
            name.escaped = true;
            ++at;
        } else {
            append(name.text, codePoint);
            at += length;
        }
    }
    return name;
}

QByteArray NameText::toBytes(const QString& text, bool escaped)
{
    if (!escaped)
        return text.toUtf8();
    QByteArray bytes;
    bytes.reserve(text.size());
    qsizetype runStart = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text[i].isHighSurrogate() || i + 1 >= text.size())
            continue;
        const char32_t codePoint = QChar::surrogateToUcs4(text[i], text[i + 1]);
        if (codePoint < kByteBase + 0x80 || codePoint > kByteBase + 0xFF)
            continue;
        bytes += QStringView(text).sliced(runStart, i - runStart).toUtf8();
        bytes += char(codePoint - kByteBase);
        runStart = i + 2;
        ++i;
    }
    bytes += QStringView(text).sliced(runStart).toUtf8();
    return bytes;
}

} // namespace orwick
