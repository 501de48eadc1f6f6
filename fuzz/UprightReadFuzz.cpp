// Fuzzes the reader every picture is decoded through (images/UprightReader.h) on any bytes, as a
// PNG or WebP from anywhere may carry any EXIF. Nothing may crash or throw; the turn asked for is
// one of the eight; a picture that decodes is turned by exactly that turn.

#include "FuzzCheck.h"
#include "images/UprightReader.h"

#include <QFile>
#include <sys/mman.h>
#include <unistd.h>

using namespace orwick;
using fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size > (1 << 20))
        return 0;
    // A file in memory: the reader reads the metadata through the open file's descriptor.
    const int fd = ::memfd_create("picture", 0);
    if (fd < 0)
        return 0;
    if (size > 0 && ::write(fd, data, size) != ssize_t(size)) {
        ::close(fd);
        return 0;
    }
    ::lseek(fd, 0, SEEK_SET);
    {
        QFile file;
        if (file.open(fd, QIODevice::ReadOnly)) {
            UprightReader reader(file);
            const QSize stored = reader.qt().size();
            const QImageIOHandler::Transformations turn = reader.transformation();
            check(turn.toInt() >= 0 && turn.toInt() <= 7, "a turn is one of the eight");
            const QImage image = reader.read();
            if (!image.isNull() && stored.isValid())
                check(image.size() == (turn.testFlag(QImageIOHandler::TransformationRotate90) ? stored.transposed() : stored),
                      "the picture is turned by the turn it reports");
        }
    }
    ::close(fd);
    return 0;
}
