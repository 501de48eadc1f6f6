// The highlighter's colours and the renderers that only need colours: kind names, the theme's
// syntax palette with Orwick's defaults, preview formats and the style sheet for HTML spans.

#include "highlight/Language.h"

namespace orwick::SyntaxHighlighter {
namespace {

constexpr const char* kKindNames[kKindCount] = {"keyword", "string", "number", "comment", "type",
                                                "function", "tag", "attribute", "property"};

// Light, then dark, per kind (in the order of Kind). Tags share the keyword colour.
constexpr QRgb kDefaults[kKindCount][2] = {
    {0xAD3DA4, 0xFF7AB2}, // keyword
    {0xC41A16, 0xFF8170}, // string
    {0x1C00CF, 0xD9C97C}, // number
    {0x6C7986, 0x7F8C98}, // comment
    {0x3900A0, 0xDABAFF}, // type
    {0x326D74, 0x67B7A4}, // function
    {0xAD3DA4, 0xFF7AB2}, // tag
    {0x815F03, 0xCC9768}, // attribute
    {0x0F68A0, 0x4EB0CC}, // property
};

const QColor* paletteEntry(Kind kind, const SyntaxPalette& palette)
{
    switch (kind) {
    case Kind::keyword:
    case Kind::tag: return &palette.keyword;
    case Kind::string: return &palette.string;
    case Kind::number: return &palette.number;
    case Kind::comment: return &palette.comment;
    case Kind::type: return &palette.type;
    case Kind::function: return &palette.function;
    case Kind::attribute: return &palette.attribute;
    case Kind::property: return &palette.property;
    }
    return nullptr;
}

} // namespace

const char* kindNameLatin1(Kind kind) { return kKindNames[int(kind)]; }
QString kindName(Kind kind) { return QString::fromLatin1(kKindNames[int(kind)]); }

const QList<QString>& SyntaxPalette::keys()
{
    static const QList<QString> list = {"keyword", "string", "number", "comment",
                                        "type", "function", "attribute", "property"};
    return list;
}

SyntaxPalette SyntaxPalette::fromLookup(const std::function<QColor(const QString& key)>& lookup)
{
    SyntaxPalette palette;
    QColor* fields[] = {&palette.keyword, &palette.string, &palette.number, &palette.comment,
                        &palette.type, &palette.function, &palette.attribute, &palette.property};
    for (int i = 0; i < 8; ++i)
        *fields[i] = lookup(keys()[i]);
    return palette;
}

QColor defaultColor(Kind kind, bool dark) { return QColor::fromRgb(kDefaults[int(kind)][dark ? 1 : 0]); }

QColor color(Kind kind, const SyntaxPalette& palette, bool dark)
{
    const QColor* themed = paletteEntry(kind, palette);
    return themed && themed->isValid() ? *themed : defaultColor(kind, dark);
}

QTextCharFormat format(Kind kind, const QFont& font, const SyntaxPalette& palette, bool dark)
{
    QTextCharFormat format;
    format.setFont(font);
    format.setForeground(color(kind, palette, dark));
    if (kind == Kind::comment)
        format.setFontItalic(true);
    return format;
}

QList<QTextLayout::FormatRange> attributed(const std::vector<Token>& tokens, const QFont& font,
                                           const SyntaxPalette& palette, bool dark)
{
    QTextCharFormat formats[kKindCount];
    for (int kind = 0; kind < kKindCount; ++kind)
        formats[kind] = format(Kind(kind), font, palette, dark);
    QList<QTextLayout::FormatRange> ranges;
    ranges.reserve(qsizetype(tokens.size()));
    for (const Token& token : tokens)
        ranges.append({token.start, token.length, formats[int(token.kind)]});
    return ranges;
}

QList<QTextLayout::FormatRange> attributed(QStringView text, const Language& language, const QFont& font,
                                           const SyntaxPalette& palette, bool dark)
{
    return attributed(tokens(text, language), font, palette, dark);
}

QString css(bool dark, const SyntaxPalette& palette)
{
    QString sheet;
    for (int kind = 0; kind < kKindCount; ++kind) {
        const QColor c = color(Kind(kind), palette, dark);
        sheet += QString::asprintf(".tok-%s { color: rgba(%d,%d,%d,%.3f);%s }\n", kKindNames[kind], c.red(),
                                   c.green(), c.blue(), c.alphaF(),
                                   Kind(kind) == Kind::comment ? " font-style: italic;" : "");
    }
    return sheet;
}

} // namespace orwick::SyntaxHighlighter
