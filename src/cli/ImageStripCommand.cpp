// orwick-cli image strip FILE... [--location]: removes the metadata of pictures in place, the way
// the window's "Remove Metadata" and "Remove Location" do: the same core function
// (strippedBytes), through the engine's replaceInPlace, so each file is written atomically and
// its old bytes kept for undo.
//
// Every picture that isn't done is said on standard error with its reason (one that isn't there,
// isn't a picture Orwick can change, or is read-only). Standard output gets the engine's toast
// when all went well ("Removed metadata from 3 pictures"), else the count of what was done out of
// what was asked, and the exit status is 1.

#include "cli/CliPaths.h"
#include "cli/EngineRun.h"
#include "cli/ImageCommand.h"
#include "images/ImageMetadata.h"

namespace orwick::cli {
namespace {

FileOperations::TransformTexts textsFor(MetadataStrip what, qsizetype count)
{
    const QString pictures = counted(count, "picture");
    if (what == MetadataStrip::location)
        return {QStringLiteral("Remove Location"), QStringLiteral("Removing the location from ") + pictures,
                QStringLiteral("Remove Location"), QStringLiteral("location.slash"), QStringLiteral("Removed the location from")};
    return {QStringLiteral("Remove Metadata"), QStringLiteral("Removing the metadata from ") + pictures,
            QStringLiteral("Remove Metadata"), QStringLiteral("eye.slash"), QStringLiteral("Removed metadata from")};
}

int strip(const Arguments& given)
{
    Arguments arguments = given;
    const MetadataStrip what = arguments.removeAll("--location") > 0 ? MetadataStrip::location : MetadataStrip::everything;
    if (arguments.isEmpty())
        return usageError(kImageUsage);

    const QList<FilePath> files = usableItems(arguments);

    EngineRun run(/*followLinks=*/false);
    FileOperations& operations = run.operations();
    qsizetype done = 0;
    run.sayReports();
    if (!files.isEmpty()) {
        const auto transform = [what](const FilePath& file, const CancelFlag& cancel) { return strippedBytes(file, what, cancel); };
        operations.replaceInPlace(files, textsFor(what, files.size()), transform, nullptr,
                                  [&](const QList<FilePath>& changed) { done += changed.size(); });
        run.wait();
    }

    const qsizetype asked = arguments.size();
    const QString& announcement = run.announcement();
    if (done == asked) {
        out() << (announcement.isEmpty() ? textsFor(what, asked).done + u' ' + counted(asked, "picture") : announcement)
              << Qt::endl;
        return 0;
    }
    out() << textsFor(what, asked).done << ' ' << done << " of " << counted(asked, "picture") << "; " << asked - done
          << " failed" << Qt::endl;
    return 1;
}

const ImageFormRegistration registration({"strip", strip});

} // namespace
} // namespace orwick::cli
