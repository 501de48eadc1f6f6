// Fuzzes the reader and the writer of the desktop's recently-used.xbel, which every program
// shares. Any list must read without crashing and give absolute paths, most recent first; adding
// a file to a list that reads cleanly must give a list that holds it, and keeps every other
// program's bookmark.

#include "FuzzCheck.h"
#include "platform/RecentFiles.h"

#include <QXmlStreamReader>
#include <fuzzer/FuzzedDataProvider.h>

using namespace orwick;
using fuzz::check;

namespace {

// True when the whole text is well-formed XML: only then can every bookmark be counted.
bool readsCleanly(const QByteArray& xbel)
{
    QXmlStreamReader xml(xbel);
    while (!xml.atEnd())
        xml.readNext();
    return !xml.hasError();
}

// True when the list names the bookmark and MIME namespaces as every desktop writes them, on its
// root and nowhere else: the writer adds elements with those prefixes.
bool usesTheStandardPrefixes(const QByteArray& xbel)
{
    QXmlStreamReader xml(xbel);
    bool root = true;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto declarations = xml.namespaceDeclarations();
        if (!root && !declarations.isEmpty())
            return false;
        if (root) {
            const auto declares = [&](QStringView prefix, QStringView uri) {
                return std::any_of(declarations.begin(), declarations.end(), [&](const QXmlStreamNamespaceDeclaration& d) {
                    return d.prefix() == prefix && d.namespaceUri() == uri;
                });
            };
            if (!declares(u"bookmark", u"http://www.freedesktop.org/standards/desktop-bookmarks")
                || !declares(u"mime", u"http://www.freedesktop.org/standards/shared-mime-info"))
                return false;
            root = false;
        }
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    FuzzedDataProvider data(bytes, size);
    const std::string name = data.ConsumeRandomLengthString(40);
    // A type as the MIME database names them: letters, digits and a few marks.
    QString mimeType = fuzz::textOf(data.ConsumeRandomLengthString(20));
    mimeType.removeIf([](QChar c) { return !c.isLetterOrNumber() && !QStringView(u"/+.-_").contains(c); });
    const std::string rest = data.ConsumeRemainingBytesAsString();
    const QByteArray list(rest.data(), qsizetype(rest.size()));

    const QList<RecentFiles::Entry> before = RecentFiles::parse(list);
    for (qsizetype i = 0; i < before.size(); ++i) {
        check(before[i].path.native().startsWith('/'), "a recent file has an absolute path");
        if (i > 0 && before[i - 1].lastUsed.isValid() && before[i].lastUsed.isValid())
            check(before[i - 1].lastUsed >= before[i].lastUsed, "recent files come latest first");
    }

    if (name.find('\0') != std::string::npos)
        return 0;
    const FilePath path = FilePath::fromNative(QByteArray("/home/user/") + name.c_str());
    const QDateTime now = QDateTime(QDate(2030, 1, 2), QTime(3, 4, 5), Qt::UTC);
    const QByteArray after = RecentFiles::adding(list, path, mimeType, now);
    if (!RecentFiles::isUtf8List(list)) {
        check(after == list, "a list declared in another encoding is left as it is");
        return 0;
    }
    if (!list.isEmpty() && (!readsCleanly(list) || !usesTheStandardPrefixes(list)))
        return 0;
    check(readsCleanly(after), "adding to a clean list gives a clean list");
    const QList<RecentFiles::Entry> read = RecentFiles::parse(after);
    const auto holds = [&](const RecentFiles::Entry& entry) {
        return std::any_of(read.begin(), read.end(), [&](const RecentFiles::Entry& e) {
            return e.path == entry.path && e.lastUsed == entry.lastUsed;
        });
    };
    check(holds({path, now}), "the added file is in the list, dated now");
    for (const RecentFiles::Entry& entry : before)
        if (entry.path != path)
            check(holds(entry), "every other bookmark is kept");
    return 0;
}
