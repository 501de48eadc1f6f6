#pragma once
// OutputPieces: cuts a program's output into the pieces the screen feeds the emulation one at a
// time, so it can tell a line the terminal wrapped at the right edge from one the program ended:
// - a text piece holds only characters to show (outside any control sequence), at most
//   `maxCharacters` of them: with at most half the screen's width in it, the emulation can
//   wrap a line at most once while showing it;
// - a line feed (LF, VT, FF) is a piece of its own, wherever it stands;
// - everything else (other controls, escape sequences, strings) comes in pieces between them.
// Escape sequences and strings may be split across reads: the splitter remembers where it was.
// The pieces together are the bytes given, in order.

#include <QByteArrayView>

#include <functional>

namespace orwick {

class OutputPieces {
public:
    enum class Kind { text, lineFeed, other };
    using Piece = std::function<void(QByteArrayView bytes, Kind kind)>;

    void split(QByteArrayView bytes, int maxCharacters, const Piece& piece);

private:
    enum class State { ground, escape, csi, string, stringEscape };
    void advance(unsigned char byte);

    State m_state = State::ground;
};

} // namespace orwick
