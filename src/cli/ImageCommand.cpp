// orwick-cli image VERB ...: finds the form registered for VERB and runs it.

#include "cli/ImageCommand.h"

#include <QHash>

namespace orwick::cli {

const QString kImageUsage = QStringLiteral(
    "usage: orwick-cli image convert FILE... --to FORMAT [--quality Q] [--in-place]\n"
    "       orwick-cli image resize FILE... --longest PX [--quality Q] [--in-place]\n"
    "       orwick-cli image rotate left|right FILE...\n"
    "       orwick-cli image flip horizontal|vertical FILE...\n"
    "       orwick-cli image sets FILE...\n"
    "       orwick-cli image strip FILE... [--location]\n"
    "       orwick-cli image ocr FILE [--lang L]\n"
    "       orwick-cli image pdf FILE... -o OUT.pdf [--page fit|a4|letter]");

namespace {

QHash<QByteArray, ImageForm>& forms()
{
    static QHash<QByteArray, ImageForm> registered;
    return registered;
}

int run(const Arguments& arguments)
{
    const auto form = forms().constFind(arguments.value(0));
    if (form == forms().cend())
        return usageError(kImageUsage);
    return form->run(arguments.mid(1));
}

const CliRegistration registration({QStringLiteral("image"), QStringLiteral("image VERB FILE..."),
                                    QStringLiteral("convert, resize, rotate, flip, sets, strip, ocr, pdf: the picture tools"), run,
                                    QStringLiteral("  ") + kImageUsage.sliced(7).replace(QStringLiteral("\n       "), QStringLiteral("\n  "))
                                        + QStringLiteral("\n\n"
                                                         "New files are made beside each picture under a free name; --in-place\n"
                                                         "replaces the picture itself (undo in the window gives the old one back).\n"
                                                         "rotate and flip turn pictures in place; a JPEG only changes its EXIF\n"
                                                         "orientation, so its picture data stays as it was.\n"
                                                         "strip removes all metadata, or with --location only where it was taken.\n"
                                                         "ocr prints the text it reads on standard output.")});

} // namespace

void registerImageForm(ImageForm form)
{
    const QByteArray verb = form.verb;
    forms().insert(verb, std::move(form));
}

} // namespace orwick::cli
