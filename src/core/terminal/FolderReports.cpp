#include "terminal/FolderReports.h"

#include <QHostInfo>
#include <QUrl>

namespace orwick {

namespace {
constexpr char kEsc = 0x1b, kBel = 0x07, kCan = 0x18, kSub = 0x1a;
}

std::optional<FilePath> FolderReports::folderOf(QByteArrayView payload)
{
    static const QByteArray scheme = "file://";
    if (!payload.startsWith(scheme))
        return std::nullopt;
    const QByteArrayView rest = payload.sliced(scheme.size());
    const qsizetype slash = rest.indexOf('/');
    if (slash < 0)
        return std::nullopt;
    const QString host = QString::fromUtf8(rest.first(slash));
    if (!host.isEmpty() && host.compare(QStringLiteral("localhost"), Qt::CaseInsensitive) != 0
        && host.compare(QHostInfo::localHostName(), Qt::CaseInsensitive) != 0)
        return std::nullopt;
    const QByteArray path = QByteArray::fromPercentEncoding(rest.sliced(slash).toByteArray());
    if (path.isEmpty() || path.front() != '/' || path.contains('\0'))
        return std::nullopt;
    return FilePath::fromNative(path);
}

QList<FilePath> FolderReports::scan(QByteArrayView bytes)
{
    QList<FilePath> found;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const char c = bytes[i];
        if ((c == kCan || c == kSub) && m_state != State::ground) {
            m_state = State::ground;
            continue;
        }
        switch (m_state) {
        case State::ground: {
            // Most output has no escape at all: jump to the next one.
            const qsizetype next = bytes.sliced(i).indexOf(kEsc);
            if (next < 0)
                return found;
            i += next;
            m_state = State::escape;
            break;
        }
        case State::escape:
            if (c == ']') {
                m_state = State::number;
                m_number.clear();
            } else {
                m_state = c == kEsc ? State::escape : State::ground;
            }
            break;
        case State::number:
            if (c >= '0' && c <= '9' && m_number.size() < 8) {
                m_number.append(c);
            } else if (c == ';' && m_number == "7") {
                m_state = State::payload;
                m_payload.clear();
                m_overflow = false;
            } else if (c == kBel) {
                m_state = State::ground;
            } else {
                m_state = c == kEsc ? State::otherStringEscape : State::otherString;
            }
            break;
        case State::payload:
        case State::payloadEscape:
            if (c == kBel || (m_state == State::payloadEscape && c == '\\')) {
                if (!m_overflow)
                    if (auto folder = folderOf(m_payload))
                        found.append(*folder);
                m_state = State::ground;
            } else if (c == kEsc) {
                m_state = State::payloadEscape;
            } else if (m_state == State::payloadEscape) {
                m_state = c == ']' ? State::number : State::ground; // ESC starting something else ends the string
                m_number.clear();
            } else if (m_payload.size() < kMaxPayload) {
                m_payload.append(c);
            } else {
                m_overflow = true;
            }
            break;
        case State::otherString:
        case State::otherStringEscape:
            if (c == kBel || (m_state == State::otherStringEscape && c == '\\'))
                m_state = State::ground;
            else
                m_state = c == kEsc ? State::otherStringEscape : State::otherString;
            break;
        }
    }
    return found;
}

} // namespace orwick
