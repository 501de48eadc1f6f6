// Fuzzes the reader of orwick:// links, which any program (a browser, a chat, a script) can hand
// to Orwick. Any bytes must read without crashing; a link that names something names an
// absolute path without NUL; and the request written back as a link reads back the same, so
// every byte of a name survives. The same bytes as command-line arguments (split at NUL) give
// absolute paths only.

#include "FuzzCheck.h"
#include "app/OpenRouter.h"

#include <QUrl>

using namespace orwick;
using fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const QByteArray input = fuzz::bytesOf(bytes, size);
    const FilePath base = FilePath::fromNative("/fuzz/base");
    if (const auto request = OpenRouter::parseLink(QByteArrayView(input), base)) {
        check(request->path.native().startsWith('/'), "a linked path is absolute");
        check(!request->path.native().contains('\0'), "a linked path holds no NUL");
        const QByteArray written = "orwick://open?path=" + request->path.native().toPercentEncoding("/")
            + (request->reveal ? "&reveal=1" : "");
        check(OpenRouter::parseLink(QByteArrayView(written), base) == request, "a request written as a link reads back the same");
    }
    (void)OpenRouter::parseLink(QString::fromUtf8(input), base);
    for (const OpenRequest& request : OpenRouter::requestsFromArguments(input.split('\0'), base))
        check(request.path.native().startsWith('/') && !request.path.native().contains('\0'), "an argument's path is absolute");
    return 0;
}
