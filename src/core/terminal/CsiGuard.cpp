#include "terminal/CsiGuard.h"

#include <QChar>
#include <QList>
#include <QString>

#include <algorithm>

namespace orwick {

namespace {
constexpr char kEsc = 0x1b, kCan = 0x18, kSub = 0x1a;
constexpr qsizetype kTail = 16; // bytes read back from the end of plain output

// Bytes a UTF-8 character starting with `lead` takes, 0 for a byte that can't start one.
int utf8Length(unsigned char lead)
{
    if (lead < 0x80)
        return 1;
    if (lead >= 0xc2 && lead <= 0xdf)
        return 2;
    if (lead >= 0xe0 && lead <= 0xef)
        return 3;
    if (lead >= 0xf0 && lead <= 0xf4)
        return 4;
    return 0;
}

bool hasWidth(QByteArrayView character)
{
    const QString text = QString::fromUtf8(character);
    if (text.isEmpty() || text.contains(QChar::ReplacementCharacter))
        return false;
    switch (QChar::category(text.toUcs4().value(0))) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Mark_SpacingCombining:
    case QChar::Other_Format:
    case QChar::Other_Control:
        return false;
    default:
        return true;
    }
}
} // namespace

void CsiGuard::noteText(unsigned char byte)
{
    if (byte < 0x80) {
        m_pendingSize = 0;
        if (byte >= 0x20 && byte < 0x7f) {
            m_lastShown[0] = char(byte);
            m_lastShownSize = 1;
        }
        return;
    }
    if (byte < 0xc0) { // a continuation
        if (m_pendingSize == 0 || m_pendingSize >= 4)
            return;
        m_pending[m_pendingSize++] = char(byte);
    } else {
        m_pending[0] = char(byte);
        m_pendingSize = 1;
    }
    const int length = utf8Length(static_cast<unsigned char>(m_pending[0]));
    if (length == 0) {
        m_pendingSize = 0;
    } else if (m_pendingSize == length) {
        if (hasWidth(QByteArrayView(m_pending, length))) {
            std::copy_n(m_pending, length, m_lastShown);
            m_lastShownSize = length;
        }
        m_pendingSize = 0;
    }
}

QByteArrayView CsiGuard::filter(QByteArrayView bytes, QByteArray& scratch)
{
    bool rewriting = false; // scratch holds bytes[0, i) as changed so far
    const auto startRewriting = [&](qsizetype i) {
        if (!rewriting) {
            scratch = bytes.first(i).toByteArray();
            rewriting = true;
        }
    };
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const char c = bytes[i];
        const auto u = static_cast<unsigned char>(c);
        bool keep = true;
        switch (m_state) {
        case State::ground:
            if (c == kEsc) {
                m_state = State::escape;
                m_pendingSize = 0;
            } else {
                // Plain output up to the next escape: only its last characters can be repeated.
                qsizetype end = bytes.sliced(i).indexOf(kEsc);
                end = end < 0 ? bytes.size() : i + end;
                m_pendingSize = end - i > kTail ? 0 : m_pendingSize;
                for (qsizetype k = std::max(i, end - kTail); k < end; ++k)
                    noteText(static_cast<unsigned char>(bytes[k]));
                if (rewriting)
                    scratch.append(bytes.sliced(i, end - i));
                i = end - 1;
                continue;
            }
            break;
        case State::escape:
            // The emulation stays in its escape state through control characters, bytes past
            // ASCII and intermediates; only a final byte (or CAN, SUB) ends it.
            if (c == '[') {
                m_state = State::csi;
                m_separators = 0;
                m_plainCsi = true;
                m_firstParameter = 0;
            } else if (c == kCan || c == kSub || (u >= 0x30 && u <= 0x7e)) {
                m_state = State::ground;
            }
            break;
        case State::csi:
            if (c == kEsc) {
                m_state = State::escape;
            } else if (c == kCan || c == kSub) {
                m_state = State::ground;
            } else if (u >= 0x40 && u <= 0x7e) {
                m_state = State::ground;
                if (c == 'b') { // REP (or a sequence the emulation might take for one): cancelled
                    startRewriting(i);
                    scratch.append(kCan);
                    for (int n = std::clamp(m_firstParameter, 1, kMaxRepeat); m_plainCsi && n > 0 && m_lastShownSize > 0; --n)
                        scratch.append(m_lastShown, m_lastShownSize);
                    continue;
                }
            } else if (u >= 0x30 && u <= 0x3f) {
                if (c == ';' || c == ':')
                    ++m_separators;
                else if (c >= '0' && c <= '9' && m_separators == 0)
                    m_firstParameter = std::min(m_firstParameter * 10 + (c - '0'), kMaxRepeat);
                else if (c >= 0x3c)
                    m_plainCsi = false; // a private marker
                keep = m_separators < kMaxParameters;
            } else if (u >= 0x20 && u <= 0x2f) {
                m_plainCsi = false; // an intermediate
            }
            break;
        }
        if (!keep)
            startRewriting(i);
        else if (rewriting)
            scratch.append(c);
    }
    return rewriting ? QByteArrayView(scratch) : bytes;
}

} // namespace orwick
