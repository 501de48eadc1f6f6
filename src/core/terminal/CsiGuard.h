#pragma once
// CsiGuard: keeps a program's control sequences within what the emulation can take. Debian's
// libvterm 0.1.4 has two faults a program's output can reach:
// - it writes past its argument array when a CSI sequence (ESC [ …) carries more than 16
//   parameters: the guard drops the parameters past the 16th (the emulation ignores them anyway);
// - it loops for ever on REP (ESC [ n b, "repeat the last character n times") when that character
//   has no width (nothing shown yet, or a lone combining mark): the guard cancels every CSI
//   sequence ending in "b" before it reaches the emulation (CAN) and, for a plain REP, writes
//   the repeated character itself, n times (at most kMaxRepeat), when it knows one.
// Everything else passes through unchanged. Sequences may be split across reads; the guard
// remembers where it was.

#include <QByteArray>
#include <QByteArrayView>

namespace orwick {

class CsiGuard {
public:
    static constexpr int kMaxParameters = 16;
    static constexpr int kMaxRepeat = 1024;

    // The output to feed on: `bytes` itself when nothing had to change, else `scratch` holding
    // the changed output.
    QByteArrayView filter(QByteArrayView bytes, QByteArray& scratch);

private:
    enum class State { ground, escape, csi };
    void noteText(unsigned char byte);

    State m_state = State::ground;
    int m_separators = 0;
    bool m_plainCsi = true; // no private marker or intermediate: a final "b" is REP
    int m_firstParameter = 0;
    char m_pending[4] = {}; // a UTF-8 character being read
    int m_pendingSize = 0;
    char m_lastShown[4] = {}; // the last character with a width, as bytes
    int m_lastShownSize = 0;
};

} // namespace orwick
