#include "disktools/DiffText.h"

#include "disktools/EditScript.h"

#include <QFile>
#include <QHash>

namespace orwick::DiffText {

namespace {

// Numbers for lines (or words): equal text, equal number.
std::pair<std::vector<int>, std::vector<int>> numbered(const QStringList& a, const QStringList& b)
{
    QHash<QString, int> ids;
    auto number = [&ids](const QStringList& lines) {
        std::vector<int> out;
        out.reserve(size_t(lines.size()));
        for (const QString& line : lines) {
            auto id = ids.constFind(line);
            if (id == ids.cend())
                id = ids.insert(line, int(ids.size()));
            out.push_back(*id);
        }
        return out;
    };
    auto first = number(a);
    return {std::move(first), number(b)};
}

QString range(int start, int count)
{
    // Unified diff ranges: "start,count", or just "start" for one line; an empty side names the line before.
    if (count == 1)
        return QString::number(start + 1);
    return QStringLiteral("%1,%2").arg(count == 0 ? start : start + 1).arg(count);
}

std::optional<QByteArray> readStart(const FilePath& path, bool& cut)
{
    QFile file(path.text());
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray bytes = file.read(kMaxBytes + 1);
    cut = bytes.size() > kMaxBytes;
    if (cut)
        bytes.truncate(bytes.lastIndexOf('\n', kMaxBytes) + 1);
    return bytes;
}

QStringList words(const QString& line, std::vector<int>* starts)
{
    QStringList out;
    for (int i = 0; i < line.size();) {
        int j = i + 1;
        if (line[i].isLetterOrNumber() || line[i] == u'_')
            while (j < line.size() && (line[j].isLetterOrNumber() || line[j] == u'_'))
                ++j;
        out << line.mid(i, j - i);
        starts->push_back(i);
        i = j;
    }
    return out;
}

} // namespace

Kind kind(QStringView line)
{
    if (line.startsWith(u"--- ") || line.startsWith(u"+++ "))
        return Kind::file;
    if (line.startsWith(u"@@"))
        return Kind::hunk;
    if (line.startsWith(u'+'))
        return Kind::added;
    if (line.startsWith(u'-'))
        return Kind::removed;
    if (line.startsWith(u' ') || line.isEmpty())
        return Kind::context;
    return Kind::note;
}

QStringList linesOf(const QString& text)
{
    QStringList lines = text.split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    for (QString& line : lines)
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
    return lines;
}

QString unified(const QStringList& left, const QStringList& right, const QString& leftName, const QString& rightName, int context)
{
    const auto [a, b] = numbered(left, right);
    const std::vector<Edit> script = editScript(a, b, kMaxEdits);
    // Positions in both files at each step.
    struct Step {
        Edit edit;
        int x, y;
    };
    std::vector<Step> steps;
    steps.reserve(script.size());
    int x = 0, y = 0;
    for (Edit edit : script) {
        steps.push_back({edit, x, y});
        if (edit != Edit::add)
            ++x;
        if (edit != Edit::remove)
            ++y;
    }
    QString out;
    size_t i = 0;
    while (i < steps.size()) {
        while (i < steps.size() && steps[i].edit == Edit::keep)
            ++i;
        if (i == steps.size())
            break;
        // A hunk: from `context` lines before this change to `context` after the last change
        // that lies within 2 × context of the one before.
        size_t begin = i >= size_t(context) ? i - size_t(context) : 0;
        while (begin < i && steps[begin].edit != Edit::keep)
            ++begin;
        size_t end = i;
        size_t lastChange = i;
        for (size_t j = i; j < steps.size(); ++j) {
            if (steps[j].edit != Edit::keep)
                lastChange = j;
            else if (j - lastChange > size_t(2 * context))
                break;
        }
        end = std::min(steps.size(), lastChange + 1 + size_t(context));
        if (out.isEmpty())
            out += QStringLiteral("--- ") + leftName + QStringLiteral("\n+++ ") + rightName + QLatin1Char('\n');
        int leftCount = 0, rightCount = 0;
        for (size_t j = begin; j < end; ++j) {
            leftCount += steps[j].edit != Edit::add;
            rightCount += steps[j].edit != Edit::remove;
        }
        out += QStringLiteral("@@ -%1 +%2 @@\n").arg(range(steps[begin].x, leftCount), range(steps[begin].y, rightCount));
        for (size_t j = begin; j < end; ++j) {
            switch (steps[j].edit) {
            case Edit::keep: out += QLatin1Char(' ') + left[steps[j].x] + QLatin1Char('\n'); break;
            case Edit::remove: out += QLatin1Char('-') + left[steps[j].x] + QLatin1Char('\n'); break;
            case Edit::add: out += QLatin1Char('+') + right[steps[j].y] + QLatin1Char('\n'); break;
            }
        }
        i = end;
    }
    return out;
}

std::optional<Diff> diffFiles(const FilePath& left, const FilePath& right)
{
    bool leftCut = false, rightCut = false;
    const auto a = readStart(left, leftCut);
    const auto b = readStart(right, rightCut);
    if (!a || !b)
        return std::nullopt;
    const qsizetype sniff = 8192;
    if (a->left(sniff).contains('\0') || b->left(sniff).contains('\0'))
        return std::nullopt;
    Diff diff;
    diff.diff = unified(linesOf(QString::fromUtf8(*a)), linesOf(QString::fromUtf8(*b)), left.text(), right.text());
    if (leftCut || rightCut) {
        const QString note = QStringLiteral("Only the first %1 MB of each file are compared.").arg(kMaxBytes / (1024 * 1024));
        if (!diff.diff.isEmpty())
            diff.diff += note + QLatin1Char('\n');
        diff.emptyMessage = QStringLiteral("No differences in the text compared. ") + note;
    } else {
        diff.emptyMessage = QStringLiteral("No differences in the text");
    }
    return diff;
}

std::vector<Row> sideBySide(const QStringList& left, const QStringList& right)
{
    const auto [a, b] = numbered(left, right);
    const std::vector<Edit> script = editScript(a, b, kMaxEdits);
    std::vector<Row> rows;
    int x = 0, y = 0;
    std::vector<int> removed, added;
    auto flush = [&] {
        // Removed and added lines of one change stand side by side, pair by pair.
        const size_t n = std::max(removed.size(), added.size());
        for (size_t i = 0; i < n; ++i) {
            Row row;
            if (i < removed.size())
                row.left = removed[i];
            if (i < added.size())
                row.right = added[i];
            row.differs = true;
            rows.push_back(row);
        }
        removed.clear();
        added.clear();
    };
    for (Edit edit : script) {
        if (edit == Edit::keep) {
            flush();
            rows.push_back({x++, y++, false});
        } else if (edit == Edit::remove) {
            removed.push_back(x++);
        } else {
            added.push_back(y++);
        }
    }
    flush();
    return rows;
}

std::pair<Ranges, Ranges> changedWords(const QString& left, const QString& right)
{
    std::vector<int> leftStarts, rightStarts;
    const QStringList a = words(left, &leftStarts);
    const QStringList b = words(right, &rightStarts);
    const auto [na, nb] = numbered(a, b);
    const std::vector<Edit> script = editScript(na, nb, kMaxEdits);
    Ranges leftRanges, rightRanges;
    auto mark = [](Ranges& ranges, int start, int length) {
        if (!ranges.empty() && ranges.back().first + ranges.back().second == start)
            ranges.back().second += length; // one mark for neighbouring words
        else
            ranges.emplace_back(start, length);
    };
    int x = 0, y = 0;
    for (Edit edit : script) {
        if (edit == Edit::keep) {
            ++x;
            ++y;
        } else if (edit == Edit::remove) {
            mark(leftRanges, leftStarts[size_t(x)], int(a[x].size()));
            ++x;
        } else {
            mark(rightRanges, rightStarts[size_t(y)], int(b[y].size()));
            ++y;
        }
    }
    return {leftRanges, rightRanges};
}

} // namespace orwick::DiffText
