#include "preview/DelimitedTable.h"

namespace orwick::preview {

QChar separatorFor(const QString& lowerExtension, QStringView firstLine)
{
    if (lowerExtension == QLatin1StringView("tsv") || lowerExtension == QLatin1StringView("tab"))
        return u'\t';
    return firstLine.count(u';') > firstLine.count(u',') ? QChar(u';') : QChar(u',');
}

DelimitedTable parseDelimited(QStringView text, QChar separator, int maxRows, int maxColumns)
{
    DelimitedTable table;
    QStringList row;
    QString cell;
    bool quoted = false;
    bool cellStarted = false;
    auto endCell = [&] {
        if (row.size() < maxColumns)
            row.append(cell);
        else
            table.isPartial = true;
        cell.clear();
        cellStarted = false;
    };
    auto endRow = [&] {
        endCell();
        table.rows.append(row);
        row.clear();
    };
    const qsizetype n = text.size();
    for (qsizetype i = 0; i < n; ++i) {
        if (table.rows.size() >= maxRows) {
            table.isPartial = true;
            return table;
        }
        const QChar c = text[i];
        if (quoted) {
            if (c == u'"' && i + 1 < n && text[i + 1] == u'"') {
                cell.append(u'"');
                ++i;
            } else if (c == u'"') {
                quoted = false;
            } else {
                cell.append(c);
            }
            continue;
        }
        if (c == u'"' && !cellStarted) {
            quoted = true;
            cellStarted = true;
        } else if (c == separator) {
            endCell();
        } else if (c == u'\n') {
            endRow();
        } else if (c != u'\r') {
            cell.append(c);
            cellStarted = true;
        }
    }
    if (cellStarted || !cell.isEmpty() || !row.isEmpty())
        endRow();
    if (table.rows.size() > maxRows) {
        table.rows.resize(maxRows);
        table.isPartial = true;
    }
    return table;
}

} // namespace orwick::preview
