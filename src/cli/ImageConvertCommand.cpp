// orwick-cli image convert / resize / sets: the window's picture tools on the command line,
// through the same core functions (images/ImageConvert, images/ImageSets) and the same engine
// job (makeFiles, or replaceInPlace with --in-place), so several pictures are worked on at
// once, one per core.
//
// Standard output gets each file made (or replaced), one path per line as its bytes. Standard
// error gets each picture that failed, with its name and reason, and a note for each animation
// of which only the first frame was used; any failure makes the exit status 1.

#include "cli/CliCommand.h"
#include "cli/CliOutput.h"
#include "cli/CliPaths.h"
#include "cli/EngineRun.h"
#include "cli/ImageCommand.h"
#include "images/ImageConvert.h"
#include "images/ImageFormats.h"
#include "images/ImageSets.h"

namespace orwick::cli {
namespace {

struct Request {
    Arguments files;
    ConvertOptions options;
    bool inPlace = false;
};

// The options a form takes, by name; each takes a value but --in-place.
struct FormOptions {
    bool format = false;
    bool longest = false;
    bool quality = false;
    bool inPlace = false;
};

std::optional<int> number(const QByteArray& text, int lowest, int highest)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    return ok && value >= lowest && value <= highest ? std::optional(value) : std::nullopt;
}

QByteArray formatNamed(const QString& name)
{
    const QString lower = name.toLower();
    return lower == u"jpg" ? QByteArray("jpeg") : lower.toLatin1();
}

QString writableList()
{
    QStringList titles;
    for (const QByteArray& format : writableImageFormats())
        titles.append(formatTitle(format));
    return titles.join(QStringLiteral(", "));
}

// Reads the arguments of a form; a message for usage errors.
Result<Request> parse(const Arguments& arguments, FormOptions accepted)
{
    Request request;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QByteArray& argument = arguments[i];
        const bool takesValue = (argument == "--to" && accepted.format) || (argument == "--longest" && accepted.longest)
            || (argument == "--quality" && accepted.quality);
        if (takesValue && i + 1 >= arguments.size())
            return failure(QStringLiteral("%1 needs a value").arg(QString::fromLatin1(argument)));
        if (argument == "--in-place" && accepted.inPlace) {
            request.inPlace = true;
        } else if (argument == "--to" && accepted.format) {
            request.options.format = formatNamed(argumentText(arguments[++i]));
            if (!isWritableImageFormat(request.options.format))
                return failure(QStringLiteral("Orwick can’t write “%1” pictures here; it writes %2.")
                                   .arg(argumentText(arguments[i]), writableList()));
        } else if (argument == "--longest" && accepted.longest) {
            const auto pixels = number(arguments[++i], 1, 1 << 16);
            if (!pixels)
                return failure(QStringLiteral("--longest takes a number of pixels, 1 to 65536"));
            request.options.resize = {ImageResize::Kind::longest, *pixels};
        } else if (argument == "--quality" && accepted.quality) {
            const auto quality = number(arguments[++i], 0, 100);
            if (!quality)
                return failure(QStringLiteral("--quality takes a number from 0 to 100"));
            request.options.quality = *quality;
        } else if (argument.startsWith("--")) {
            return failure(QStringLiteral("unknown option %1").arg(argumentText(argument)));
        } else {
            request.files.append(argument);
        }
    }
    if (request.files.isEmpty())
        return failure(QStringLiteral("no pictures given"));
    return request;
}

// Runs `start` on the usable files to the end of the engine's job and prints the outcome.
int runToEnd(const Arguments& arguments, const std::function<void(FileOperations&, const QList<FilePath>&,
                                                                   FileOperations::Finished)>& start, bool printsDone)
{
    bool failed = false;
    QList<FilePath> files;
    for (const QByteArray& argument : arguments) {
        if (const auto problem = problemWith(argument, Expect::anything)) {
            err() << *problem << Qt::endl;
            failed = true;
        } else {
            files.append(pathArgument(argument));
        }
    }
    if (files.isEmpty())
        return 1;
    EngineRun run(false);
    FileOperations& operations = run.operations();
    operations.setReportErrors([&](const OperationOutcome& outcome) {
        failed = true;
        for (const QString& error : outcome.errors)
            err() << error << Qt::endl;
    });
    QList<FilePath> printed;
    QObject::connect(&operations, &FileOperations::pathsChanged, [&](const QList<FilePath>& paths) {
        if (!printsDone)
            printed += paths;
    });
    start(operations, files, [&](const QList<FilePath>& done) {
        if (printsDone)
            printed += done;
    });
    run.wait();
    err().flush();
    LineWriter lines;
    for (const FilePath& path : printed) {
        lines.add(path.native());
        lines.endLine();
    }
    return failed ? 1 : 0;
}

// The note for each animation of which only the first frame is used.
void sayFirstFrames(const Arguments& arguments)
{
    for (const QByteArray& argument : arguments) {
        const FilePath file = pathArgument(argument);
        if (isAnimated(file))
            err() << QStringLiteral("Only the first frame of “%1” was used.").arg(file.fileName()) << Qt::endl;
    }
}

int convertOrResize(const Arguments& arguments, FormOptions accepted)
{
    const auto request = parse(arguments, accepted);
    if (!request)
        return usageError(request.error() + QStringLiteral("\n") + kImageUsage);
    const ConvertOptions options = request->options;
    const QString verb = convertVerb(options);
    const QString title = (options.format.isEmpty() ? QStringLiteral("Resizing ") : QStringLiteral("Converting "))
        + counted(request->files.size(), "picture");
    const FileOperations::TransformTexts texts{verb, title, verb};
    sayFirstFrames(request->files);
    if (request->inPlace)
        return runToEnd(request->files, [&](FileOperations& operations, const QList<FilePath>& files, FileOperations::Finished finished) {
            operations.replaceInPlace(files, texts, [options](const FilePath& file, const CancelFlag& cancel) {
                return convertedBytes(file, options, cancel);
            }, nullptr, std::move(finished));
        }, true);
    return runToEnd(request->files, [&](FileOperations& operations, const QList<FilePath>& files, FileOperations::Finished finished) {
        operations.makeFiles(files, texts, [options](const FilePath& file, const CancelFlag& cancel) {
            return convertImage(file, options, cancel);
        }, nullptr, std::move(finished));
    }, false);
}

int convertForm(const Arguments& arguments)
{
    if (!arguments.contains("--to"))
        return usageError(QStringLiteral("convert needs --to FORMAT\n") + kImageUsage);
    return convertOrResize(arguments, {.format = true, .quality = true, .inPlace = true});
}

int resizeForm(const Arguments& arguments)
{
    if (!arguments.contains("--longest"))
        return usageError(QStringLiteral("resize needs --longest PX\n") + kImageUsage);
    return convertOrResize(arguments, {.longest = true, .quality = true, .inPlace = true});
}

int setsForm(const Arguments& arguments)
{
    const auto request = parse(arguments, {});
    if (!request)
        return usageError(request.error() + QStringLiteral("\n") + kImageUsage);
    const QString verb = QStringLiteral("Make Image Sets");
    const FileOperations::TransformTexts texts{verb, QStringLiteral("Making image sets of ") + counted(request->files.size(), "picture"), verb};
    return runToEnd(request->files, [&](FileOperations& operations, const QList<FilePath>& files, FileOperations::Finished finished) {
        operations.makeFiles(files, texts, imageSet, nullptr, std::move(finished));
    }, false);
}

const ImageFormRegistration convertRegistration({"convert", convertForm});
const ImageFormRegistration resizeRegistration({"resize", resizeForm});
const ImageFormRegistration setsRegistration({"sets", setsForm});

} // namespace
} // namespace orwick::cli
