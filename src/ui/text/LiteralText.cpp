#include "ui/text/LiteralText.h"

namespace orwick {

QString literalText(const QString& text)
{
    if (!text.contains(QLatin1Char('&')))
        return text;
    QString escaped = text;
    return escaped.replace(QLatin1Char('&'), QStringLiteral("&&"));
}

} // namespace orwick
