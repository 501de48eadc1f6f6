// Fuzzes the check that a JPEG isn't cut short (images/ImageRead.h), which walks the segment
// lengths of any file named .jpg before Qt decodes it. Any bytes must be judged without
// crashing or reading past the end; the device is left at its start for the decoder; a file
// ending with the end-of-image marker is whole, and one without that marker anywhere is not.

#include "FuzzCheck.h"
#include "images/ImageRead.h"

#include <QBuffer>

using namespace orwick;
using fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QByteArray bytes = fuzz::bytesOf(data, size);
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    const bool whole = jpegLooksComplete(device);
    check(device.pos() == 0, "the device is left at its start");
    if (bytes.size() >= 4 && bytes.endsWith(QByteArrayView("\xFF\xD9", 2)))
        check(whole, "a file ending with the end marker is whole");
    if (!bytes.contains(QByteArrayView("\xFF\xD9", 2)))
        check(!whole, "a file without the end marker is cut short");
    return 0;
}
