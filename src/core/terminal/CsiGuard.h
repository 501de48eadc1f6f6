#pragma once
// CsiGuard: keeps a program's control sequences within what the emulation can take. Debian's
// libvterm 0.1.4 writes past its argument array when a CSI sequence (ESC [ …) carries more than
// 16 parameters, so a program printing "\e[1;2;…;17m" could crash Orwick. The guard drops the
// parameters past the 16th (what the emulation would ignore anyway) and passes everything else
// through unchanged. Sequences may be split across reads; the guard remembers where it was.

#include <QByteArray>

namespace orwick {

class CsiGuard {
public:
    static constexpr int kMaxParameters = 16;

    // The output to feed on: `bytes` itself when nothing had to go, else `scratch` holding the rest.
    QByteArrayView filter(QByteArrayView bytes, QByteArray& scratch);

private:
    enum class State { ground, escape, csi };
    State m_state = State::ground;
    int m_separators = 0;
};

} // namespace orwick
