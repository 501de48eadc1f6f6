// Fuzzes the reader of .trashinfo files, which any program may write. Any text must read without
// crashing; a former path never holds NUL (the system would act on the path cut short there); a
// relative one never leads out of the volume whose Trash holds the item; and every path the
// writer's format can carry reads back exactly, with its deletion date.

#include "FuzzCheck.h"
#include "platform/Trash.h"

#include <fuzzer/FuzzedDataProvider.h>

using namespace orwick;
using fuzz::check;

namespace {

struct Place {
    FilePath item; // a trashed item, in files/ of its Trash
    FilePath top;  // the folder relative paths start from
};

const Place kPlaces[] = {
    {FilePath::fromNative("/home/user/.local/share/Trash/files/item"), FilePath::fromNative("/home/user/.local/share")},
    {FilePath::fromNative("/media/disk/.Trash-1000/files/item"), FilePath::fromNative("/media/disk")},
    {FilePath::fromNative("/media/disk/.Trash/1000/files/item"), FilePath::fromNative("/media/disk")},
    {FilePath::fromNative("/.Trash-0/files/item"), FilePath::fromNative("/")},
};

QByteArray infoFor(const QByteArray& path)
{
    return "[Trash Info]\nPath=" + path.toPercentEncoding("/") + "\nDeletionDate=2024-05-01T10:20:30\n";
}

// The value of the first Path line, decoded: what the file says, right or wrong.
QByteArray recordedPath(const QByteArray& info)
{
    for (const QByteArray& line : info.split('\n'))
        if (line.startsWith("Path="))
            return QByteArray::fromPercentEncoding(line.mid(5).trimmed());
    return {};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    FuzzedDataProvider data(bytes, size);
    const Place& place = kPlaces[data.ConsumeIntegralInRange<size_t>(0, std::size(kPlaces) - 1)];
    const bool roundTrip = data.ConsumeBool();
    const std::string rest = data.ConsumeRemainingBytesAsString();
    const QByteArray input(rest.data(), qsizetype(rest.size()));

    if (!roundTrip) {
        const auto former = trash::originalPathIn(input, place.item);
        if (former) {
            check(!former->isEmpty() && former->native().startsWith('/'), "a former path is absolute");
            check(!former->native().contains('\0'), "a former path holds no NUL");
            check(former->native().contains('/'), "a former path is a path");
        }
        // The whole record reads the same path, and any DeletionDate line reads without harm.
        const trash::Record record = trash::recordIn(input, place.item);
        check(record.originalPath == former, "the record holds the path read alone");
        check(record.deletionDate == trash::deletionDateIn(input), "the record holds the date read alone");
        // A relative path stays on the item's volume.
        if (former && !recordedPath(input).startsWith('/'))
            check(place.top.isAncestorOf(*former), "a relative former path stays below the volume's top");
        return 0;
    }

    // Whatever the writer records reads back as it was: absolute paths, and on a volume, paths
    // relative to its top.
    if (input.isEmpty() || input.contains('\0'))
        return 0;
    const FilePath absolute = FilePath::fromNative("/" + input);
    if (absolute.isRoot())
        return 0;
    check(trash::originalPathIn(infoFor(absolute.native()), place.item) == absolute, "an absolute path reads back");
    check(trash::deletionDateIn(infoFor(absolute.native())).has_value(), "the writer's date reads back");
    const FilePath below = place.top.child(QByteArrayView(input));
    if (place.top.isAncestorOf(below)) {
        const QByteArray relative = below.native().mid(place.top.isRoot() ? 1 : place.top.native().size() + 1);
        check(trash::originalPathIn(infoFor(relative), place.item) == below, "a relative path reads back");
    }
    return 0;
}
