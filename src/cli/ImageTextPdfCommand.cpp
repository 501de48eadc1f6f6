// orwick-cli image ocr / pdf: text recognition and Combine into PDF on the command line, through
// the window's core functions (images/ImageText, images/ImagePdf).
//
// ocr FILE [--lang L] prints the text it reads on standard output (nothing, and a note on
// standard error, when the picture holds none). The language is a Tesseract code ("deu", or
// several joined by "+"); English when none is given.
//
// pdf FILE... -o OUT.pdf [--page fit|a4|letter] makes one PDF of the pictures and PDFs in the
// order given, through the engine's makeFiles (one job; an existing OUT.pdf is left alone and the
// PDF takes the next free name, "OUT 2.pdf"), and prints the path it made. Every argument is
// checked first: nothing is made when one is missing or can't be used.
//
// A failure is one sentence on standard error and exit status 1.

#include "cli/CliCommand.h"
#include "cli/CliOutput.h"
#include "cli/CliPaths.h"
#include "cli/EngineRun.h"
#include "cli/ImageCommand.h"
#include "images/ImagePdf.h"
#include "images/ImageText.h"

#include <QLoggingCategory>

namespace orwick::cli {
namespace {

// Takes `option` and its value out of `arguments`: nothing when it isn't there, an empty value
// when it is last with none after it.
std::optional<QByteArray> takeOption(Arguments& arguments, const QByteArray& option)
{
    const qsizetype at = arguments.indexOf(option);
    if (at < 0)
        return std::nullopt;
    const QByteArray value = arguments.value(at + 1);
    arguments.remove(at, std::min<qsizetype>(2, arguments.size() - at));
    return value;
}

// Qt's picture readers warn on standard error about what they can't read; the sentence this
// command prints says it once, in the user's words. (libpng's own "libpng error: …" line is
// written by libpng itself and can't be kept back.)
void quietPictureReaders() { QLoggingCategory::setFilterRules(QStringLiteral("qt.gui.imageio*=false")); }

int ocr(const Arguments& given)
{
    quietPictureReaders();
    Arguments arguments = given;
    const auto language = takeOption(arguments, "--lang");
    if (arguments.size() != 1 || (language && language->isEmpty()))
        return usageError(kImageUsage);
    if (const auto problem = problemWith(arguments.first(), Expect::anything)) {
        err() << *problem << Qt::endl;
        return 1;
    }
    const FilePath file = pathArgument(arguments.first());
    const auto text = recognizeText(file, language ? argumentText(*language) : QStringLiteral("eng"), CancelFlag());
    if (!text) {
        err() << text.error() << Qt::endl;
        return 1;
    }
    if (text->isEmpty()) {
        err() << noTextFoundText(file) << Qt::endl;
        return 0;
    }
    out() << *text << Qt::endl;
    return 0;
}

std::optional<PdfPageSize> pageSizeNamed(const QByteArray& name)
{
    if (name == "fit")
        return PdfPageSize::fit;
    if (name == "a4" || name == "A4")
        return PdfPageSize::a4;
    if (name == "letter")
        return PdfPageSize::letter;
    return std::nullopt;
}

int pdf(const Arguments& given)
{
    quietPictureReaders();
    Arguments arguments = given;
    const auto output = takeOption(arguments, "-o");
    const auto page = takeOption(arguments, "--page");
    if (!output || output->isEmpty() || arguments.isEmpty())
        return usageError(kImageUsage);
    const auto size = pageSizeNamed(page.value_or("fit"));
    if (!size)
        return usageError(QStringLiteral("--page takes fit, a4 or letter"));
    bool usable = true;
    QList<FilePath> items;
    for (const QByteArray& argument : arguments) {
        if (const auto problem = problemWith(argument, Expect::anything)) {
            err() << *problem << Qt::endl;
            usable = false;
        }
        items.append(pathArgument(argument));
    }
    if (!usable)
        return 1;

    EngineRun run(/*followLinks=*/false);
    FileOperations& operations = run.operations();
    bool failed = false;
    operations.setReportErrors([&](const OperationOutcome& outcome) {
        failed = true;
        for (const QString& error : outcome.errors)
            err() << error << Qt::endl;
    });
    QList<FilePath> made;
    QObject::connect(&operations, &FileOperations::pathsChanged, [&](const QList<FilePath>& paths) { made += paths; });
    const FilePath wanted = pathArgument(*output);
    const QString verb = QStringLiteral("Combine into PDF");
    const FileOperations::TransformTexts texts{verb, QStringLiteral("Combining ") + counted(items.size(), "item"), verb,
                                               QStringLiteral("doc.on.doc")};
    // One PDF from all the items: the engine is given one source, the first.
    operations.makeFiles({items.first()}, texts,
                         [items, wanted, size = *size](const FilePath&, const CancelFlag& cancel) -> Result<QList<FileOperations::MadeFile>> {
                             auto pdf = combineIntoPdf(items, size, cancel);
                             if (!pdf)
                                 return failure(pdf.error());
                             return QList<FileOperations::MadeFile>{{wanted, std::move(*pdf)}};
                         },
                         nullptr);
    run.wait();
    err().flush();
    if (failed || made.isEmpty())
        return 1;
    LineWriter lines;
    lines.add(made.first().native());
    lines.endLine();
    return 0;
}

const ImageFormRegistration ocrRegistration({"ocr", ocr});
const ImageFormRegistration pdfRegistration({"pdf", pdf});

} // namespace
} // namespace orwick::cli
