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

// Words people search a turn by besides its title.
QString turnWords(PictureTurn turn)
{
    switch (turn) {
    case PictureTurn::left:
        return QStringLiteral("image picture photo turn rotate anticlockwise counterclockwise 90 portrait landscape lossless");
    case PictureTurn::right:
        return QStringLiteral("image picture photo turn rotate clockwise 90 portrait landscape lossless");
    case PictureTurn::flipHorizontal:
        return QStringLiteral("image picture photo mirror flip horizontally left right");
    case PictureTurn::flipVertical:
        return QStringLiteral("image picture photo mirror flip vertically upside down top bottom");
    }
    return {};
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

QString turnId(PictureTurn turn)
{
    switch (turn) {
    case PictureTurn::left:
        return kRotateLeftId;
    case PictureTurn::right:
        return kRotateRightId;
    case PictureTurn::flipHorizontal:
        return kFlipHorizontalId;
    case PictureTurn::flipVertical:
        return kFlipVerticalId;
    }
    return {};
}

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
    for (const PictureTurn turn : {PictureTurn::left, PictureTurn::right, PictureTurn::flipHorizontal, PictureTurn::flipVertical})
        list.append(pictureCommand(turnId(turn), QStringLiteral("Image: ") + turnTitle(turn), turnSymbol(turn), turnWords(turn),
                                   [turn](WindowState& w) { imageActions::turn(w, turn); }));
    for (const QString& code : recognitionLanguages().mid(1)) {
        const QString name = languageName(code);
        list.append(pictureCommand(kTextPrefix + code, QStringLiteral("Image: Copy Text in ") + name, QStringLiteral("text.viewfinder"),
                                   QStringLiteral("ocr recognize read scan language ") + code + QLatin1Char(' ') + name,
                                   [code](WindowState& w) { imageActions::copyText(w, code); }, imageActions::canReadText));
    }
    return list;
}

} // namespace orwick::ImageCommands
