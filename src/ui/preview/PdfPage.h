#pragma once
// PdfPage: the first page of a PDF drawn to fit a box, through Qt PDF, with the page count.
// Runs on any thread (each call has its own document). A damaged or locked PDF gives a sentence.

#include "base/FilePath.h"
#include "base/Result.h"

#include <QImage>

namespace orwick {

struct PdfFirstPage {
    QImage image;
    int pageCount = 0;
    QSizeF pointSize; // the page's size in points
};

[[nodiscard]] Result<PdfFirstPage> renderPdfFirstPage(const FilePath& path, QSize box);

} // namespace orwick
