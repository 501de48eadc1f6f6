#include "files/FileCategory.h"

#include <QHash>
#include <deque>
#include <QMimeDatabase>
#include <QMutex>
#include <QSet>

namespace orwick {

namespace {

// Extensions that the MIME database does not know as source code, counted as code on purpose
// ("toml", "lock" and "env" too, though they look like data).
const QSet<QString>& codeExtensions()
{
    static const QSet<QString> set{"ts", "tsx", "jsx", "vue", "svelte", "rs", "go", "kt", "dart", "zig", "lua", "toml", "lock", "env"};
    return set;
}

const QSet<QString>& diskImageTypes()
{
    static const QSet<QString> set{
        "application/x-cd-image", "application/x-iso9660-image", "application/x-apple-diskimage",
        "application/x-raw-disk-image", "application/vnd.efi.iso", "application/vnd.efi.img",
        "application/x-qemu-disk", "application/x-vmdk-disk", "application/x-virtualbox-vdi",
        "application/x-virtualbox-vmdk", "application/x-virtualbox-vhd", "application/x-virtualbox-vhdx",
        "application/x-virtualbox-qcow", "application/x-raw-disk-image-xz-compressed"};
    return set;
}

const QSet<QString>& archiveTypes()
{
    static const QSet<QString> set{
        "application/zip", "application/x-tar", "application/gzip", "application/x-gzip",
        "application/x-bzip", "application/x-bzip2", "application/x-xz", "application/x-lzma",
        "application/x-7z-compressed", "application/vnd.rar", "application/x-rar", "application/zstd",
        "application/x-zstd-compressed-tar", "application/x-compressed-tar", "application/x-bzip-compressed-tar",
        "application/x-bzip2-compressed-tar", "application/x-xz-compressed-tar", "application/x-lzma-compressed-tar",
        "application/x-archive", "application/x-cpio", "application/x-lz4", "application/x-lzip",
        "application/x-compress", "application/x-arj", "application/x-lha", "application/x-ace",
        "application/vnd.ms-cab-compressed", "application/x-stuffit", "application/x-xar"};
    return set;
}

const QSet<QString>& codeTypes()
{
    static const QSet<QString> set{
        "application/x-shellscript", "application/x-perl", "application/x-php", "application/x-ruby",
        "application/javascript", "text/javascript", "application/x-javascript", "application/typescript",
        "text/css", "text/x-python", "text/x-python3", "text/rust", "text/x-go", "text/x-java",
        "application/x-m4", "application/x-awk", "application/x-csh", "text/x-cmake", "text/x-makefile"};
    return set;
}

// text/x-* types that are prose or formats, not programs.
const QSet<QString>& nonCodeTextTypes()
{
    static const QSet<QString> set{
        "text/x-log", "text/x-readme", "text/x-changelog", "text/x-copying", "text/x-authors", "text/x-install",
        "text/x-nfo", "text/x-credits", "text/x-gettext-translation", "text/x-gettext-translation-template",
        "text/x-markdown", "text/x-bibtex", "text/x-vcard", "text/x-vcalendar", "text/x-csv", "text/x-opml+xml",
        "text/x-mpsub", "text/x-subviewer", "text/x-ssa", "text/x-microdvd", "text/x-uuencode", "text/x-rst",
        "text/x-txt2tags", "text/x-org", "text/x-troff-man", "text/x-tex", "text/x-texinfo", "text/x-iptables",
        "text/x-ms-regedit", "text/x-mrml", "text/x-sql"};
    return set;
}

const QSet<QString>& dataTypes()
{
    static const QSet<QString> set{
        "application/json", "application/xml", "text/xml", "application/x-yaml", "application/yaml", "text/yaml",
        "text/csv", "text/x-csv", "text/tab-separated-values", "application/vnd.sqlite3", "application/x-sqlite3",
        "application/x-sqlite2", "application/sql", "text/x-sql", "application/x-dbf", "application/vnd.ms-access",
        "application/x-ipynb+json", "application/toml"};
    return set;
}

bool anyIn(const QStringList& names, const QSet<QString>& set)
{
    for (const QString& name : names)
        if (set.contains(name))
            return true;
    return false;
}

FileCategory conformance(const QMimeType& type)
{
    const QString name = type.name();
    QStringList all = type.allAncestors();
    all.prepend(name);
    auto anyPrefixed = [&](QLatin1StringView prefix) {
        for (const QString& n : all)
            if (n.startsWith(prefix))
                return true;
        return false;
    };
    if (anyPrefixed(QLatin1StringView("image/")))
        return FileCategory::image;
    if (anyPrefixed(QLatin1StringView("video/")))
        return FileCategory::video;
    if (anyPrefixed(QLatin1StringView("audio/")))
        return FileCategory::audio;
    if (all.contains(QStringLiteral("application/pdf")))
        return FileCategory::pdf;
    if (anyIn(all, diskImageTypes()))
        return FileCategory::diskImage;
    // Office documents are zip files inside; they are documents, not archives.
    if (archiveTypes().contains(name) || (!name.startsWith(QLatin1StringView("application/vnd.")) && anyIn(all, archiveTypes())))
        return FileCategory::archive;
    const bool isText = anyPrefixed(QLatin1StringView("text/"));
    // JSON descends from JavaScript in the MIME tree, but it is data, not a program.
    const bool isDataItself = dataTypes().contains(name) || name.endsWith(QLatin1StringView("+json")) || name.endsWith(QLatin1StringView("+xml"));
    if (!isDataItself && anyIn(all, codeTypes()) || (isText && name.startsWith(QLatin1StringView("text/x-")) && !nonCodeTextTypes().contains(name)
                                    && !dataTypes().contains(name)))
        return FileCategory::code;
    if (anyIn(all, dataTypes()) || name.endsWith(QLatin1StringView("+json")) || name.endsWith(QLatin1StringView("+xml")))
        return FileCategory::data;
    if (isText)
        return FileCategory::text;
    return FileCategory::other;
}

} // namespace

const ExtensionType& typeOfExtension(const QString& lowerExtension)
{
    static QMutex mutex;
    static QHash<QString, const ExtensionType*> cache;
    {
        QMutexLocker lock(&mutex);
        auto found = cache.constFind(lowerExtension);
        if (found != cache.constEnd())
            return **found;
    }
    ExtensionType type;
    if (!lowerExtension.isEmpty()) {
        static const QMimeDatabase database;
        const QMimeType mime = database.mimeTypeForFile(QStringLiteral("x.") + lowerExtension, QMimeDatabase::MatchExtension);
        if (mime.isValid() && !mime.isDefault()) {
            type.known = true;
            type.category = conformance(mime);
            type.kind = kindOfMimeComment(mime.comment());
        }
    }
    QMutexLocker lock(&mutex);
    auto found = cache.constFind(lowerExtension);
    if (found != cache.constEnd())
        return **found;
    // A deque keeps every entry where it is, so the references handed out stay valid.
    static std::deque<ExtensionType> store;
    store.push_back(type);
    cache.insert(lowerExtension, &store.back());
    return store.back();
}

QString kindOfMimeComment(const QString& comment)
{
    if (comment.isEmpty() || !comment.front().isLower())
        return comment;
    return comment.front().toUpper() + comment.mid(1);
}

FileCategory categorize(const QString& ext, bool isFolder, bool isPackage)
{
    if (isFolder)
        return FileCategory::folder;
    if (ext == QLatin1StringView("app"))
        return FileCategory::app;
    if (codeExtensions().contains(ext))
        return FileCategory::code;
    const ExtensionType& type = typeOfExtension(ext);
    if (!type.known || type.category == FileCategory::other)
        return isPackage ? FileCategory::package : FileCategory::other;
    return type.category;
}

bool isPackageExtension(const QString& ext)
{
    static const QSet<QString> set{
        "app", "bundle", "framework", "plugin", "kext", "appex", "xpc", "photoslibrary", "musiclibrary",
        "tvlibrary", "xcodeproj", "xcworkspace", "playground", "rtfd", "pages", "numbers", "key", "logicx",
        "band", "fcpbundle", "lrlibrary", "lrdata", "sparsebundle", "pkg", "mpkg", "imovielibrary", "theater",
        "scptd", "prefpane", "saver"};
    return !ext.isEmpty() && set.contains(ext);
}

QString categoryName(FileCategory category)
{
    switch (category) {
    case FileCategory::folder: return QStringLiteral("folder");
    case FileCategory::app: return QStringLiteral("app");
    case FileCategory::package: return QStringLiteral("package");
    case FileCategory::image: return QStringLiteral("image");
    case FileCategory::video: return QStringLiteral("video");
    case FileCategory::audio: return QStringLiteral("audio");
    case FileCategory::pdf: return QStringLiteral("pdf");
    case FileCategory::archive: return QStringLiteral("archive");
    case FileCategory::code: return QStringLiteral("code");
    case FileCategory::data: return QStringLiteral("data");
    case FileCategory::text: return QStringLiteral("text");
    case FileCategory::diskImage: return QStringLiteral("diskImage");
    case FileCategory::other: return QStringLiteral("other");
    }
    return QStringLiteral("other");
}

} // namespace orwick
