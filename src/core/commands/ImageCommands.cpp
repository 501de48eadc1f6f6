#include "commands/ImageCommands.h"

#include "images/ImageActions.h"
#include "images/ImageFormats.h"

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

AppCommand pictureCommand(QString id, QString title, QString symbol, QString keywords, std::function<void(WindowState&)> run)
{
    AppCommand command;
    command.id = std::move(id);
    command.title = std::move(title);
    command.symbol = std::move(symbol);
    command.keywords = std::move(keywords);
    command.run = std::move(run);
    command.isEnabled = imageActions::canChangePictures;
    command.disabledNote = QString::fromUtf8(imageActions::kSelectPictures);
    return command;
}

} // namespace

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
    return list;
}

} // namespace orwick::ImageCommands
