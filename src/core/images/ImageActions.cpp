#include "images/ImageActions.h"

#include "async/Background.h"
#include "fileops/OperationTexts.h"
#include "images/ImageClipboard.h"
#include "images/ImageFormats.h"
#include "images/ImageMetadata.h"
#include "images/ImagePdf.h"
#include "images/ImageSets.h"
#include "images/ImageText.h"
#include "state/FileActions.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QImageReader>
#include <QMimeData>
#include <QPointer>
#include <QSet>

namespace orwick::imageActions {

namespace {

using Transform = FileOperations::TransformTexts;

// "1 picture", "3 pictures".
QString pictureCount(qsizetype count)
{
    return count == 1 ? QStringLiteral("1 picture") : QStringLiteral("%1 pictures").arg(count);
}

QString fileCount(qsizetype count)
{
    return count == 1 ? QStringLiteral("1 file") : QStringLiteral("%1 files").arg(count);
}

// Whether every selected item passes `accepts`, by the pane's items (no disk access).
bool everySelected(const WindowState& window, bool (*accepts)(const FilePath&))
{
    if (!window.canActOnSelection())
        return false;
    const PaneState* pane = window.activePane();
    for (const FilePath& url : pane->selection()) {
        const FileItem* item = pane->item(url);
        if (!item || item->isFolder || item->brokenTarget || !accepts(item->url))
            return false;
    }
    return true;
}

bool isPictureOrPdfName(const FilePath& file) { return isPictureName(file) || isPdfName(file); }

QList<FilePath> selectedOf(const WindowState& window, bool (*accepts)(const FilePath&))
{
    QList<FilePath> chosen;
    for (const FilePath& url : window.selectedURLs())
        if (accepts(url))
            chosen.append(url);
    return chosen;
}

FileOperations& engine(const WindowState& window) { return *window.files().operations(); }

// On a worker: a file the selection named as a picture may not be one.
Status checkPicture(const FilePath& file)
{
    if (!isPicture(file))
        return failure(QStringLiteral("%1 isn’t a picture Orwick can read").arg(quoted(file.fileName())));
    return {};
}

void replaceStripped(WindowState& window, MetadataStrip what, Transform texts)
{
    if (!canChangePictures(window))
        return;
    const QList<FilePath> pictures = selectedPictures(window);
    engine(window).replaceInPlace(pictures, texts,
                                  [what](const FilePath& file, const CancelFlag& cancel) -> Result<QByteArray> {
                                      if (const Status picture = checkPicture(file); !picture)
                                          return std::unexpected(picture.error());
                                      if (!canStripMetadata(file))
                                          return failure(QStringLiteral("Orwick can’t remove metadata from %1").arg(quoted(file.fileName())));
                                      return strippedBytes(file, what, cancel);
                                  },
                                  window.undoStack());
}

// What "Copy Text from Image" keeps per window: the one reading under way.
class TextReading : public QObject {
public:
    explicit TextReading(QObject* parent) : QObject(parent) { setObjectName(kName); }
    static TextReading& of(WindowState& window)
    {
        if (auto* found = window.findChild<QObject*>(kName, Qt::FindDirectChildrenOnly))
            return *static_cast<TextReading*>(found); // only this class takes the name
        return *new TextReading(&window);
    }
    TaskSlot slot;

private:
    static constexpr QLatin1StringView kName{"orwick.textReading"};
};

struct ReadText {
    QString text;
    QStringList failures; // one sentence per file that couldn't be read
    int read = 0;         // files whose text was read (some may hold none)
};

ReadText readText(const QList<FilePath>& pictures, const QString& chosenLanguage, const CancelFlag& cancel)
{
    const QString language = !chosenLanguage.isEmpty() ? chosenLanguage : recognitionLanguages().value(0, QStringLiteral("eng"));
    ReadText result;
    QStringList parts;
    for (const FilePath& picture : pictures) {
        if (cancel.isCancelled())
            break;
        const Result<QString> text = recognizeText(picture, language, cancel);
        if (!text) {
            if (!text.error().isEmpty()) // empty: cancelled
                result.failures.append(text.error());
            continue;
        }
        ++result.read;
        if (!text->trimmed().isEmpty())
            parts.append(text->trimmed());
    }
    result.text = parts.join(QStringLiteral("\n\n"));
    return result;
}

// The toast after reading: what was copied, the start of it, and why some files failed.
QString readMessage(const ReadText& result, const QList<FilePath>& pictures)
{
    const QString what = pictures.size() == 1 ? quoted(pictures.first().fileName()) : pictureCount(pictures.size());
    if (result.read == 0)
        return result.failures.value(0, QStringLiteral("That didn't work"));
    if (result.text.isEmpty())
        return pictures.size() == 1 ? noTextFoundText(pictures.first()) : QStringLiteral("No text was found in %1.").arg(what);
    QString start = result.text.section(QLatin1Char('\n'), 0, 0).simplified();
    if (start.size() > 60)
        start = start.left(59) + QStringLiteral("…");
    QString message = QStringLiteral("Copied the text of %1: %2").arg(what, start);
    if (!result.failures.isEmpty())
        message += QStringLiteral(" (%1 didn’t work: %2)").arg(fileCount(result.failures.size()), result.failures.first());
    return message;
}

struct ClipboardPicture {
    QImage image;
    QByteArray png;
};

} // namespace

bool isPictureName(const FilePath& file)
{
    static const QSet<QString> readable = [] {
        QSet<QString> suffixes;
        for (const QByteArray& format : QImageReader::supportedImageFormats())
            suffixes.insert(QString::fromLatin1(format).toLower());
        suffixes.remove(QStringLiteral("pdf")); // a PDF is combined, never decoded as one picture
        return suffixes;
    }();
    return readable.contains(file.extension());
}

bool isPdfName(const FilePath& file) { return file.extension() == QLatin1StringView("pdf"); }

bool canCopyImage(const WindowState& window) { return window.activePane()->selection().size() == 1 && canReadText(window); }

bool canReadText(const WindowState& window) { return everySelected(window, isPictureName); }

bool canChangePictures(const WindowState& window) { return !window.files().showsTrash() && everySelected(window, isPictureName); }

bool canCombine(const WindowState& window) { return !window.files().showsTrash() && everySelected(window, isPictureOrPdfName); }

QList<FilePath> selectedPictures(const WindowState& window) { return selectedOf(window, isPictureName); }

void convert(WindowState& window, const QByteArray& format)
{
    ConvertOptions options;
    options.format = format;
    resize(window, selectedPictures(window), options, Placement::beside);
}

void requestResize(WindowState& window)
{
    if (canChangePictures(window))
        Q_EMIT window.imageResizeRequested(selectedPictures(window));
}

void resize(WindowState& window, const QList<FilePath>& pictures, const ConvertOptions& options, Placement placement)
{
    if (pictures.isEmpty() || window.files().isRenaming())
        return;
    const QString verb = convertVerb(options);
    const bool converting = !options.format.isEmpty();
    Transform texts{verb, (converting ? QStringLiteral("Converting ") : QStringLiteral("Resizing ")) + pictureCount(pictures.size()), verb,
                    converting ? QStringLiteral("photo") : QStringLiteral("arrow.down.right.and.arrow.up.left")};
    if (placement == Placement::replace) {
        engine(window).replaceInPlace(pictures, texts,
                                      [options](const FilePath& file, const CancelFlag& cancel) -> Result<QByteArray> {
                                          if (const Status picture = checkPicture(file); !picture)
                                              return std::unexpected(picture.error());
                                          return convertedBytes(file, options, cancel);
                                      },
                                      window.undoStack());
        return;
    }
    engine(window).makeFiles(pictures, texts,
                             [options](const FilePath& file, const CancelFlag& cancel) -> Result<QList<FileOperations::MadeFile>> {
                                 if (const Status picture = checkPicture(file); !picture)
                                     return std::unexpected(picture.error());
                                 return convertImage(file, options, cancel);
                             },
                             window.undoStack());
}

void turn(WindowState& window, PictureTurn turn)
{
    if (!canChangePictures(window) || window.files().isRenaming())
        return;
    const QList<FilePath> pictures = selectedPictures(window);
    const bool flip = turn == PictureTurn::flipHorizontal || turn == PictureTurn::flipVertical;
    const QString title = turnTitle(turn);
    const Transform texts{title, (flip ? QStringLiteral("Flipping ") : QStringLiteral("Rotating ")) + pictureCount(pictures.size()), title,
                          turnSymbol(turn), flip ? QStringLiteral("Flipped") : QStringLiteral("Rotated")};
    // turnedBytes checks each file is a picture itself.
    engine(window).replaceInPlace(pictures, texts,
                                  [turn](const FilePath& file, const CancelFlag& cancel) { return turnedBytes(file, turn, cancel); },
                                  window.undoStack());
}

void makeImageSets(WindowState& window)
{
    if (!canChangePictures(window))
        return;
    const QList<FilePath> pictures = selectedPictures(window);
    const QString verb = QStringLiteral("Make Image Sets");
    engine(window).makeFiles(pictures, {verb, QStringLiteral("Making image sets of ") + pictureCount(pictures.size()), verb,
                                        QStringLiteral("square.stack.3d.up")},
                             [](const FilePath& file, const CancelFlag& cancel) -> Result<QList<FileOperations::MadeFile>> {
                                 if (const Status picture = checkPicture(file); !picture)
                                     return std::unexpected(picture.error());
                                 return imageSet(file, cancel);
                             },
                             window.undoStack());
}

void removeLocation(WindowState& window)
{
    const qsizetype count = selectedPictures(window).size();
    replaceStripped(window, MetadataStrip::location,
                    {QStringLiteral("Remove Location"), QStringLiteral("Removing the location from ") + pictureCount(count),
                     QStringLiteral("Remove Location"), QStringLiteral("location.slash")});
}

void removeMetadata(WindowState& window)
{
    const qsizetype count = selectedPictures(window).size();
    replaceStripped(window, MetadataStrip::everything,
                    {QStringLiteral("Remove Metadata"), QStringLiteral("Removing the metadata from ") + pictureCount(count),
                     QStringLiteral("Remove Metadata"), QStringLiteral("eye.slash")});
}

void copyText(WindowState& window, const QString& language)
{
    if (!canReadText(window))
        return;
    const QList<FilePath> pictures = selectedPictures(window);
    TextReading& reading = TextReading::of(window);
    const TaskSlot::Ticket ticket = reading.slot.start();
    Q_EMIT window.messageRequested(QStringLiteral("Reading the text in ") + fileCount(pictures.size()) + QStringLiteral("…"));
    QPointer<WindowState> target(&window);
    const CancelToken token = ticket.token;
    runInBackground(&reading, [pictures, language, token] { return readText(pictures, language, *token); },
                    [target, pictures, ticket, readingObject = &reading](const ReadText& result) {
                        if (!target || !readingObject->slot.isCurrent(ticket))
                            return;
                        readingObject->slot.finish(ticket);
                        const QString message = readMessage(result, pictures);
                        if (result.text.isEmpty()) {
                            Q_EMIT target->messageRequested(message);
                            return;
                        }
                        if (QClipboard* clipboard = QGuiApplication::clipboard())
                            clipboard->setText(result.text);
                        const QString title = pictures.size() == 1 ? QStringLiteral("Text in ") + quoted(pictures.first().fileName())
                                                                   : QStringLiteral("Text in ") + pictureCount(pictures.size());
                        const QString text = result.text;
                        target->requestChoice(message, {QStringLiteral("Show")}, [target, title, text](int) {
                            if (target)
                                Q_EMIT target->textSheetRequested(title, text);
                        });
                    });
}

QString combinedPdfName(const QList<FilePath>& items)
{
    if (items.isEmpty())
        return QStringLiteral("Combined.pdf");
    const QString name = items.first().fileName();
    if (items.size() == 1) {
        const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
        return (dot > 0 ? name.left(dot) : name) + QStringLiteral(".pdf");
    }
    const FilePath folder = items.first().parent();
    return folder.isRoot() || folder.fileName().isEmpty() ? QStringLiteral("Combined.pdf") : folder.fileName() + QStringLiteral(".pdf");
}

void combineIntoPdf(WindowState& window)
{
    if (!canCombine(window))
        return;
    const QList<FilePath> items = selectedOf(window, isPictureOrPdfName);
    const FilePath wanted = items.first().parent().child(combinedPdfName(items));
    const QString verb = QStringLiteral("Combine into PDF");
    // One output from all the items: the engine sees one source, the first.
    engine(window).makeFiles({items.first()}, {verb, QStringLiteral("Combining ") + itemCount(items.size()), verb, QStringLiteral("doc.on.doc")},
                             [items, wanted](const FilePath&, const CancelFlag& cancel) -> Result<QList<FileOperations::MadeFile>> {
                                 Result<QByteArray> pdf = orwick::combineIntoPdf(items, PdfPageSize::fit, cancel);
                                 if (!pdf)
                                     return std::unexpected(pdf.error());
                                 return QList<FileOperations::MadeFile>{{wanted, std::move(*pdf)}};
                             },
                             window.undoStack());
}

void copyImage(WindowState& window)
{
    if (!canCopyImage(window))
        return;
    const FilePath picture = selectedPictures(window).value(0);
    QPointer<WindowState> target(&window);
    runInBackground(&window,
                    [picture]() -> Result<ClipboardPicture> {
                        Result<QImage> image = clipboardImage(picture);
                        if (!image)
                            return std::unexpected(image.error());
                        ClipboardPicture made{std::move(*image), {}};
                        QBuffer buffer(&made.png);
                        // A buffer in memory, not a file: the bytes go to disk through the engine (or the clipboard).
                        buffer.open(QIODevice::WriteOnly);
                        if (!made.image.save(&buffer, "PNG"))
                            return failure(QStringLiteral("Couldn’t copy %1 as a picture").arg(quoted(picture.fileName())));
                        return made;
                    },
                    [target, picture](const Result<ClipboardPicture>& made) {
                        if (!target)
                            return;
                        if (!made) {
                            Q_EMIT target->messageRequested(made.error());
                            return;
                        }
                        QClipboard* clipboard = QGuiApplication::clipboard();
                        if (!clipboard)
                            return;
                        auto* data = new QMimeData;
                        data->setImageData(made->image);
                        data->setData(QStringLiteral("image/png"), made->png);
                        clipboard->setMimeData(data);
                        Q_EMIT target->messageRequested(QStringLiteral("Copied %1 as a picture").arg(quoted(picture.fileName())));
                    });
}

} // namespace orwick::imageActions
