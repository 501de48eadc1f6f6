// LinkUpdater's pure text part: Markdown link targets and wikilink names rewritten after moves,
// leaving code, URLs and links that still reach their target exactly as written.

#include "base/PathParts.h"
#include "fileops/LinkUpdater.h"
#include "fileops/NoteName.h"
#include "notes/LinkSyntax.h"
#include "notes/NoteFile.h"

#include <QHash>
#include <QRegularExpression>
#include <string_view>
#include <unordered_map>

namespace orwick {

namespace {

using linksyntax::codeRanges;
using linksyntax::inCode;
using linksyntax::Range;

bool hasScheme(const QString& target) { return linksyntax::hasUrlScheme(target); }

// The moves of one batch looked up by path instead of one after another, for batches large enough
// that every link of every note scanning thousands of moves would cost more than the tables.
constexpr qsizetype kIndexedMoves = 64;

QString withoutNoteExtension(const QString& name, bool* hadExtension);

// The first move (in the batch's order) from each path, to each path, and of each note whose
// base name changes (by its old base, letter case folded). Each thread that rewrites notes for a
// batch builds it once and keeps it until it rewrites for another batch; the batch's list is held
// meanwhile, so its data can't come back as another list's.
struct MoveIndex {
    QList<FileMove> moves;
    std::unordered_map<std::string_view, qsizetype> byFrom;
    std::unordered_map<std::string_view, qsizetype> byTo;
    QHash<QString, qsizetype> byNoteBase;
};

std::string_view viewOf(QByteArrayView bytes) { return {bytes.data(), size_t(bytes.size())}; }

const MoveIndex& indexOf(const QList<FileMove>& moves)
{
    thread_local MoveIndex index;
    if (index.moves.constData() == moves.constData() && index.moves.size() == moves.size())
        return index;
    index = {};
    index.moves = moves;
    index.byFrom.reserve(size_t(moves.size()));
    index.byTo.reserve(size_t(moves.size()));
    for (qsizetype i = 0; i < index.moves.size(); ++i) {
        const FileMove& move = index.moves.at(i); // read only: the list stays shared with the batch's
        index.byFrom.try_emplace(viewOf(move.from.native()), i);
        index.byTo.try_emplace(viewOf(move.to.native()), i);
        if (!isNoteName(nameOf(move.from)))
            continue;
        bool fromExt = false;
        bool toExt = false;
        const QString oldBase = withoutNoteExtension(move.from.fileName(), &fromExt);
        if (oldBase != withoutNoteExtension(move.to.fileName(), &toExt))
            if (const QString key = oldBase.toCaseFolded(); !index.byNoteBase.contains(key))
                index.byNoteBase.insert(key, i);
    }
    return index;
}

// The first move whose path in `paths` is `path` or a folder above it; -1 for none.
qsizetype firstMoveAbove(const std::unordered_map<std::string_view, qsizetype>& paths, const FilePath& path)
{
    qsizetype first = -1;
    const auto look = [&](QByteArrayView candidate) {
        if (const auto found = paths.find(viewOf(candidate)); found != paths.end() && (first < 0 || found->second < first))
            first = found->second;
    };
    QByteArrayView at(path.native());
    look(at);
    while (at.size() > 1) {
        const qsizetype slash = at.lastIndexOf('/');
        if (slash < 0)
            break;
        at = slash == 0 ? QByteArrayView("/") : at.first(slash);
        look(at);
    }
    if (!path.isEmpty())
        look(QByteArrayView("")); // contains() takes an empty path for everything's ancestor
    return first;
}

// The bytes of a path written into a link: as is in angle brackets; else with blanks,
// parentheses, "%" and angle brackets encoded, or fully percent-encoded when the link was.
QString encodeTarget(const QByteArray& path, bool angle, bool wasEncoded)
{
    if (angle && isValidUtf8(path))
        return QString::fromUtf8(path);
    if (wasEncoded || !isValidUtf8(path))
        return QString::fromLatin1(path.toPercentEncoding("/!$&'*+,;=:@-._~"));
    QByteArray out;
    out.reserve(path.size() + 8);
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte <= 0x20 || c == '%' || c == '(' || c == ')' || c == '<' || c == '>' || byte == 0x7f)
            out += '%' + QByteArray::number(byte, 16).toUpper().rightJustified(2, '0');
        else
            out += c;
    }
    return QString::fromUtf8(out);
}

// The new form of one link target, or nothing to leave it as written.
std::optional<QString> relinkTarget(const QString& raw, const FilePath& oldFolder, const FilePath& newFolder,
                                    bool noteMoved, const QList<FileMove>& moves)
{
    const bool angle = raw.size() >= 2 && raw.startsWith(u'<') && raw.endsWith(u'>');
    const QString inner = angle ? raw.mid(1, raw.size() - 2).trimmed() : raw;
    if (inner.isEmpty() || hasScheme(inner) || inner.startsWith(u'#'))
        return std::nullopt;
    const qsizetype hash = inner.indexOf(u'#');
    const QString anchor = hash >= 0 ? inner.mid(hash) : QString();
    const QString pathText = hash >= 0 ? inner.left(hash) : inner;
    const QByteArray decoded = QByteArray::fromPercentEncoding(pathText.toUtf8());
    if (decoded.isEmpty())
        return std::nullopt;
    const bool absolute = decoded.startsWith('/');
    const FilePath target = absolute ? FilePath::fromNative(decoded) : FilePath::fromNative(oldFolder.native() + '/' + decoded);
    const FilePath newTarget = LinkUpdater::mapped(target, moves);
    if (newTarget == target && !noteMoved)
        return std::nullopt;
    QByteArray written;
    if (absolute) {
        if (newTarget == target)
            return std::nullopt;
        written = newTarget.native();
    } else {
        if (FilePath::fromNative(newFolder.native() + '/' + decoded) == newTarget)
            return std::nullopt; // still reaches it: kept as the writer wrote it
        written = LinkUpdater::relativePath(newFolder, newTarget);
    }
    if (decoded.endsWith('/') && !written.endsWith('/'))
        written += '/';
    QString out = encodeTarget(written, angle, pathText.contains(u'%')) + anchor;
    return angle ? u'<' + out + u'>' : out;
}

QString withoutNoteExtension(const QString& name, bool* hadExtension)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    *hadExtension = dot > 0 && notefile::isNote(FilePath::fromNative("/" + name.toUtf8()));
    return *hadExtension ? name.left(dot) : name;
}

// The new name of one wikilink name, or nothing.
std::optional<QString> renamedWikiName(const QString& name, const QList<FileMove>& moves, const FilePath& root)
{
    if (name.isEmpty() || hasScheme(name))
        return std::nullopt;
    bool hadExtension = false;
    const QString bare = withoutNoteExtension(name, &hadExtension);
    if (name.contains(u'/')) {
        const QByteArray relative = name.startsWith(u'/') ? name.mid(1).toUtf8() : name.toUtf8();
        const FilePath old = FilePath::fromNative(root.native() + '/' + relative + (hadExtension ? "" : ".md"));
        const FilePath now = LinkUpdater::mapped(old, moves);
        const FilePath newRoot = LinkUpdater::mapped(root, moves);
        if (now == old || !newRoot.isAncestorOf(now))
            return std::nullopt;
        QString out = QString::fromUtf8(now.native().mid(newRoot.native().size() + (newRoot.isRoot() ? 0 : 1)));
        if (!hadExtension && out.endsWith(QStringLiteral(".md")))
            out.chop(3);
        if (name.startsWith(u'/'))
            out.prepend(u'/');
        return out == name ? std::nullopt : std::optional<QString>(out);
    }
    if (moves.size() >= kIndexedMoves) {
        const MoveIndex& index = indexOf(moves);
        const qsizetype found = index.byNoteBase.value(bare.toCaseFolded(), -1);
        if (found < 0)
            return std::nullopt;
        const FileMove& move = index.moves[found];
        bool toExt = false;
        return hadExtension ? move.to.fileName() : withoutNoteExtension(move.to.fileName(), &toExt);
    }
    for (const FileMove& move : moves) {
        if (!isNoteName(nameOf(move.from)))
            continue;
        bool fromExt = false;
        bool toExt = false;
        const QString oldBase = withoutNoteExtension(move.from.fileName(), &fromExt);
        const QString newBase = withoutNoteExtension(move.to.fileName(), &toExt);
        if (oldBase == newBase || bare.compare(oldBase, Qt::CaseInsensitive) != 0)
            continue;
        if (hadExtension)
            return move.to.fileName();
        return newBase;
    }
    return std::nullopt;
}

// Replaces, in `text`, the first capture of each match of `pattern` outside code by what
// `replace` makes of it.
template <class Replace>
QString replaceCaptures(const QString& text, const QRegularExpression& pattern, Replace replace)
{
    QList<Range> code;
    bool codeKnown = false;
    QString out;
    qsizetype copied = 0;
    auto matches = pattern.globalMatch(text);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        const qsizetype start = match.capturedStart(1);
        const std::optional<QString> replacement = replace(match.captured(1));
        if (!replacement)
            continue;
        if (!codeKnown) {
            code = codeRanges(text);
            codeKnown = true;
        }
        if (inCode(code, start))
            continue;
        out += QStringView(text).mid(copied, start - copied);
        out += *replacement;
        copied = match.capturedEnd(1);
    }
    if (copied == 0)
        return text;
    out += QStringView(text).mid(copied);
    return out;
}

} // namespace

QByteArray LinkUpdater::relativePath(const FilePath& folder, const FilePath& file)
{
    const QList<QByteArray> from = folder.native().split('/');
    const QList<QByteArray> to = file.native().split('/');
    qsizetype common = 0;
    while (common < from.size() && common < to.size() && from[common] == to[common])
        ++common;
    QByteArray out;
    for (qsizetype i = common; i < from.size(); ++i) {
        if (!from[i].isEmpty())
            out += "../";
    }
    for (qsizetype i = common; i < to.size(); ++i) {
        if (to[i].isEmpty())
            continue;
        out += to[i];
        out += '/';
    }
    if (out.endsWith('/'))
        out.chop(1);
    return out.isEmpty() ? QByteArray(".") : out;
}

FilePath LinkUpdater::mapped(const FilePath& path, const QList<FileMove>& moves)
{
    if (moves.size() >= kIndexedMoves) {
        const MoveIndex& index = indexOf(moves);
        const qsizetype found = firstMoveAbove(index.byFrom, path);
        if (found < 0)
            return path;
        const FileMove& move = index.moves[found];
        if (move.from == path)
            return move.to;
        return FilePath::fromNative(move.to.native() + path.native().mid(move.from.native().size()));
    }
    for (const FileMove& move : moves) {
        if (move.from == path)
            return move.to;
        if (move.from.isAncestorOf(path))
            return FilePath::fromNative(move.to.native() + path.native().mid(move.from.native().size()));
    }
    return path;
}

FilePath LinkUpdater::unmapped(const FilePath& path, const QList<FileMove>& moves)
{
    if (moves.size() >= kIndexedMoves) {
        const MoveIndex& index = indexOf(moves);
        const qsizetype found = firstMoveAbove(index.byTo, path);
        if (found < 0)
            return path;
        const FileMove& move = index.moves[found];
        if (move.to == path)
            return move.from;
        return FilePath::fromNative(move.from.native() + path.native().mid(move.to.native().size()));
    }
    for (const FileMove& move : moves) {
        if (move.to == path)
            return move.from;
        if (move.to.isAncestorOf(path))
            return FilePath::fromNative(move.from.native() + path.native().mid(move.to.native().size()));
    }
    return path;
}

QString LinkUpdater::relink(const QString& text, const FilePath& oldFolder, const FilePath& newFolder, bool noteMoved,
                            const QList<FileMove>& moves)
{
    const QRegularExpression& link = linksyntax::markdownTarget();
    if (!text.contains(QStringLiteral("](")))
        return text;
    return replaceCaptures(text, link, [&](const QString& target) {
        return relinkTarget(target, oldFolder, newFolder, noteMoved, moves);
    });
}

QString LinkUpdater::renameWikilinks(const QString& text, const QList<FileMove>& moves, const FilePath& root)
{
    const QRegularExpression& wikilink = linksyntax::wikilinkName();
    if (!text.contains(QStringLiteral("[[")))
        return text;
    return replaceCaptures(text, wikilink, [&](const QString& captured) -> std::optional<QString> {
        const QString name = captured.trimmed();
        const std::optional<QString> renamed = renamedWikiName(name, moves, root);
        if (!renamed)
            return std::nullopt;
        const qsizetype lead = captured.indexOf(name);
        return captured.left(lead) + *renamed + captured.mid(lead + name.size());
    });
}

std::optional<QString> LinkUpdater::rewrite(const QString& text, const FilePath& oldNote, const FilePath& note,
                                            const QList<FileMove>& moves, const FilePath& root)
{
    QString out = relink(text, oldNote.parent(), note.parent(), oldNote != note, moves);
    out = renameWikilinks(out, moves, root.isEmpty() ? oldNote.parent() : root);
    if (out == text)
        return std::nullopt;
    return out;
}

std::optional<QByteArray> LinkUpdater::rewriteBytes(const QByteArray& bytes, const FilePath& oldNote, const FilePath& note,
                                                    const QList<FileMove>& moves, const FilePath& root)
{
    if (!bytes.contains("](") && !bytes.contains("[["))
        return std::nullopt;
    if (!isValidUtf8(bytes))
        return std::nullopt;
    const bool byteOrderMark = bytes.startsWith("\xEF\xBB\xBF");
    const QString text = QString::fromUtf8(byteOrderMark ? bytes.mid(3) : bytes);
    const std::optional<QString> rewritten = rewrite(text, oldNote, note, moves, root);
    if (!rewritten)
        return std::nullopt;
    return notefile::noteBytes(*rewritten, byteOrderMark);
}

} // namespace orwick
