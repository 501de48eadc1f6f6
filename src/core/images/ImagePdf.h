#pragma once
// combineIntoPdf: pictures and PDFs into one PDF, in the order given, through Qt's PDF writer.
//
// Each picture is one page, turned upright by its EXIF orientation (the first frame of an
// animation), read at most kPdfPictureLongestSide pixels on its longest side so memory and the
// PDF stay bounded. Each page of a PDF among the items becomes a page too: Qt PDF draws it at
// kPdfRedrawDpi and the drawing goes on the page, so those pages are pictures of the original
// pages (their text can no longer be selected or searched).
//
// Page size: `fit` makes each page the item's own size (a picture at 72 pixels to the inch, a
// PDF page at its size); `a4` and `letter` fit the item inside the page with a margin, the page
// turned the way the item is (landscape for a wide picture).
//
// Qt's writer stores each picture JPEG-compressed (about quality 94), PNG screenshots included,
// which keeps a PDF of photos near the photos' own size. The PDF is built in memory and handed
// back whole, for the engine to write.
//
// The first item that can't be used (a damaged picture, a PDF that needs a password) fails the
// whole combine with a sentence naming it: no PDF with pages missing is made. Safe on any thread;
// the CancelFlag is polled between pages.

#include "base/CancelFlag.h"
#include "base/FilePath.h"
#include "base/Result.h"

#include <QByteArray>
#include <QList>

namespace orwick {

enum class PdfPageSize { fit, a4, letter };

inline constexpr int kPdfPictureLongestSide = 4096;
inline constexpr int kPdfRedrawDpi = 150;

[[nodiscard]] Result<QByteArray> combineIntoPdf(const QList<FilePath>& items, PdfPageSize size, const CancelFlag& cancel);

} // namespace orwick
