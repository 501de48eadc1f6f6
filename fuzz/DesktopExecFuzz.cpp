// Fuzzes the reading of a desktop file's Exec line, which any installed application writes.
// Any text must read without crashing; a line that reads gives a program to run, the file is
// always handed on whole (as its path or its link), and no field code is left for the program.

#include "FuzzCheck.h"
#include "platform/DesktopApps.h"

using namespace orwick;
using fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    DesktopApps::Application app;
    app.id = QStringLiteral("fuzz.desktop");
    app.name = QStringLiteral("Fuzz");
    app.icon = QStringLiteral("fuzz-icon");
    app.desktopFile = QStringLiteral("/usr/share/applications/fuzz.desktop");
    app.exec = QString::fromUtf8(fuzz::bytesOf(bytes, size));
    const FilePath file = FilePath::fromNative("/home/fuzz/a file & more.txt");
    if (const auto arguments = DesktopApps::commandLine(app, file)) {
        check(!arguments->isEmpty() && !arguments->first().isEmpty(), "a read line names a program");
        bool handedOn = false;
        for (const QString& argument : *arguments)
            handedOn = handedOn || argument.contains(file.text()) || argument.contains(file.toUrl().toString(QUrl::FullyEncoded));
        check(handedOn, "the file is handed on whole");
    }
    return 0;
}
