// Staging one hunk, as the review panel does it, against `git apply --cached` of the same patch
// from the command line, in the same run on the same repository. Orwick's side is the work
// behind Space on a hunk: the patch built from the file's diff (buildPatch of the hunk) and
// GitRepository::applyPatch, which hands it to `git apply --cached` on its input through the
// runner. The peer is git alone, started the way a shell starts it: in the repository's folder,
// with the patch in a file and this process's environment. Each staging is undone (untimed)
// before the next, so every round stages into the same index; the two alternate round by round.
// Target: Orwick within 1.2 × the peer.
//   bench_git_stage_hunk REPOSITORY FILE [ROUNDS]      (FILE: a changed file, relative to REPOSITORY)

#include "UiBenchTiming.h"

#include "git/DiffPatch.h"
#include "git/GitRepository.h"
#include "git/GitRunner.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <numeric>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

using namespace orwick;

namespace {

// `git apply --cached PATCH` in `folder`, as typed at a prompt there; true when it succeeded.
bool applyFromCommandLine(const FilePath& git, const FilePath& folder, const QByteArray& patchFile)
{
    QList<QByteArray> arguments{git.native(), "apply", "--cached", patchFile};
    std::vector<char*> argv;
    for (QByteArray& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    pid_t child = -1;
    const int error = posix_spawn(&child, git.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    if (error == 0)
        waitpid(child, &status, 0);
    return error == 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 3 || !gitExecutable()) {
        std::fprintf(stderr, "usage: bench_git_stage_hunk REPOSITORY FILE [ROUNDS] (with git on PATH)\n");
        return 2;
    }
    const FilePath git = *gitExecutable();
    const FilePath root = FilePath::fromNative(argv[1]);
    const FilePath file = root.child(QByteArrayView(argv[2]));
    const int rounds = argc > 3 ? std::max(1, atoi(argv[3])) : 40;
    const GitRepository repository(git, root);

    // The diff the panel shows, and the hunk's patch written where the peer reads it.
    const Result<GitDiff> diff = repository.diff(file, false);
    const QList<FileDiff> files = diff ? parseUnifiedDiff(diff->patch) : QList<FileDiff>();
    if (files.size() != 1 || files.first().hunks.isEmpty()) {
        std::fprintf(stderr, "%s has no diff to stage\n", file.c_str());
        return 1;
    }
    const FileDiff& fileDiff = files.first();
    const QByteArray patch = buildPatch(fileDiff, hunkSelection(fileDiff, 0), PatchDirection::forward);
    QTemporaryDir scratch;
    const QByteArray patchFile = QFile::encodeName(scratch.filePath(QStringLiteral("hunk.patch")));
    QFile written(QFile::decodeName(patchFile));
    if (patch.isEmpty() || !scratch.isValid() || !written.open(QIODevice::WriteOnly) || written.write(patch) != patch.size()) {
        std::fprintf(stderr, "couldn't write the hunk's patch\n");
        return 1;
    }
    written.close();

    const auto unstage = [&] { return bool(repository.applyPatch(patch, PatchTarget::unstage)); };
    std::vector<double> peerTimes, orwickTimes;
    for (int round = -3; round < rounds; ++round) { // three rounds to warm up, not counted
        QElapsedTimer clock;
        clock.start();
        if (!applyFromCommandLine(git, root, patchFile)) {
            std::fprintf(stderr, "git apply --cached failed\n");
            return 1;
        }
        const double peerTime = milliseconds(clock);
        if (!unstage()) {
            std::fprintf(stderr, "unstaging the hunk failed\n");
            return 1;
        }
        clock.restart();
        const GitOutcome staged =
            repository.applyPatch(buildPatch(fileDiff, hunkSelection(fileDiff, 0), PatchDirection::forward), PatchTarget::stage);
        const double orwickTime = milliseconds(clock);
        if (!staged) {
            std::fprintf(stderr, "staging the hunk failed: %s\n", qPrintable(staged.text()));
            return 1;
        }
        if (!unstage()) {
            std::fprintf(stderr, "unstaging the hunk failed\n");
            return 1;
        }
        if (round >= 0) {
            peerTimes.push_back(peerTime);
            orwickTimes.push_back(orwickTime);
        }
    }

    const double meanRatio = mean(orwickTimes) / mean(peerTimes);
    const double medianRatio = median(orwickTimes) / median(peerTimes);
    std::printf("staging one hunk of %s in %s (%d rounds):\n", argv[2], root.c_str(), rounds);
    std::printf("  git apply --cached PATCH       %7.2f ms mean  %7.2f ms median\n", mean(peerTimes), median(peerTimes));
    std::printf("  Orwick (patch and applyPatch)  %7.2f ms mean  %7.2f ms median\n", mean(orwickTimes), median(orwickTimes));
    std::printf("  Orwick / git: %.3f (mean), %.3f (median); target <= 1.20\n", meanRatio, medianRatio);
    return medianRatio <= 1.2 ? 0 : 1;
}
