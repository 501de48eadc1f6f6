#include "fileops/OperationTexts.h"

namespace orwick {

QString quoted(const QString& text) { return QStringLiteral("“") + text + QStringLiteral("”"); }

QString countOrName(const QList<FilePath>& items)
{
    if (items.size() == 1)
        return items.first().fileName();
    return itemCount(items.size());
}

QString itemCount(qsizetype count)
{
    return count == 1 ? QStringLiteral("1 item") : QString::number(count) + QStringLiteral(" items");
}

} // namespace orwick
