#include "TestPictures.h"

#include <algorithm>

namespace orwick::test {

namespace {

// Bits written least significant first, as deflate packs them.
class BitWriter {
public:
    void put(quint32 value, int bits)
    {
        for (int i = 0; i < bits; ++i) {
            if (m_used == 0)
                m_bytes.append('\0');
            if (value & (1u << i))
                m_bytes.back() = char(uchar(m_bytes.back()) | (1u << m_used));
            m_used = (m_used + 1) % 8;
        }
    }
    // Huffman codes go most significant bit first.
    void putCode(quint32 code, int bits)
    {
        for (int i = bits - 1; i >= 0; --i)
            put((code >> i) & 1u, 1);
    }
    const QByteArray& bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
    int m_used = 0;
};

// Deflate's fixed codes for a literal byte and for a copy of `length` (3–258) bytes from one back.
void literal(BitWriter& bits, uchar byte)
{
    if (byte < 144)
        bits.putCode(0x30 + byte, 8);
    else
        bits.putCode(0x190 + (byte - 144), 9);
}

void copyPrevious(BitWriter& bits, int length)
{
    static constexpr int base[] = {3, 4, 5, 6, 7, 8, 9, 10, 11, 13, 15, 17, 19, 23, 27, 31, 35, 43, 51, 59, 67, 83, 99, 115, 131, 163, 195, 227, 258};
    static constexpr int extra[] = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
    int code = 28;
    while (base[code] > length)
        --code;
    const int symbol = 257 + code;
    if (symbol < 280)
        bits.putCode(symbol - 256, 7);
    else
        bits.putCode(0xC0 + (symbol - 280), 8);
    bits.put(quint32(length - base[code]), extra[code]);
    bits.putCode(0, 5); // distance 1
}

} // namespace

QByteArray hugeWhitePng(int side)
{
    const QByteArray header = bigEndian32(quint32(side)) + bigEndian32(quint32(side)) + QByteArray("\x01\x00\x00\x00\x00", 5);
    const qint64 rowBytes = 1 + (side + 7) / 8; // the filter byte (none), then the pixels
    BitWriter bits;
    bits.put(1, 1); // the last block
    bits.put(1, 2); // fixed codes
    for (int row = 0; row < side; ++row) {
        literal(bits, 0x00);
        literal(bits, 0xFF);
        qint64 left = rowBytes - 2;
        while (left >= 3) {
            int length = int(std::min<qint64>(left, 258));
            if (left - length > 0 && left - length < 3)
                length -= 3; // leaves a last copy of at least 3
            copyPrevious(bits, length);
            left -= length;
        }
        while (left-- > 0)
            literal(bits, 0xFF);
    }
    bits.putCode(0, 7); // end of block
    quint64 a = 1, b = 0; // Adler-32 of the rows
    for (int row = 0; row < side; ++row) {
        b = (b + a) % 65521; // the filter byte, 0
        for (qint64 i = 1; i < rowBytes; ++i) {
            a += 0xFF;
            b += a;
            if ((i & 1023) == 0) { // well before b could overflow
                a %= 65521;
                b %= 65521;
            }
        }
        a %= 65521;
        b %= 65521;
    }
    const QByteArray stream = QByteArray("\x78\x01", 2) + bits.bytes() + bigEndian32(quint32((b << 16) | a));
    return QByteArray("\x89PNG\r\n\x1a\n", 8) + pngChunk("IHDR", header) + pngChunk("IDAT", stream) + pngChunk("IEND", {});
}

} // namespace orwick::test
