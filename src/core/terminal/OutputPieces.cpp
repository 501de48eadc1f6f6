#include "terminal/OutputPieces.h"

#include <algorithm>

namespace orwick {

namespace {

bool isLineFeed(unsigned char byte) { return byte >= 0x0a && byte <= 0x0c; }

} // namespace

void OutputPieces::split(QByteArrayView bytes, int maxCharacters, const Piece& piece)
{
    maxCharacters = std::max(maxCharacters, 1);
    qsizetype start = 0;
    Kind kind = Kind::other;
    int characters = 0;
    const auto flush = [&](qsizetype end) {
        if (end > start)
            piece(bytes.sliced(start, end - start), kind);
        start = end;
        characters = 0;
    };
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        if (isLineFeed(byte)) { // executed in any state, escape sequences included
            flush(i);
            kind = Kind::lineFeed;
            flush(i + 1);
            kind = Kind::other;
            continue;
        }
        const bool text = m_state == State::ground && byte >= 0x20 && byte != 0x7f;
        if (text != (kind == Kind::text)) {
            flush(i);
            kind = text ? Kind::text : Kind::other;
        }
        if (text) {
            if ((byte & 0xc0) != 0x80) { // a character starts here (not a UTF-8 continuation byte)
                if (characters == maxCharacters)
                    flush(i);
                ++characters;
            }
            continue;
        }
        advance(byte);
    }
    flush(bytes.size());
}

void OutputPieces::advance(unsigned char byte)
{
    if (byte == 0x18 || byte == 0x1a) { // CAN and SUB end any sequence
        m_state = State::ground;
        return;
    }
    if (byte == 0x1b) {
        m_state = m_state == State::string ? State::stringEscape : State::escape;
        return;
    }
    switch (m_state) {
    case State::ground: // a control character, or DEL
        return;
    case State::stringEscape:
        if (byte == '\\') { // ST: the string ends
            m_state = State::ground;
            return;
        }
        m_state = State::escape; // an escape sequence of its own cuts the string short
        [[fallthrough]];
    case State::escape:
        if (byte == '[')
            m_state = State::csi;
        else if (byte == ']' || byte == 'P' || byte == 'X' || byte == '^' || byte == '_')
            m_state = State::string; // OSC, DCS, SOS, PM, APC: up to BEL or ST
        else if (byte >= 0x30 && byte <= 0x7e)
            m_state = State::ground; // the final byte; intermediates (0x20–0x2f) and controls keep waiting
        return;
    case State::csi:
        if (byte >= 0x40 && byte <= 0x7e)
            m_state = State::ground;
        return;
    case State::string:
        if (byte == 0x07)
            m_state = State::ground;
        return;
    }
}

} // namespace orwick
