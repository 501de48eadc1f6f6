#include "preview/PreviewLoader.h"

#include "base/Formatting.h"
#include "files/FileCategory.h"
#include "notes/NoteFile.h"
#include "platform/DirectoryReader.h"
#include "platform/ErrorText.h"
#include "preview/FileHead.h"
#include "preview/TextDecoding.h"

#include <cerrno>

namespace orwick {

namespace {

bool isTable(const QString& extension)
{
    return extension == QLatin1StringView("csv") || extension == QLatin1StringView("tsv") || extension == QLatin1StringView("tab");
}

bool isFont(const QString& extension)
{
    return extension == QLatin1StringView("ttf") || extension == QLatin1StringView("otf") || extension == QLatin1StringView("ttc")
        || extension == QLatin1StringView("otc");
}

// Image formats Qt decodes; other "image" extensions (raw camera files, PSD) get their details.
bool isDecodableImage(const QString& extension)
{
    static const QStringList known{"png", "jpg", "jpeg", "jpe", "gif", "bmp", "webp", "svg", "svgz", "ico", "tif",
                                   "tiff", "tga", "ppm", "pgm", "pbm", "xpm", "xbm", "wbmp", "icns", "jp2", "heic", "avif"};
    return known.contains(extension);
}

} // namespace

PreviewContent loadPreview(const PreviewRequest& request, const CancelFlag& cancel)
{
    using Kind = PreviewContent::Kind;
    if (request.path.isEmpty() || cancel.isCancelled())
        return {};
    const auto st = statPath(request.path, FollowLinks::yes);
    if (!st) {
        const int error = errno;
        if (statPath(request.path, FollowLinks::no))
            return PreviewContent::failed(request.path, QStringLiteral("“%1” is a broken link.").arg(request.path.fileName()));
        return PreviewContent::failed(request.path, QStringLiteral("Can’t read “%1”: %2.").arg(request.path.fileName(), errorReason(error)));
    }
    if (st->isDirectory())
        return preview::loadFolder(request, cancel);
    if (!st->isRegular())
        return preview::loadDetails(request, Kind::details);
    const QString extension = request.path.extension().toLower();
    if (notefile::isNote(request.path))
        return preview::loadMarkdown(request, cancel);
    if (isTable(extension))
        return preview::loadTable(request, cancel);
    if (isFont(extension))
        return preview::loadFont(request, cancel);
    switch (categorize(extension, false, false)) {
    case FileCategory::image:
        return isDecodableImage(extension) ? preview::loadImage(request, cancel) : preview::loadDetails(request, Kind::details);
    case FileCategory::pdf: return preview::loadDetails(request, Kind::pdf);
    case FileCategory::archive:
    case FileCategory::diskImage: {
        PreviewContent listed = preview::loadArchive(request, cancel);
        if (listed.kind != Kind::message)
            return listed;
        break; // not an archive libarchive reads: its first bytes, as any file
    }
    case FileCategory::audio:
    case FileCategory::video: return preview::loadDetails(request, Kind::details);
    default: break;
    }
    return preview::loadText(request, cancel);
}

namespace preview {

PreviewContent loadDetails(const PreviewRequest& request, PreviewContent::Kind kind)
{
    PreviewContent content;
    content.kind = kind;
    content.path = request.path;
    content.title = request.path.fileName();
    const QString extension = request.path.extension().toLower();
    const QString typeName = typeOfExtension(extension).kind;
    if (!typeName.isEmpty())
        content.details.append(typeName);
    if (const auto st = statPath(request.path, FollowLinks::yes); st && st->isRegular())
        content.details.append(formatByteCount(st->size));
    return content;
}

PreviewContent loadText(const PreviewRequest& request, const CancelFlag& cancel)
{
    const auto head = readHead(request.path, request.limits.textBytes, cancel);
    if (!head)
        return PreviewContent::failed(request.path, head.error());
    if (cancel.isCancelled())
        return {};
    PreviewContent content = loadDetails(request, PreviewContent::Kind::text);
    if (looksBinary(head->bytes)) {
        content.kind = PreviewContent::Kind::hex;
        const QByteArrayView shown = QByteArrayView(head->bytes).first(std::min<qsizetype>(head->bytes.size(), request.limits.hexBytes));
        content.text = preview::hexDump(shown);
        if (shown.size() < head->size)
            content.note = firstPartNote(shown.size(), head->size);
        return content;
    }
    preview::DecodedText decoded = preview::decodeText(head->bytes, request.limits.lineChars);
    content.text = std::move(decoded.text);
    content.language = request.path.fileName();
    QStringList notes;
    if (!head->isWhole())
        notes.append(firstPartNote(head->bytes.size(), head->size));
    notes += decoded.notes;
    content.note = notes.join(QStringLiteral(" · "));
    if (head->size == 0)
        content.note = QStringLiteral("Empty file");
    return content;
}

} // namespace preview

} // namespace orwick
