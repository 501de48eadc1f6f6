#pragma once
// The small text pieces the operations' titles and toasts are made of.

#include "base/FilePath.h"

#include <QList>
#include <QString>

namespace orwick {

// "“name”" with typographic quotes.
QString quoted(const QString& text);
// The item's name for one item, else "N items" ("Copied report.pdf", "Copied 3 items").
QString countOrName(const QList<FilePath>& items);
// "1 item" or "N items" (job titles: "Copying 12 items", "Copying 1 item").
QString itemCount(qsizetype count);

} // namespace orwick
