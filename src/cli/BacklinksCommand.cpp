// orwick-cli backlinks NOTE [--vault DIR]: the places where the notes of NOTE's vault link to it,
// read as the information panel reads them (BacklinkTable over BacklinkIndex::vaultFor), one
// line each in the form compilers and grep use: "path:line: text". Paths are relative to the
// working folder when inside it, else absolute.

#include "cli/CliCommand.h"
#include "cli/CliPaths.h"
#include "notes/BacklinkIndex.h"
#include "notes/BacklinkTable.h"
#include "notes/NoteFile.h"

#include <QDir>
#include <QElapsedTimer>
#include <cstdio>

namespace orwick::cli {
namespace {

QByteArray shownPath(const FilePath& path, const FilePath& workingFolder)
{
    if (workingFolder.isAncestorOf(path))
        return path.native().mid(workingFolder.native().size() + (workingFolder.isRoot() ? 0 : 1));
    return path.native();
}

// Line breaks can't be in a line's text; tabs stay.
QString flat(QString text) { return text.replace(u'\r', u' '); }

int backlinks(const Arguments& arguments)
{
    std::optional<QByteArray> noteArgument;
    std::optional<QByteArray> vaultArgument;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == "--vault") {
            if (i + 1 >= arguments.size())
                return usageError(QStringLiteral("--vault needs a folder; usage: orwick-cli backlinks NOTE [--vault DIR]"));
            vaultArgument = arguments[++i];
        } else if (!noteArgument) {
            noteArgument = arguments[i];
        } else {
            return usageError(QStringLiteral("backlinks takes one note; usage: orwick-cli backlinks NOTE [--vault DIR]"));
        }
    }
    if (!noteArgument)
        return usageError(QStringLiteral("usage: orwick-cli backlinks NOTE [--vault DIR]"));
    if (const auto problem = problemWith(*noteArgument, Expect::anything)) {
        err() << *problem << Qt::endl;
        return 1;
    }
    const FilePath note = pathArgument(*noteArgument);
    if (!notefile::isNote(note)) {
        err() << shownArgument(*noteArgument) << " isn\u2019t a Markdown note." << Qt::endl;
        return 1;
    }
    if (vaultArgument) {
        if (const auto problem = problemWith(*vaultArgument, Expect::folder)) {
            err() << *problem << Qt::endl;
            return 1;
        }
    }
    const FilePath vault = vaultArgument ? pathArgument(*vaultArgument) : BacklinkIndex::vaultFor(note);

    QElapsedTimer timer;
    timer.start();
    const BacklinkTable table = *BacklinkTable::build(vault);
    const qint64 elapsed = timer.elapsed();
    const QList<Backlink> links = table.backlinksOf(note);

    const FilePath workingFolder = FilePath::fromNative(QFile::encodeName(QDir::currentPath()));
    QByteArray buffer;
    for (const Backlink& link : links) {
        buffer += shownPath(link.note, workingFolder); // the name's own bytes, UTF-8 or not
        buffer += ':' + QByteArray::number(link.line) + ": " + flat(link.text).toUtf8() + '\n';
    }
    fwrite(buffer.constData(), 1, size_t(buffer.size()), stdout);
    fflush(stdout);
    if (links.isEmpty())
        err() << "No notes link to " << shownArgument(*noteArgument) << "." << Qt::endl;
    if (table.skipped() > 0)
        err() << counted(table.skipped(), "note") << " skipped: not UTF-8 text, too large or unreadable" << Qt::endl;
    err() << counted(table.noteCount(), "note") << " read in " << elapsed << " ms" << Qt::endl;
    return 0;
}

const CliRegistration registration({QStringLiteral("backlinks"), QStringLiteral("backlinks NOTE [--vault DIR]"),
                                    QStringLiteral("the places where other notes link to a note"), backlinks,
                                    QStringLiteral("One line a link, \"path:line: text\", by Markdown links and [[wikilinks]]\n"
                                                   "(links in code don't count). Paths are relative to the working folder when\n"
                                                   "inside it. The notes read are those of NOTE's vault: the folder above it\n"
                                                   "holding .obsidian, else NOTE's own folder, or DIR given with --vault.\n"
                                                   "Exit code 0 also when no note links to NOTE: nothing is printed then, and\n"
                                                   "\"No notes link to “NOTE”.\" goes to standard error, with the count of notes\n"
                                                   "read. Exit code 1 when NOTE isn't there or isn't a Markdown note.")});

} // namespace
} // namespace orwick::cli
