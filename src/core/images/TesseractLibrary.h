#pragma once
// Tesseract's C interface, loaded the first time text is recognised instead of linked into every
// program: libtesseract brings some forty libraries with it (curl, Kerberos, GnuTLS, Leptonica
// and the image codecs), and loading them cost each start of orwick-cli about 6 ms of its 16 ms,
// `orwick-cli status` included, for a feature most runs never use.
//
// Loaded once per process (thread-safe) and never unloaded; the functions are the library's own
// (see tesseract/capi.h) and keep its rules: texts from getUTF8Text go back through deleteText.

#include "base/Result.h"

#include <tesseract/baseapi.h>
#include <tesseract/capi.h>

namespace orwick {

struct TesseractLibrary {
    decltype(&TessBaseAPICreate) create;
    decltype(&TessBaseAPIDelete) destroy;
    decltype(&TessBaseAPISetVariable) setVariable;
    decltype(&TessBaseAPIInit2) init;
    decltype(&TessBaseAPISetImage) setImage;
    decltype(&TessBaseAPIRecognize) recognize;
    decltype(&TessBaseAPIGetUTF8Text) getUTF8Text;
    decltype(&TessDeleteText) deleteText;
    decltype(&TessBaseAPIEnd) end;
    decltype(&TessMonitorCreate) createMonitor;
    decltype(&TessMonitorDelete) deleteMonitor;
    decltype(&TessMonitorSetCancelFunc) setCancelFunc;
    decltype(&TessMonitorSetCancelThis) setCancelThis;
};

// The loaded library, or the sentence saying why text can't be recognised here.
[[nodiscard]] const Result<const TesseractLibrary*>& tesseractLibrary();

} // namespace orwick
