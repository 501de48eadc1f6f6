#include "ui/preview/DocumentDisposal.h"

#include "async/LowPriorityPool.h"

#include <QPlainTextDocumentLayout>

namespace orwick {

void disposeInBackground(std::shared_ptr<QTextDocument> document)
{
    if (!document || document.use_count() > 1)
        return; // another holder frees it when it lets go
    if (!qobject_cast<QPlainTextDocumentLayout*>(document->documentLayout()))
        return;
    // No thread's document any more, so the pool's thread may free it.
    document->moveToThread(nullptr);
    startLowPriority([document = std::move(document)]() mutable { document.reset(); });
}

} // namespace orwick
