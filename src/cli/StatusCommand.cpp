// orwick-cli status DIR: the git status of the repository holding DIR, as the window reads it
// (the git benchmark's hook). Prints the branch line, one line per changed file (change, staged,
// unstaged, path) and a summary with the ignored count.

#include "cli/CliCommand.h"
#include "cli/CliPaths.h"
#include "git/RepositoryRoot.h"
#include "git/StatusReader.h"

#include <cstdio>

namespace orwick::cli {
namespace {

QByteArray summary(const RepoStatus& status)
{
    int counts[6] = {};
    for (const RepoStatus::File& file : status.files)
        ++counts[int(file.change)];
    QStringList parts;
    for (int kind = 0; kind < 6; ++kind)
        if (counts[kind] > 0)
            parts.append(QStringLiteral("%1 %2").arg(counts[kind]).arg(changeName(Change(kind))));
    QString line = QStringLiteral("%1 changed").arg(status.files.size());
    if (!parts.isEmpty())
        line += QStringLiteral(" (%1)").arg(parts.join(QStringLiteral(", ")));
    line += QStringLiteral(", %1 ignored\n").arg(status.ignored.paths->size());
    return line.toUtf8();
}

int status(const Arguments& arguments)
{
    if (arguments.size() != 1)
        return usageError(QStringLiteral("usage: orwick-cli status DIR"));
    if (const auto problem = problemWith(arguments.first(), Expect::folder)) {
        err() << *problem << Qt::endl;
        return 1;
    }
    const FilePath folder = pathArgument(arguments.first());
    const auto& executable = gitExecutable();
    if (!executable) {
        err() << gitMissingMessage() << Qt::endl;
        return 1;
    }
    const auto root = findRepositoryRoot(folder);
    if (!root) {
        err() << folder.text() << ": not inside a git repository" << Qt::endl;
        return 1;
    }
    const auto status = readStatus(*executable, *root);
    if (!status) {
        err() << root->text() << ": " << status.error() << Qt::endl;
        return 1;
    }

    // Printed in one write: printing must not cost more than the read.
    QByteArray text = "branch " + (status->branch.isEmpty() ? QByteArray("(unknown)") : status->branch.toUtf8());
    text += ", ahead " + QByteArray::number(status->ahead) + ", behind " + QByteArray::number(status->behind) + '\n';
    if (status->operation)
        text += status->operation->toUtf8() + '\n';
    QByteArray names[6]; // each kind's name, converted once
    for (int kind = 0; kind < 6; ++kind)
        names[kind] = changeName(Change(kind)).toLatin1();
    text.reserve(text.size() + status->files.size() * 64);
    for (const RepoStatus::File& file : status->files) {
        text += names[int(file.change)];
        text += file.isStaged ? "\tstaged" : "\t-";
        text += file.hasUnstaged ? "\tunstaged\t" : "\t-\t";
        text += file.nativePath.isEmpty() ? file.path.toUtf8() : file.nativePath; // the name as on disk
        text += '\n';
    }
    text += summary(*status);
    fwrite(text.constData(), 1, size_t(text.size()), stdout);
    return 0;
}

const CliRegistration registration({QStringLiteral("status"), QStringLiteral("status DIR"),
                                     QStringLiteral("git status of the repository holding DIR"), status});

} // namespace
} // namespace orwick::cli
