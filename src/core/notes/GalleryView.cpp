#include "notes/GalleryView.h"

#include "files/FileCategory.h"
#include "notes/NoteFile.h"

#include <QRegularExpression>
#include <QStringDecoder>
#include <QUrl>
#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick {

int GalleryView::columns() const
{
    const int inner = std::max(0, width - 2 * padding);
    return std::max(1, (inner + spacing) / std::max(1, minCardWidth + spacing));
}

int GalleryView::cardWidth() const
{
    const int n = columns();
    const int inner = std::max(0, width - 2 * padding);
    return std::max(minCardWidth / 2, (inner - (n - 1) * spacing) / n);
}

QRect GalleryView::cardRect(int index) const
{
    const int n = columns();
    const int w = cardWidth();
    return QRect(padding + (index % n) * (w + spacing), padding + (index / n) * (cardHeight + spacing), w, cardHeight);
}

int GalleryView::contentHeight(int count) const
{
    const int rows = (count + columns() - 1) / columns();
    return 2 * padding + rows * cardHeight + std::max(0, rows - 1) * spacing;
}

int GalleryView::indexAt(QPoint point, int count) const
{
    const int n = columns();
    const int w = cardWidth();
    const int x = point.x() - padding, y = point.y() - padding;
    if (x < 0 || y < 0 || x % (w + spacing) >= w || y % (cardHeight + spacing) >= cardHeight)
        return -1;
    const int column = x / (w + spacing);
    if (column >= n)
        return -1;
    const int index = (y / (cardHeight + spacing)) * n + column;
    return index < count ? index : -1;
}

int GalleryView::moved(int index, int rows, int columnsBy, int count) const
{
    if (count <= 0)
        return -1;
    if (index < 0)
        return 0;
    const int target = index + rows * columns() + columnsBy;
    if (rows != 0 && (target < 0 || target >= count)) // down into a shorter last row: its last card
        return rows > 0 && index / columns() < (count - 1) / columns() ? count - 1 : index;
    return std::clamp(target, 0, count - 1);
}

std::optional<FilePath> firstImage(const FilePath& note, const QString& text)
{
    static const QRegularExpression pattern(
        QStringLiteral("!\\[[^\\]\\n]*\\]\\(\\s*<?([^)>\\n]+?)>?(?:\\s+\"[^\"]*\")?\\s*\\)|!\\[\\[([^\\]|#\\n]+)"));
    const FilePath folder = note.parent();
    for (auto it = pattern.globalMatch(text); it.hasNext();) {
        const auto match = it.next();
        FilePath candidate;
        if (match.hasCaptured(2)) {
            candidate = folder.child(match.captured(2).trimmed());
        } else {
            const QString target = match.captured(1).trimmed();
            static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]*:"));
            if (target.startsWith(QStringLiteral("file:")))
                candidate = FilePath::fromUrl(QUrl(target));
            else if (scheme.match(target).hasMatch())
                continue;
            else {
                const QByteArray bytes = QByteArray::fromPercentEncoding(target.toUtf8());
                candidate = bytes.startsWith('/') ? FilePath::fromNative(bytes) : FilePath::fromNative(folder.native() + '/' + bytes);
            }
        }
        struct stat st {};
        if (::stat(candidate.c_str(), &st) == 0 && S_ISREG(st.st_mode))
            return candidate;
    }
    return std::nullopt;
}

std::optional<FilePath> coverOf(const FileItem& item)
{
    if (item.isFolder)
        return std::nullopt;
    if (item.category == FileCategory::image)
        return item.url;
    if (!notefile::isNote(item.url))
        return std::nullopt;
    const int fd = ::open(item.url.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return std::nullopt;
    QByteArray head(64 * 1024, Qt::Uninitialized);
    const ssize_t got = ::read(fd, head.data(), size_t(head.size()));
    ::close(fd);
    head.resize(std::max<ssize_t>(0, got));
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(head);
    return firstImage(item.url, text);
}

} // namespace orwick
