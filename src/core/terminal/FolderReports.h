#pragma once
// FolderReports: finds the shell's reports of its working folder in a terminal's output — OSC 7,
// ESC ] 7 ; file://HOST/PATH ended by BEL or ESC \ — which bash, zsh and fish send from their
// prompt when set up to. Bytes come in any slices (a report may be split across reads); other
// output passes by untouched (it is only read here, the screen gets it all).
//
// A report longer than kMaxPayload is ignored whole, as are reports that are not file:// URLs,
// name another host, or hold no absolute path. The host may be empty, "localhost" or this
// machine's name. CAN or SUB abandon a report, as a terminal does.

#include "base/FilePath.h"

#include <QByteArray>
#include <QList>

namespace orwick {

class FolderReports {
public:
    static constexpr qsizetype kMaxPayload = 8192;

    // Reads more output; returns the folders reported in it, in order.
    QList<FilePath> scan(QByteArrayView bytes);

    // The folder of one report's payload ("file://host/path", percent-encoded), or nothing.
    static std::optional<FilePath> folderOf(QByteArrayView payload);

private:
    enum class State { ground, escape, number, payload, payloadEscape, otherString, otherStringEscape };
    State m_state = State::ground;
    QByteArray m_number;
    QByteArray m_payload;
    bool m_overflow = false;
};

} // namespace orwick
