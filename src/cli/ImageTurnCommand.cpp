// orwick-cli image rotate left|right FILE... and image flip horizontal|vertical FILE...: turns
// pictures in place the way the window's "Image: Rotate Left" and its siblings do — the same
// core function (turnedBytes: a JPEG without loss, through its orientation) through the
// engine's replaceInPlace, so each file is written atomically and its old bytes kept.
//
// Every picture that isn't turned is said on standard error with its reason. Standard output gets
// the engine's toast when all went well ("Rotated 3 files"), else the count of what was done out
// of what was asked, and the exit status is 1.

#include "cli/CliPaths.h"
#include "cli/EngineRun.h"
#include "cli/ImageCommand.h"
#include "images/ImageTurn.h"

namespace orwick::cli {
namespace {

FileOperations::TransformTexts textsFor(PictureTurn turn, qsizetype count)
{
    const bool flip = turn == PictureTurn::flipHorizontal || turn == PictureTurn::flipVertical;
    return {turnTitle(turn), (flip ? QStringLiteral("Flipping ") : QStringLiteral("Rotating ")) + counted(count, "picture"),
            turnTitle(turn), turnSymbol(turn), flip ? QStringLiteral("Flipped") : QStringLiteral("Rotated")};
}

int turnPictures(PictureTurn turn, const Arguments& arguments)
{
    if (arguments.isEmpty())
        return usageError(kImageUsage);
    const QList<FilePath> files = usableItems(arguments);

    EngineRun run(/*followLinks=*/false);
    qsizetype done = 0;
    run.sayReports();
    if (!files.isEmpty()) {
        const auto transform = [turn](const FilePath& file, const CancelFlag& cancel) { return turnedBytes(file, turn, cancel); };
        run.operations().replaceInPlace(files, textsFor(turn, files.size()), transform, nullptr,
                                        [&](const QList<FilePath>& changed) { done += changed.size(); });
        run.wait();
    }

    const qsizetype asked = arguments.size();
    const QString& announcement = run.announcement();
    if (done == asked) {
        out() << (announcement.isEmpty() ? textsFor(turn, asked).done + u' ' + counted(asked, "picture") : announcement) << Qt::endl;
        return 0;
    }
    out() << textsFor(turn, asked).done << ' ' << done << " of " << counted(asked, "picture") << "; " << asked - done << " failed"
          << Qt::endl;
    return 1;
}

// The first argument names the way: "left" or "right", "horizontal" or "vertical".
int rotate(const Arguments& arguments)
{
    const QByteArray way = arguments.value(0);
    if (way != "left" && way != "right")
        return usageError(kImageUsage);
    return turnPictures(way == "left" ? PictureTurn::left : PictureTurn::right, arguments.mid(1));
}

int flip(const Arguments& arguments)
{
    const QByteArray way = arguments.value(0);
    if (way != "horizontal" && way != "vertical")
        return usageError(kImageUsage);
    return turnPictures(way == "horizontal" ? PictureTurn::flipHorizontal : PictureTurn::flipVertical, arguments.mid(1));
}

const ImageFormRegistration rotateRegistration({"rotate", rotate});
const ImageFormRegistration flipRegistration({"flip", flip});

} // namespace
} // namespace orwick::cli
