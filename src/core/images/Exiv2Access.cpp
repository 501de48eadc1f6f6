#include "images/Exiv2Access.h"

#include <QLoggingCategory>
#include <exiv2/exiv2.hpp>
#include <mutex>
#include <new>

namespace orwick::exiv2 {
namespace {

Q_LOGGING_CATEGORY(lcExiv2, "orwick.images.exiv2", QtWarningMsg)

// exiv2 warns about every oddity of a file it still reads ("Directory Canon has an unexpected
// next pointer"); that is for developers who ask, not for standard error.
void logToCategory(int level, const char* message)
{
    const QByteArray text = QByteArray(message).trimmed();
    if (level >= Exiv2::LogMsg::error)
        qCInfo(lcExiv2) << text;
    else
        qCDebug(lcExiv2) << text;
}

// The XMP toolkit registers namespaces in process-wide tables; exiv2 serializes that through
// this lock only when it was handed one at initialization.
std::mutex g_xmpLock;

void lockXmp(void* lock, bool locking)
{
    auto* mutex = static_cast<std::mutex*>(lock);
    if (locking)
        mutex->lock();
    else
        mutex->unlock();
}

// exiv2 0.27 hands pictures back in std::auto_ptr (deprecated, still there in libstdc++).
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
template <class AutoPtr>
std::unique_ptr<Exiv2::Image> owned(AutoPtr image)
{
    return std::unique_ptr<Exiv2::Image>(image.release());
}
#pragma GCC diagnostic pop

} // namespace

void prepare()
{
    static std::once_flag once;
    std::call_once(once, [] {
        Exiv2::LogMsg::setHandler(logToCategory);
        if (!Exiv2::XmpParser::initialize(lockXmp, &g_xmpLock))
            qCWarning(lcExiv2) << "The XMP toolkit did not initialize; XMP will not be read";
#ifdef EXV_ENABLE_BMFF
        Exiv2::enableBMFF(true);
#endif
    });
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
std::unique_ptr<Exiv2::Image> openBytes(const QByteArray& bytes)
{
    prepare();
    return owned(Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(bytes.constData()), long(bytes.size())));
}

std::unique_ptr<Exiv2::Image> openFile(const QByteArray& path)
{
    prepare();
    return owned(Exiv2::ImageFactory::open(std::string(path.constData(), size_t(path.size())), false));
}
#pragma GCC diagnostic pop

int typeOf(const QByteArray& bytes)
{
    prepare();
    try {
        return Exiv2::ImageFactory::getType(reinterpret_cast<const Exiv2::byte*>(bytes.constData()), long(bytes.size()));
    } catch (const std::exception&) {
        return Exiv2::ImageType::none;
    }
}

int typeOfFile(const QByteArray& path)
{
    prepare();
    try {
        return Exiv2::ImageFactory::getType(std::string(path.constData(), size_t(path.size())));
    } catch (const std::exception&) {
        return Exiv2::ImageType::none;
    }
}

QByteArray contentsOf(Exiv2::Image& image)
{
    Exiv2::BasicIo& io = image.io();
    if (io.open() != 0)
        throw std::runtime_error("the rewritten picture could not be read back");
    const long size = io.size();
    QByteArray contents(qsizetype(size), Qt::Uninitialized);
    io.seek(0, Exiv2::BasicIo::beg);
    const long read = io.read(reinterpret_cast<Exiv2::byte*>(contents.data()), size);
    io.close();
    if (read != size)
        throw std::runtime_error("the rewritten picture could not be read back");
    return contents;
}

int orientationIn(const Exiv2::ExifData& exif)
{
    const auto it = exif.findKey(Exiv2::ExifKey("Exif.Image.Orientation"));
    if (it == exif.end() || it->count() < 1)
        return 0;
    const long value = it->toLong();
    return value >= 1 && value <= 8 ? int(value) : 0;
}

QString notAPictureText(const QString& name)
{
    return QStringLiteral("“%1” isn’t a picture whose metadata Orwick can read.").arg(name);
}

QString failureText(const QString& verb, const QString& name, const std::exception& error)
{
    if (const auto* exiv2Error = dynamic_cast<const Exiv2::AnyError*>(&error)) {
        const int code = exiv2Error->code();
        if (code == Exiv2::kerNotAnImage || code == Exiv2::kerFileContainsUnknownImageType
            || code == Exiv2::kerMemoryContainsUnknownImageType)
            return notAPictureText(name);
    }
    QString reason = dynamic_cast<const std::bad_alloc*>(&error) ? QStringLiteral("there isn’t enough memory")
                                                                 : QString::fromUtf8(error.what()).trimmed();
    // File errors start with the path, which the sentence already names.
    if (reason.startsWith(u'/') && reason.contains(QStringLiteral(": ")))
        reason = reason.sliced(reason.indexOf(QStringLiteral(": ")) + 2);
    while (reason.endsWith(u'.'))
        reason.chop(1);
    if (reason.isEmpty())
        reason = QStringLiteral("unknown error");
    else if (reason.size() > 1 && !reason.at(1).isUpper())
        reason[0] = reason.at(0).toLower();
    return QStringLiteral("Couldn’t %1 “%2”: %3.").arg(verb, name, reason);
}

} // namespace orwick::exiv2
