#pragma once
// Text recognition in pictures, through Tesseract (its LSTM engine and the language data Debian
// installs as tesseract-ocr-<code>).
//
// recognizeText reads the picture upright (EXIF orientation honoured, the first frame of an
// animation, at most kRecognitionLongestSide pixels on its longest side; see ImageRead.h) and
// hands Tesseract its grey pixels. Each call has its own Tesseract instance, so calls may run on
// several workers at once; the CancelFlag is polled by Tesseract while it reads. A picture with
// no text is not a failure: the text is empty (noTextFoundText() says so in the user's words).
// Tesseract's diagnostics ("Estimating resolution…") go to /dev/null, never to standard error.

#include "base/CancelFlag.h"
#include "base/FilePath.h"
#include "base/Result.h"

#include <QStringList>

namespace orwick {

inline constexpr int kRecognitionLongestSide = 6000;

// The installed languages' codes ("eng", "deu", "chi_sim"), "eng" first when there, the rest in
// name order; "osd" (orientation and script detection) is not a language. Empty when Tesseract
// has no data installed.
[[nodiscard]] QStringList recognitionLanguages();

// The text read in `file` in `language` (a code, or several joined by "+": "eng+deu"). A language
// that isn't installed fails with the Debian package that brings it.
[[nodiscard]] Result<QString> recognizeText(const FilePath& file, const QString& language, const CancelFlag& cancel);

// "No text was found in “scan.png”."
[[nodiscard]] QString noTextFoundText(const FilePath& file);

} // namespace orwick
