#include "images/ImageText.h"

#include "images/ImageRead.h"
#include "images/LongestSide.h"
#include "images/TesseractLibrary.h"

#include <QDir>
#include <QFileInfo>
#include <QPainter>
#include <QRegularExpression>
#include <memory>

namespace orwick {

namespace {

const QString kTraineddata = QStringLiteral(".traineddata");

// Where Tesseract's language data lives: $TESSDATA_PREFIX when set (the folder itself or the
// one holding "tessdata"), else the newest /usr/share/tesseract-ocr/<version>/tessdata, else the
// other usual places. Passed to Tesseract explicitly, so what is listed is what it loads.
QString tessdataFolder()
{
    const QByteArray prefix = qgetenv("TESSDATA_PREFIX");
    if (!prefix.isEmpty()) {
        const QDir given(QFile::decodeName(prefix));
        return given.exists(QStringLiteral("tessdata")) ? given.filePath(QStringLiteral("tessdata")) : given.path();
    }
    QDir debian(QStringLiteral("/usr/share/tesseract-ocr"));
    QStringList versions = debian.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    std::sort(versions.begin(), versions.end(), [](const QString& a, const QString& b) { return a.toInt() > b.toInt(); });
    for (const QString& version : versions) {
        if (QFileInfo(debian.filePath(version + QStringLiteral("/tessdata"))).isDir())
            return debian.filePath(version + QStringLiteral("/tessdata"));
    }
    for (const QString& other : {QStringLiteral("/usr/local/share/tessdata"), QStringLiteral("/usr/share/tessdata")}) {
        if (QFileInfo(other).isDir())
            return other;
    }
    return {};
}

bool isInstalled(const QString& folder, const QString& code)
{
    static const QRegularExpression plainCode(QStringLiteral("^[A-Za-z0-9_]+$"));
    return plainCode.match(code).hasMatch() && !folder.isEmpty() && QFileInfo(folder + u'/' + code + kTraineddata).isFile();
}

QString missingLanguageText(const QString& code)
{
    // Debian names the packages with hyphens and in lower case: chi_sim is tesseract-ocr-chi-sim.
    const QString package = QStringLiteral("tesseract-ocr-") + code.toLower().replace(u'_', u'-');
    return QStringLiteral("The “%1” language for text recognition isn’t installed. Install the package %2.").arg(code, package);
}

// Grey pixels for Tesseract; a transparent picture is laid on white first, as it is seen.
QImage greyPixels(const QImage& picture)
{
    if (!picture.hasAlphaChannel())
        return picture.convertToFormat(QImage::Format_Grayscale8);
    QImage onWhite(picture.size(), QImage::Format_RGB32);
    onWhite.fill(Qt::white);
    QPainter painter(&onWhite);
    painter.drawImage(0, 0, picture);
    painter.end();
    return onWhite.convertToFormat(QImage::Format_Grayscale8);
}

bool cancelRequested(void* flag, int /*words*/) { return static_cast<const CancelFlag*>(flag)->isCancelled(); }

} // namespace

QStringList recognitionLanguages()
{
    const QString folder = tessdataFolder();
    if (folder.isEmpty())
        return {};
    QStringList codes;
    for (const QString& name : QDir(folder).entryList({u'*' + kTraineddata}, QDir::Files, QDir::Name)) {
        const QString code = name.chopped(kTraineddata.size());
        if (code != u"osd")
            codes.append(code);
    }
    if (codes.removeOne(QStringLiteral("eng")))
        codes.prepend(QStringLiteral("eng"));
    return codes;
}

QString noTextFoundText(const FilePath& file) { return QStringLiteral("No text was found in “%1”.").arg(file.fileName()); }

Result<QString> recognizeText(const FilePath& file, const QString& language, const CancelFlag& cancel)
{
    const QString folder = tessdataFolder();
    const QStringList codes = language.split(u'+', Qt::SkipEmptyParts);
    if (codes.isEmpty())
        return failure(QStringLiteral("No language was given for text recognition."));
    for (const QString& code : codes) {
        if (!isInstalled(folder, code))
            return failure(missingLanguageText(code));
    }
    auto picture = readPicture(file, longestSideAtMost(kRecognitionLongestSide), cancel);
    if (!picture)
        return failure(picture.error());
    const QImage grey = greyPixels(picture->image);
    picture->image = QImage(); // the colour copy isn't needed while Tesseract reads
    if (cancel.isCancelled())
        return failure(QString());

    const auto& loaded = tesseractLibrary();
    if (!loaded)
        return failure(loaded.error());
    const TesseractLibrary& tess = **loaded;
    const std::unique_ptr<TessBaseAPI, decltype(tess.destroy)> api(tess.create(), tess.destroy);
    // Before Init too: what Init itself says goes the same way.
    tess.setVariable(api.get(), "debug_file", "/dev/null");
    if (tess.init(api.get(), QFile::encodeName(folder).constData(), language.toUtf8().constData(), tesseract::OEM_DEFAULT) != 0)
        return failure(QStringLiteral("Text recognition couldn’t start: the “%1” language data can’t be loaded.").arg(language));
    tess.setVariable(api.get(), "debug_file", "/dev/null");
    tess.setImage(api.get(), grey.constBits(), grey.width(), grey.height(), 1, int(grey.bytesPerLine()));
    const std::unique_ptr<ETEXT_DESC, decltype(tess.deleteMonitor)> monitor(tess.createMonitor(), tess.deleteMonitor);
    tess.setCancelFunc(monitor.get(), &cancelRequested);
    tess.setCancelThis(monitor.get(), const_cast<CancelFlag*>(&cancel));
    const int recognized = tess.recognize(api.get(), monitor.get());
    if (cancel.isCancelled())
        return failure(QString());
    if (recognized != 0)
        return failure(QStringLiteral("The text in “%1” couldn’t be read.").arg(file.fileName()));
    const std::unique_ptr<char, decltype(tess.deleteText)> text(tess.getUTF8Text(api.get()), tess.deleteText);
    tess.end(api.get());
    return text ? QString::fromUtf8(text.get()).trimmed() : QString();
}

} // namespace orwick
