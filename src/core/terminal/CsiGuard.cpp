#include "terminal/CsiGuard.h"

namespace orwick {

namespace {
constexpr char kEsc = 0x1b, kCan = 0x18, kSub = 0x1a;
}

QByteArrayView CsiGuard::filter(QByteArrayView bytes, QByteArray& scratch)
{
    bool dropping = false; // scratch holds bytes[0, i) minus what was dropped
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const char c = bytes[i];
        bool keep = true;
        switch (m_state) {
        case State::ground:
            if (c == kEsc) {
                m_state = State::escape;
            } else if (!dropping) {
                // Plain output: jump to the next escape.
                const qsizetype next = bytes.sliced(i).indexOf(kEsc);
                if (next < 0)
                    return bytes;
                i += next - 1;
                continue;
            }
            break;
        case State::escape:
            if (c == '[') {
                m_state = State::csi;
                m_separators = 0;
            } else if (c != kEsc) {
                m_state = State::ground;
            }
            break;
        case State::csi:
            if (c == kEsc) {
                m_state = State::escape;
            } else if (c == kCan || c == kSub || (c >= 0x40 && c <= 0x7e)) {
                m_state = State::ground; // the final byte, or the sequence abandoned
            } else if (c >= 0x30 && c <= 0x3f) {
                if (c == ';' || c == ':')
                    ++m_separators;
                keep = m_separators < kMaxParameters;
            }
            break;
        }
        if (!keep && !dropping) {
            scratch = bytes.first(i).toByteArray();
            dropping = true;
        } else if (keep && dropping) {
            scratch.append(c);
        }
    }
    return dropping ? QByteArrayView(scratch) : bytes;
}

} // namespace orwick
