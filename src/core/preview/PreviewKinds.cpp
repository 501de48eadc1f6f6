// The loaders of PreviewLoader.h for notes, tables, pictures, fonts, archives and folders.

#include "preview/PreviewLoader.h"

#include "base/Formatting.h"
#include "preview/ArchiveListing.h"
#include "preview/DelimitedTable.h"
#include "preview/FileHead.h"
#include "preview/FolderSummary.h"
#include "preview/FontSample.h"
#include "preview/ImageDecode.h"
#include "preview/MarkdownRender.h"
#include "preview/TextDecoding.h"

#include <QLocale>

namespace orwick::preview {

namespace {

QString number(qint64 value) { return QLocale(QLocale::English).toString(value); }

QString dimensions(QSize size) { return QStringLiteral("%1 × %2").arg(number(size.width()), number(size.height())); }

} // namespace

namespace {

// Renders the note text in `content` (its HTML, and its pictures decoded off the GUI thread,
// small enough for the panel's column); false when cancelled.
bool renderNote(PreviewContent& content, const PreviewRequest& request, const CancelFlag& cancel)
{
    content.kind = PreviewContent::Kind::markdown;
    RenderedNote note = renderMarkdown(content.text, request.path.parent());
    content.html = std::move(note.html);
    const QSize box(std::min(request.columnWidth, 800), 800);
    int decoded = 0;
    for (const RenderedNote::Picture& picture : note.pictures) {
        if (cancel.isCancelled())
            return false;
        if (picture.file.isEmpty() || decoded >= request.limits.markdownImages)
            continue;
        ++decoded;
        if (auto image = decodeImage(picture.file, box, request.limits, cancel))
            content.images.insert(picture.url, std::move(image->image));
    }
    return true;
}

} // namespace

PreviewContent loadMarkdown(const PreviewRequest& request, const CancelFlag& cancel)
{
    PreviewContent content = loadText(request, cancel);
    if (content.kind != PreviewContent::Kind::text)
        return content; // a failure, a cancel, or a binary file named .md
    return renderNote(content, request, cancel) ? content : PreviewContent{};
}

PreviewContent renderNoteText(const QString& text, const PreviewRequest& request, const CancelFlag& cancel)
{
    PreviewContent content;
    content.path = request.path;
    content.title = request.path.fileName();
    content.text = text;
    return renderNote(content, request, cancel) ? content : PreviewContent{};
}

PreviewContent loadTable(const PreviewRequest& request, const CancelFlag& cancel)
{
    PreviewContent content = loadText(request, cancel);
    if (content.kind != PreviewContent::Kind::text)
        return content;
    const QStringView text(content.text);
    const qsizetype lineEnd = text.indexOf(u'\n');
    const QChar separator = separatorFor(request.path.extension().toLower(), lineEnd < 0 ? text : text.first(lineEnd));
    DelimitedTable table = parseDelimited(text, separator, request.limits.tableRows + 1, request.limits.tableColumns);
    if (table.rows.isEmpty())
        return content; // an empty file: shown as empty text
    content.kind = PreviewContent::Kind::table;
    content.header = table.rows.takeFirst();
    content.rows = std::move(table.rows);
    content.text.clear();
    QStringList notes;
    if (!content.note.isEmpty())
        notes.append(content.note);
    if (table.isPartial)
        notes.append(QStringLiteral("Showing the first %1 rows").arg(number(content.rows.size())));
    content.note = notes.join(QStringLiteral(" · "));
    return content;
}

PreviewContent loadImage(const PreviewRequest& request, const CancelFlag& cancel)
{
    PreviewContent content = loadDetails(request, PreviewContent::Kind::image);
    auto decoded = decodeImage(request.path, request.box, request.limits, cancel);
    if (cancel.isCancelled())
        return {};
    if (!decoded) {
        PreviewContent failed = PreviewContent::failed(request.path, decoded.error().message);
        failed.details = content.details;
        if (decoded.error().size.isValid())
            failed.details.prepend(dimensions(decoded.error().size));
        return failed;
    }
    content.details.prepend(dimensions(decoded->size));
    content.pixelSize = decoded->size;
    content.image = std::move(decoded->image);
    return content;
}

PreviewContent loadFont(const PreviewRequest& request, const CancelFlag& cancel)
{
    PreviewContent content = loadDetails(request, PreviewContent::Kind::font);
    auto sample = drawFontSample(request.path, request.limits.fontBytes, request.box.width(), request.ink, cancel);
    if (cancel.isCancelled())
        return {};
    if (!sample)
        return PreviewContent::failed(request.path, sample.error());
    content.details.prepend(sample->style.isEmpty() ? sample->family : sample->family + QStringLiteral(" ") + sample->style);
    content.image = std::move(sample->image);
    return content;
}

PreviewContent loadArchive(const PreviewRequest& request, const CancelFlag& cancel)
{
    PreviewContent content = loadDetails(request, PreviewContent::Kind::archive);
    const ArchiveListing listing = listArchive(request.path, request.limits, cancel);
    if (cancel.isCancelled())
        return {};
    if (!listing.opened || (listing.entries.isEmpty() && !listing.problem.isEmpty()))
        return PreviewContent::failed(request.path, listing.problem);
    content.header = {QStringLiteral("Name"), QStringLiteral("Size")};
    qint64 total = 0;
    for (const ArchiveEntry& entry : listing.entries) {
        QString name = entry.name;
        if (entry.isUnsafe) {
            name += QStringLiteral("  (points outside the archive)");
            ++content.unsafeEntries;
        }
        content.rows.append({name, entry.isFolder ? QStringLiteral("—") : entry.size < 0 ? QString() : formatByteCount(entry.size)});
        total += std::max<qint64>(entry.size, 0);
    }
    content.details.append(formatCount(listing.entries.size(), QStringLiteral("entry"), QStringLiteral("entries"))
                           + QStringLiteral(", ") + formatByteCount(total) + QStringLiteral(" unpacked"));
    QStringList notes;
    if (listing.isPartial && listing.problem.isEmpty())
        notes.append(QStringLiteral("Showing the first %1 entries").arg(number(listing.entries.size())));
    if (!listing.problem.isEmpty())
        notes.append(listing.problem);
    if (content.unsafeEntries > 0)
        notes.append(formatCount(content.unsafeEntries, QStringLiteral("entry"), QStringLiteral("entries"))
                     + QStringLiteral(" would land outside the folder it’s extracted into"));
    content.note = notes.join(QStringLiteral(" · "));
    return content;
}

PreviewContent loadFolder(const PreviewRequest& request, const CancelFlag& cancel)
{
    PreviewContent content;
    content.kind = PreviewContent::Kind::folder;
    content.path = request.path;
    content.title = request.path.fileName().isEmpty() ? request.path.text() : request.path.fileName();
    const FolderCounts counts = countFolder(request.path, cancel);
    if (cancel.isCancelled())
        return {};
    content.details = describeCounts(counts);
    content.measuresSize = counts.readable && counts.items > 0;
    return content;
}

} // namespace orwick::preview
