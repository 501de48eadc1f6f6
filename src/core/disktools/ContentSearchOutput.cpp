#include "disktools/ContentSearchOutput.h"

#include <QRegularExpression>
#include <cstring>

namespace orwick::ContentSearch {

namespace {

const char* find(const char* from, const char* end, char c)
{
    return static_cast<const char*>(memchr(from, c, size_t(end - from)));
}

} // namespace

QByteArrayView cutToColumns(QByteArrayView text)
{
    if (text.size() <= kMaxColumns)
        return text;
    // Characters as a UTF-8 decoder counts them: a lead byte with the continuation bytes it
    // announces is one, and so is every byte that belongs to none (shown as a replacement mark).
    int characters = 0;
    for (qsizetype i = 0; i < text.size(); ++characters) {
        if (characters == kMaxColumns)
            return text.first(i);
        const uchar lead = uchar(text[i]);
        const int length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF8 ? 4 : 1;
        ++i;
        for (int more = 1; more < length && i < text.size() && (uchar(text[i]) & 0xC0) == 0x80; ++more)
            ++i;
    }
    return text;
}

void OutputReader::read(QByteArrayView bytes, std::vector<FileMatches>& batch)
{
    if (m_offset > 0 && m_offset == m_pending.size()) {
        m_pending.clear();
        m_offset = 0;
    }
    m_pending.append(bytes.data(), bytes.size());
    while (takeRecord(batch, false)) {
    }
    // Keep only the unfinished record.
    if (m_offset > (1 << 16)) {
        m_pending.remove(0, m_offset);
        m_offset = 0;
    }
}

void OutputReader::finish(std::vector<FileMatches>& batch)
{
    while (takeRecord(batch, false)) {
    }
    if (m_offset < m_pending.size())
        takeRecord(batch, true);
    m_pending.clear();
    m_offset = 0;
}

bool OutputReader::takeRecord(std::vector<FileMatches>& batch, bool atEnd)
{
    const char* start = m_pending.constData() + m_offset;
    const char* end = m_pending.constData() + m_pending.size();
    if (start == end)
        return false;
    const char* nul = find(start, end, '\0');
    if (!nul) {
        if (atEnd)
            m_offset = m_pending.size();
        return false;
    }
    // The line number, then ":" (rg, grep) or NUL (git grep).
    const char* p = nul + 1;
    qint64 line = 0;
    int digits = 0;
    while (p < end && *p >= '0' && *p <= '9' && digits < 18) {
        line = line * 10 + (*p - '0');
        ++p;
        ++digits;
    }
    if (p == end && !atEnd)
        return false;
    const bool wellFormed = digits > 0 && p < end && (*p == ':' || *p == '\0');
    const char* textStart = wellFormed ? p + 1 : p;
    const char* newline = find(textStart, end, '\n');
    if (!newline && !atEnd)
        return false;
    const char* textEnd = newline ? newline : end;
    if (wellFormed)
        add(QByteArrayView(start, nul), line, QByteArrayView(textStart, textEnd), batch);
    m_offset = (newline ? newline + 1 : end) - m_pending.constData();
    return true;
}

void OutputReader::add(QByteArrayView path, qint64 line, QByteArrayView text, std::vector<FileMatches>& batch)
{
    if (path.startsWith("./"))
        path = path.sliced(2);
    if (path.isEmpty())
        return;
    if (batch.empty() || batch.back().path != path) {
        FileMatches file;
        file.path = path.toByteArray();
        file.url = m_folder.child(path);
        if (!m_folder.isAncestorOf(file.url))
            return; // the tools search "." and never print a path outside it
        batch.push_back(std::move(file));
    }
    ++m_matches;
    batch.back().matches.push_back({line, cutToColumns(text).toByteArray()});
}

std::optional<QString> failureMessage(int exitStatus, const QByteArray& errors)
{
    if (exitStatus == 0 || exitStatus == 1)
        return std::nullopt;
    const QString all = QString::fromUtf8(errors);
    const QStringList lines = all.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    // Complaints about one file ("rg: ./x: Permission denied (os error 13)") are not the search failing.
    static const QRegularExpression aboutAFile(QStringLiteral("^(rg|grep|warning|error): (\\./|/)|Permission denied|No such file"));
    QStringList kept;
    for (const QString& line : lines)
        if (!aboutAFile.match(line).hasMatch())
            kept << line.trimmed();
    if (kept.isEmpty())
        return std::nullopt;
    QString message = kept.last();
    static const QRegularExpression toolPrefix(QStringLiteral("^(rg: |grep: |git: |fatal: |error: )+"));
    message.remove(toolPrefix);
    // git: "-e option, '(foo': Unmatched ( or \(" — the pattern is the user's own, said back.
    static const QRegularExpression echoedPattern(QStringLiteral("^(-e option|command line), '.*': "));
    message.remove(echoedPattern);
    if (all.contains(QLatin1String("regex parse error")))
        message = QStringLiteral("regex parse error: ") + message;
    if (message.isEmpty())
        return std::nullopt;
    message[0] = message[0].toUpper();
    return message;
}

} // namespace orwick::ContentSearch
