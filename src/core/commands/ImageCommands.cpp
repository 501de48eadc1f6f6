#include "commands/ImageCommands.h"

#include "images/ImageActions.h"
#include "images/ImageFormats.h"
#include "images/ImageText.h"

#include <QLocale>

namespace orwick::ImageCommands {

namespace {

// Words people search a format by besides its title.
QString formatWords(const QByteArray& format)
{
    if (format == "jpeg")
        return QStringLiteral("jpg jpeg photo smaller lossy");
    if (format == "webp")
        return QStringLiteral("webp web smaller lossy");
    if (format == "avif")
        return QStringLiteral("avif av1 smaller lossy");
    return QString::fromLatin1(format) + QStringLiteral(" lossless transparent");
}

AppCommand pictureCommand(QString id, QString title, QString symbol, QString keywords, std::function<void(WindowState&)> run,
                          bool (*enabled)(const WindowState&) = imageActions::canChangePictures)
{
    AppCommand command;
    command.id = std::move(id);
    command.title = std::move(title);
    command.symbol = std::move(symbol);
    command.keywords = std::move(keywords);
    command.run = std::move(run);
    command.isEnabled = enabled;
    command.disabledNote = QString::fromUtf8(imageActions::kSelectPictures);
    return command;
}

} // namespace

QString languageName(const QString& code)
{
    const QString base = code.section(QLatin1Char('_'), 0, 0);
    const QLocale::Language language = QLocale::codeToLanguage(base, QLocale::ISO639Part2);
    if (language == QLocale::AnyLanguage || language == QLocale::C)
        return code;
    const QString name = QLocale::languageToString(language);
    return base == code ? name : name + QStringLiteral(" (") + code + QLatin1Char(')');
}

QList<AppCommand> family()
{
    QList<AppCommand> list;
    for (const QByteArray& format : writableImageFormats())
        list.append(pictureCommand(kConvertPrefix + QString::fromLatin1(format), QStringLiteral("Image: Convert to ") + formatTitle(format),
                                   QStringLiteral("photo"), QStringLiteral("image picture format convert save as export ") + formatWords(format),
                                   [format](WindowState& w) { imageActions::convert(w, format); }));
    list.append(pictureCommand(kResizeId, QStringLiteral("Image: Resize…"), QStringLiteral("arrow.down.right.and.arrow.up.left"),
                               QStringLiteral("image picture scale smaller shrink dimensions pixels width height quality"),
                               imageActions::requestResize));
    for (const QString& code : recognitionLanguages().mid(1)) {
        const QString name = languageName(code);
        list.append(pictureCommand(kTextPrefix + code, QStringLiteral("Image: Copy Text in ") + name, QStringLiteral("text.viewfinder"),
                                   QStringLiteral("ocr recognize read scan language ") + code + QLatin1Char(' ') + name,
                                   [code](WindowState& w) { imageActions::copyText(w, code); }, imageActions::canReadText));
    }
    return list;
}

} // namespace orwick::ImageCommands
