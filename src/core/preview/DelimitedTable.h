#pragma once
// DelimitedTable: CSV and TSV text as rows of cells — quoted cells (with doubled quotes and line
// breaks inside), the separator by extension (tab for .tsv, else the commonest of comma and
// semicolon on the first line). Bounded by rows and columns. Pure; safe on any thread.

#include <QList>
#include <QString>
#include <QStringList>

namespace orwick::preview {

struct DelimitedTable {
    QList<QStringList> rows;  // the first row is the header
    bool isPartial = false;   // more rows or columns than the limits
};

QChar separatorFor(const QString& lowerExtension, QStringView firstLine);
DelimitedTable parseDelimited(QStringView text, QChar separator, int maxRows, int maxColumns);

} // namespace orwick::preview
