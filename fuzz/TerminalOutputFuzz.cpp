// Fuzzes what a program in the terminal panel may print: the bytes go, in slices cut where the
// input says, through the folder-report scanner and the emulation (libvterm behind the CSI
// guard) of a small screen with a short scrollback. Nothing may crash; every folder reported is
// absolute; the screen keeps its size and the scrollback its limit; keys and pastes still work
// after any output.

#include "FuzzCheck.h"
#include "terminal/FolderReports.h"
#include "terminal/TerminalScreen.h"

using namespace orwick;
using fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    const QByteArray bytes = fuzz::bytesOf(data + 1, size - 1);
    const int slice = 1 + data[0] % 64; // where reads end, as a pseudo-terminal cuts them
    qsizetype answered = 0;
    TerminalScreen screen(6, 12, [&](QByteArrayView reply) { answered += reply.size(); }, 20);
    FolderReports reports;
    for (qsizetype at = 0; at < bytes.size(); at += slice) {
        const QByteArrayView piece = QByteArrayView(bytes).sliced(at, std::min<qsizetype>(slice, bytes.size() - at));
        for (const FilePath& folder : reports.scan(piece))
            check(folder.native().startsWith('/'), "a reported folder is absolute");
        screen.feed(piece);
        check(screen.scrollback().size() <= 20, "the scrollback keeps its limit");
    }
    check(screen.rows() == 6 && screen.cols() == 12, "output doesn't change the screen's size");
    check(screen.cursorRow() >= 0 && screen.cursorRow() < 6 && screen.cursorCol() >= 0 && screen.cursorCol() <= 12,
          "the cursor stays on the screen");
    for (int64_t line = screen.firstLine(); line < screen.endLine(); ++line)
        (void)screen.lineAt(line);
    (void)screen.screenText();
    screen.resize(3, 30);
    screen.resize(9, 5);
    screen.sendText(QStringLiteral("x"));
    screen.paste(QStringLiteral("pasted\n"));
    check(answered > 0, "keys still reach the program");
    return 0;
}
