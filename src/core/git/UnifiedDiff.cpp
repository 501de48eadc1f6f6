#include "git/UnifiedDiff.h"

#include <optional>

namespace orwick {

namespace {

bool startsWith(QByteArrayView line, QByteArrayView prefix) { return line.startsWith(prefix); }

// "12" or "12,3" from a hunk header; a missing count is 1, as in the unified format.
bool readRange(QByteArrayView text, int& start, int& count)
{
    const qsizetype comma = text.indexOf(',');
    bool okStart = false;
    bool okCount = true;
    start = (comma < 0 ? text : text.first(comma)).toInt(&okStart);
    count = comma < 0 ? 1 : text.sliced(comma + 1).toInt(&okCount);
    // No file has a billion lines; larger numbers are damage, and would overflow the arithmetic.
    constexpr int kMostLines = 1 << 30;
    return okStart && okCount && start >= 0 && count >= 0 && start < kMostLines && count < kMostLines;
}

// "@@ -a,b +c,d @@ section" → a hunk without lines; none when the line isn't one.
std::optional<DiffHunk> readHunkHeader(QByteArrayView line)
{
    if (!startsWith(line, "@@ -"))
        return std::nullopt;
    const qsizetype close = line.indexOf(" @@", 4);
    if (close < 0)
        return std::nullopt;
    const QByteArrayView ranges = line.sliced(4, close - 4);
    const qsizetype space = ranges.indexOf(' ');
    if (space < 0 || space + 1 >= ranges.size() || ranges[space + 1] != '+')
        return std::nullopt;
    DiffHunk hunk;
    if (!readRange(ranges.first(space), hunk.oldStart, hunk.oldCount)
        || !readRange(ranges.sliced(space + 2), hunk.newStart, hunk.newCount))
        return std::nullopt;
    hunk.section = line.sliced(close + 3).trimmed().toByteArray();
    return hunk;
}

// The name written after "--- " or "+++ ": without the trailing tab git adds to names with
// blanks, unquoted, and without the side's one-letter prefix ("a/", "b/", "i/", "w/"…).
QByteArray nameFromMarker(QByteArrayView marker)
{
    if (marker.endsWith('\t'))
        marker.chop(1);
    if (marker == "/dev/null")
        return {};
    QByteArray name = unquoteGitPath(marker);
    if (name.size() > 2 && name[1] == '/')
        name.remove(0, 2);
    return name;
}

// The two names of "diff --git a/x b/y" when they can be told apart (quoted, or the same name
// on both sides); otherwise both empty, and the later header lines name the files.
std::pair<QByteArray, QByteArray> namesFromGitLine(QByteArrayView rest)
{
    auto strip = [](QByteArray name) {
        if (name.size() > 2 && name[1] == '/')
            name.remove(0, 2);
        return name;
    };
    if (rest.startsWith('"')) {
        qsizetype end = 1;
        while (end < rest.size() && rest[end] != '"')
            end += rest[end] == '\\' ? 2 : 1;
        if (end + 2 > rest.size())
            return {};
        return {strip(unquoteGitPath(rest.first(end + 1))), strip(unquoteGitPath(rest.sliced(end + 2)))};
    }
    const qsizetype half = (rest.size() - 1) / 2;
    if (rest.size() >= 5 && rest.size() % 2 == 1 && rest[half] == ' ' && rest.sliced(2, half - 2) == rest.sliced(half + 3))
        return {strip(rest.first(half).toByteArray()), strip(rest.sliced(half + 1).toByteArray())};
    return {};
}

class Reader {
public:
    QList<FileDiff> read(QByteArrayView diff)
    {
        qsizetype at = 0;
        while (at < diff.size()) {
            qsizetype end = diff.indexOf('\n', at);
            if (end < 0)
                end = diff.size();
            line(diff.sliced(at, end - at));
            at = end + 1;
        }
        return std::move(m_files);
    }

private:
    void line(QByteArrayView text)
    {
        if (m_hunk && lineOfHunk(text))
            return;
        m_hunk = nullptr;
        if (startsWith(text, "diff --git ")) {
            FileDiff file;
            file.header.append(text.toByteArray());
            const auto [oldName, newName] = namesFromGitLine(text.sliced(11));
            file.oldName = oldName;
            file.newName = newName;
            m_files.append(std::move(file));
            return;
        }
        if (const std::optional<DiffHunk> hunk = readHunkHeader(text)) {
            if (m_files.isEmpty())
                m_files.append(FileDiff{});
            FileDiff& file = m_files.last();
            file.hunks.append(*hunk);
            m_hunk = &file.hunks.last();
            m_hunk->isComplete = hunk->oldCount == 0 && hunk->newCount == 0;
            m_oldLeft = hunk->oldCount;
            m_newLeft = hunk->newCount;
            return;
        }
        // A diff without git's own header starts its file at the "--- " line.
        if (startsWith(text, "--- ") && (m_files.isEmpty() || !m_files.last().hunks.isEmpty()))
            m_files.append(FileDiff{});
        if (m_files.isEmpty() || !m_files.last().hunks.isEmpty())
            return; // not part of any file: a warning or a stray line
        headerLine(m_files.last(), text);
    }

    void headerLine(FileDiff& file, QByteArrayView text)
    {
        file.header.append(text.toByteArray());
        if (startsWith(text, "--- ")) {
            file.oldMarker = text.sliced(4).toByteArray();
            file.oldName = nameFromMarker(file.oldMarker);
            file.isNew = file.oldName.isEmpty();
        } else if (startsWith(text, "+++ ")) {
            file.newMarker = text.sliced(4).toByteArray();
            file.newName = nameFromMarker(file.newMarker);
            file.isDeleted = file.newName.isEmpty();
        } else if (startsWith(text, "new file mode ")) {
            file.isNew = true;
            file.oldName.clear();
        } else if (startsWith(text, "deleted file mode ")) {
            file.isDeleted = true;
            file.newName.clear();
        } else if (startsWith(text, "rename from ") || startsWith(text, "copy from ")) {
            file.isRename = startsWith(text, "rename");
            file.oldName = unquoteGitPath(text.sliced(text.indexOf(" from ") + 6));
        } else if (startsWith(text, "rename to ") || startsWith(text, "copy to ")) {
            file.newName = unquoteGitPath(text.sliced(text.indexOf(" to ") + 4));
        } else if ((startsWith(text, "Binary files ") && text.endsWith(" differ")) || text == "GIT binary patch") {
            file.isBinary = true;
        }
    }

    // Takes the line into the open hunk; false when it belongs to what follows the hunk.
    bool lineOfHunk(QByteArrayView text)
    {
        if (text.startsWith('\\')) {
            if (!m_hunk->lines.isEmpty())
                m_hunk->lines.last().hasNewline = false;
            return true;
        }
        if (m_oldLeft == 0 && m_newLeft == 0)
            return false;
        const char marker = text.isEmpty() ? ' ' : text[0];
        DiffLine diffLine;
        switch (marker) {
        case ' ':
            if (m_oldLeft == 0 || m_newLeft == 0)
                return stop();
            --m_oldLeft;
            --m_newLeft;
            break;
        case '-':
            if (m_oldLeft == 0)
                return stop();
            --m_oldLeft;
            break;
        case '+':
            if (m_newLeft == 0)
                return stop();
            --m_newLeft;
            break;
        default:
            return stop();
        }
        diffLine.kind = DiffLine::Kind(marker);
        diffLine.text = text.isEmpty() ? QByteArray() : text.sliced(1).toByteArray();
        m_hunk->lines.append(std::move(diffLine));
        if (m_oldLeft == 0 && m_newLeft == 0)
            m_hunk->isComplete = true;
        return true;
    }

    bool stop()
    {
        m_hunk->isComplete = false;
        m_hunk = nullptr;
        return false;
    }

    QList<FileDiff> m_files;
    DiffHunk* m_hunk = nullptr; // the hunk being read, inside m_files' last file
    int m_oldLeft = 0;
    int m_newLeft = 0;
};

} // namespace

QByteArray DiffHunk::headerLine() const
{
    QByteArray line = "@@ -" + QByteArray::number(oldStart);
    if (oldCount != 1)
        line += ',' + QByteArray::number(oldCount);
    line += " +" + QByteArray::number(newStart);
    if (newCount != 1)
        line += ',' + QByteArray::number(newCount);
    line += " @@";
    if (!section.isEmpty())
        line += ' ' + section;
    return line;
}

int FileDiff::lineCount() const
{
    int count = 0;
    for (const DiffHunk& hunk : hunks)
        count += int(hunk.lines.size());
    return count;
}

QByteArray unquoteGitPath(QByteArrayView written)
{
    if (written.size() < 2 || !written.startsWith('"') || !written.endsWith('"'))
        return written.toByteArray();
    const QByteArrayView inner = written.sliced(1, written.size() - 2);
    QByteArray name;
    name.reserve(inner.size());
    for (qsizetype i = 0; i < inner.size(); ++i) {
        const char c = inner[i];
        if (c != '\\' || i + 1 >= inner.size()) {
            name.append(c);
            continue;
        }
        const char e = inner[++i];
        switch (e) {
        case 'a': name.append('\a'); break;
        case 'b': name.append('\b'); break;
        case 'f': name.append('\f'); break;
        case 'n': name.append('\n'); break;
        case 'r': name.append('\r'); break;
        case 't': name.append('\t'); break;
        case 'v': name.append('\v'); break;
        default:
            if (e >= '0' && e <= '3' && i + 2 < inner.size() && inner[i + 1] >= '0' && inner[i + 1] <= '7'
                && inner[i + 2] >= '0' && inner[i + 2] <= '7') {
                name.append(char(((e - '0') << 6) | ((inner[i + 1] - '0') << 3) | (inner[i + 2] - '0')));
                i += 2;
            } else {
                name.append(e); // "\"" and "\\", and anything git wouldn't write
            }
        }
    }
    return name;
}

QList<FileDiff> parseUnifiedDiff(QByteArrayView diff) { return Reader().read(diff); }

} // namespace orwick
