#include "fileops/TransferNotes.h"

#include "fileops/OperationTexts.h"

namespace orwick {

QString withTransferNotes(const QString& toast, const ChangeReport& report)
{
    QString text = toast;
    auto items = [](int count, const char* one, const char* many) {
        return itemCount(count) + QString::fromUtf8(count == 1 ? one : many);
    };
    if (report.leftInPlace > 0)
        text += QStringLiteral("; ") + items(report.leftInPlace, " changed during the move and was left in place",
                                             " changed during the move and were left in place");
    if (report.leftOut > 0)
        text += QStringLiteral("; ") + items(report.leftOut, " was left out (sockets and devices aren’t copied)",
                                             " were left out (sockets and devices aren’t copied)");
    if (report.attributesLost > 0)
        text += QStringLiteral("; ") + items(report.attributesLost, " lost extended attributes the disk refused",
                                             " lost extended attributes the disk refused");
    return text;
}

} // namespace orwick
