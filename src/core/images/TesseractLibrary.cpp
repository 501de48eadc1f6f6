#include "images/TesseractLibrary.h"

#include <dlfcn.h>

namespace orwick {

namespace {

// The interface this was built against is version 5's; the unversioned name is the fallback of
// systems that only ship the development link.
constexpr const char* kLibraryNames[] = {"libtesseract.so.5", "libtesseract.so"};

Result<const TesseractLibrary*> load()
{
    void* handle = nullptr;
    for (const char* name : kLibraryNames) {
        handle = dlopen(name, RTLD_NOW | RTLD_LOCAL);
        if (handle)
            break;
    }
    if (!handle)
        return failure(QStringLiteral("Text recognition isn’t available: Tesseract isn’t installed. Install the package libtesseract5."));

    static TesseractLibrary library;
    bool complete = true;
    auto resolve = [&](auto& function, const char* symbol) {
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(dlsym(handle, symbol));
        complete = complete && function != nullptr;
    };
    resolve(library.create, "TessBaseAPICreate");
    resolve(library.destroy, "TessBaseAPIDelete");
    resolve(library.setVariable, "TessBaseAPISetVariable");
    resolve(library.init, "TessBaseAPIInit2");
    resolve(library.setImage, "TessBaseAPISetImage");
    resolve(library.recognize, "TessBaseAPIRecognize");
    resolve(library.getUTF8Text, "TessBaseAPIGetUTF8Text");
    resolve(library.deleteText, "TessDeleteText");
    resolve(library.end, "TessBaseAPIEnd");
    resolve(library.createMonitor, "TessMonitorCreate");
    resolve(library.deleteMonitor, "TessMonitorDelete");
    resolve(library.setCancelFunc, "TessMonitorSetCancelFunc");
    resolve(library.setCancelThis, "TessMonitorSetCancelThis");
    if (!complete)
        return failure(QStringLiteral("Text recognition isn’t available: the installed Tesseract is too old. Install libtesseract5."));
    return &library;
}

} // namespace

const Result<const TesseractLibrary*>& tesseractLibrary()
{
    static const Result<const TesseractLibrary*> loaded = load();
    return loaded;
}

} // namespace orwick
