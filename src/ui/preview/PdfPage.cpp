#include "ui/preview/PdfPage.h"

#include "platform/UniqueFd.h"

#include <QPdfDocument>
#include <fcntl.h>

namespace orwick {

Result<PdfFirstPage> renderPdfFirstPage(const FilePath& path, QSize box)
{
    // Opened by its bytes and handed over as /proc/self/fd/N, so any file name works.
    UniqueFd fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    if (!fd.ok())
        return failure(QStringLiteral("Can’t read “%1”.").arg(path.fileName()));
    QPdfDocument document;
    const auto error = document.load(QStringLiteral("/proc/self/fd/%1").arg(fd.get()));
    if (error == QPdfDocument::Error::IncorrectPassword)
        return failure(QStringLiteral("“%1” is protected by a password.").arg(path.fileName()));
    if (error != QPdfDocument::Error::None || document.pageCount() < 1)
        return failure(QStringLiteral("“%1” can’t be shown: the PDF is damaged or empty.").arg(path.fileName()));
    PdfFirstPage page;
    page.pageCount = document.pageCount();
    page.pointSize = document.pagePointSize(0);
    if (page.pointSize.isEmpty())
        return failure(QStringLiteral("“%1” can’t be shown: the PDF is damaged or empty.").arg(path.fileName()));
    const QSize size = page.pointSize.scaled(QSizeF(box), Qt::KeepAspectRatio).toSize().expandedTo(QSize(1, 1));
    page.image = document.render(0, size);
    if (page.image.isNull())
        return failure(QStringLiteral("“%1” can’t be shown: the PDF is damaged or empty.").arg(path.fileName()));
    return page;
}

} // namespace orwick
