// The twenty language descriptions and the aliases that map file extensions and Markdown fence
// names onto them; choosing a language for a file or a fence name.

#include "highlight/Language.h"

#include "base/FilePath.h"

#include <QHash>

namespace orwick::SyntaxHighlighter {
namespace {

// Word lists are written as one space-separated string each.
constexpr const char* kCLike =
    "if else for while do switch case default break continue return goto try catch throw finally new delete "
    "class struct enum public private protected static const import package extends implements interface this "
    "super void final abstract sizeof typedef namespace using virtual override template typename inline extern "
    "volatile union auto register operator friend explicit mutable constexpr noexcept async await yield "
    "instanceof in is as var val fun object companion when sealed data open internal lateinit suspend "
    "synchronized native transient throws assert record permits readonly unsafe fixed lock event delegate "
    "params ref out get set init partial where select from let def with required late factory mixin library "
    "part show hide @interface @implementation @end @property @protocol #include #define #import #if #ifdef "
    "#ifndef #endif #else #pragma #elif #undef";
constexpr const char* kCTypes =
    "int long short char float double bool boolean byte unsigned signed string String true false null nullptr "
    "NULL nil YES NO id size_t uint8_t int32_t int64_t uint32_t uint64_t Int Unit Any object decimal dynamic "
    "uint ulong ushort sbyte self BOOL instancetype";

enum Switch : unsigned {
    kTripleQuotes = 1,
    kCapitalizedTypes = 2,
    kVariables = 4,
    kLineKeys = 8,
    kCaseInsensitive = 16,
};

bool startsOrdinaryWord(QChar c)
{
    return c.unicode() >= 0x80 || c == u'_' || (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

QSet<QString> wordSet(const QString& words)
{
    QSet<QString> set;
    for (const QString& word : words.split(u' ', Qt::SkipEmptyParts))
        set.insert(word);
    return set;
}

Language describe(const char* key, const QString& keywords, const QString& builtins, QList<QString> lineComments,
                  std::optional<BlockComment> block, const char* quotes, unsigned switches = 0,
                  Family family = Family::code)
{
    Language language;
    language.key = QString::fromLatin1(key);
    language.keywords = wordSet(keywords);
    language.builtins = wordSet(builtins);
    language.lineComments = std::move(lineComments);
    language.blockComment = std::move(block);
    language.quotes = QString::fromLatin1(quotes);
    language.tripleQuotes = switches & kTripleQuotes;
    language.capitalizedTypes = switches & kCapitalizedTypes;
    language.variables = switches & kVariables;
    language.lineKeys = switches & kLineKeys;
    language.caseInsensitive = switches & kCaseInsensitive;
    language.family = family;

    // Keywords first: a word in both lists is a keyword.
    for (const auto* list : {&language.keywords, &language.builtins}) {
        const Kind kind = list == &language.keywords ? Kind::keyword : Kind::type;
        for (const QString& word : *list) {
            language.words.add(language.caseInsensitive ? word.toLower() : word, kind);
            if (!startsOrdinaryWord(word.front()) && !language.wordPrefixes.contains(word.front()))
                language.wordPrefixes.append(word.front());
        }
    }
    language.hashComment = language.lineComments.contains(QStringLiteral("#"));
    return language;
}

const BlockComment kSlashStar{QStringLiteral("/*"), QStringLiteral("*/")};

std::vector<Language> buildTable()
{
    const QString cLike = QString::fromLatin1(kCLike);
    std::vector<Language> table;
    table.reserve(20);
    table.push_back(describe("swift",
        "func let var if else guard return for in while repeat switch case default break continue fallthrough "
        "struct class enum protocol extension import init deinit self Self super throw throws rethrows try catch "
        "do defer where as is static private fileprivate internal public open final override mutating "
        "nonmutating inout typealias associatedtype some any async await actor nonisolated isolated lazy weak "
        "unowned convenience required indirect subscript operator precedencegroup get set willSet didSet "
        "consuming borrowing sending macro package #if #else #endif #available #selector #Preview",
        "true false nil", {"//"}, kSlashStar, "\"", kTripleQuotes | kCapitalizedTypes));
    table.push_back(describe("js",
        "function const let var if else return for of in while do switch case default break continue new delete "
        "typeof instanceof class extends super this import export from as async await yield try catch finally "
        "throw static get set void with interface type enum implements private public protected readonly declare "
        "namespace module abstract keyof infer is satisfies unique query mutation fragment on subscription "
        "message service rpc returns",
        "true false null undefined NaN Infinity string number boolean any unknown never object symbol bigint "
        "console window document",
        {"//"}, kSlashStar, "\"'`"));
    table.push_back(describe("py",
        "def class if elif else for while in not and or is return import from as with try except finally raise "
        "pass break continue lambda yield global nonlocal assert del async await match case function repeat next "
        "library",
        "True False None self cls print len range str int float list dict set tuple bool TRUE FALSE NULL NA",
        {"#"}, std::nullopt, "\"'", kTripleQuotes));
    table.push_back(describe("rb",
        "def class module if elsif else unless case when while until for in do end return yield begin rescue "
        "ensure raise then require require_relative include extend attr_reader attr_writer attr_accessor private "
        "protected public self super and or not defp defmodule fn alias import use",
        "true false nil", {"#"}, std::nullopt, "\"'"));
    table.push_back(describe("go",
        "func package import var const type struct interface map chan if else for range switch case default break "
        "continue return go defer select fallthrough goto",
        "true false nil iota string int int8 int16 int32 int64 uint uint8 uint16 uint32 uint64 float32 float64 "
        "bool byte rune error any make len cap append new panic recover",
        {"//"}, std::nullopt, "\"'`", kCapitalizedTypes));
    table.push_back(describe("rs",
        "fn let mut const static if else match loop while for in break continue return struct enum trait impl "
        "type where pub crate mod use as self Self super move ref async await dyn unsafe extern macro_rules pub "
        "comptime defer errdefer try catch orelse test usingnamespace inline export",
        "true false None Some Ok Err i8 i16 i32 i64 i128 isize u8 u16 u32 u64 u128 usize f32 f64 bool char str "
        "null undefined void anytype",
        {"//"}, kSlashStar, "\"", kCapitalizedTypes));
    for (const char* key : {"cpp", "java", "cs"})
        table.push_back(describe(key, cLike, kCTypes, {"//"}, kSlashStar, "\"'", kCapitalizedTypes));
    table.push_back(describe("php",
        cLike + " function echo foreach elseif endif endforeach require_once include_once my our sub use unless "
                "print fn match",
        "true false null TRUE FALSE NULL array", {"//", "#"}, std::nullopt, "\"'", kVariables));
    table.push_back(describe("lua",
        "function local if then else elseif end for in do while repeat until return break and or not goto",
        "true false nil self", {"--"}, BlockComment{"--[[", "]]"}, "\"'"));
    table.push_back(describe("sh",
        "if then else elif fi for in do done while until case esac function return exit export local readonly "
        "declare source alias unset shift set eval exec trap cd echo printf test sudo let",
        "true false", {"#"}, std::nullopt, "\"'", kVariables));
    table.push_back(describe("make",
        "ifeq ifneq ifdef ifndef else endif include define endef export .PHONY override", "", {"#"}, std::nullopt,
        "\"'", kVariables));
    table.push_back(describe("dockerfile",
        "FROM RUN CMD LABEL EXPOSE ENV ADD COPY ENTRYPOINT VOLUME USER WORKDIR ARG ONBUILD STOPSIGNAL HEALTHCHECK "
        "SHELL AS as",
        "", {"#"}, std::nullopt, "\"'"));
    table.push_back(describe("sql",
        "select from where and or not insert into values update set delete create table drop alter add index on "
        "join left right inner outer full cross group by order having limit offset as distinct union all case "
        "when then else end in is like between exists primary key foreign references default unique constraint "
        "view with returning begin commit rollback transaction if asc desc cascade trigger function returns "
        "language grant",
        "null true false int integer bigint text varchar char boolean date timestamp timestamptz uuid jsonb json "
        "serial real numeric count sum avg min max now coalesce",
        {"--"}, kSlashStar, "'\"", kCaseInsensitive));
    table.push_back(describe("yaml", "", "true false null yes no on off ~", {"#"}, std::nullopt, "\"'", kLineKeys));
    table.push_back(describe("toml", "", "true false", {"#", ";"}, std::nullopt, "\"'", kLineKeys));
    table.push_back(describe("json", "", "true false null", {"//"}, std::nullopt, "\"", 0, Family::json));
    table.push_back(describe("css",
        "@media @import @keyframes @font-face @supports @layer @container @tailwind @apply @use @mixin @include "
        "@extend @if @else @each !important",
        "", {"//"}, kSlashStar, "\"'", 0, Family::css));
    table.push_back(describe("html", "", "", {}, BlockComment{"<!--", "-->"}, "\"'", 0, Family::markup));
    return table;
}

const std::vector<Language>& table()
{
    static const std::vector<Language> languages = buildTable();
    return languages;
}

QHash<QString, QString> buildAliases()
{
    const std::initializer_list<std::pair<const char*, const char*>> groups = {
        {"js", "javascript mjs cjs jsx typescript ts tsx mts cts graphql gql"},
        {"html", "vue svelte astro xml svg plist xhtml htm storyboard xib entitlements csproj"},
        {"py", "python pyw pyi r"},
        {"rb", "ruby rake gemspec ex exs elixir"},
        {"go", "golang"},
        {"rs", "rust zig"},
        {"cpp", "c++ cc cxx hpp hh hxx c h objc objective-c m mm"},
        {"java", "java kotlin kt kts scala groovy gradle dart proto"},
        {"cs", "csharp c#"},
        {"sh", "shell bash zsh fish console shellscript command ps1 powershell"},
        {"yaml", "yml"},
        {"toml", "ini cfg conf properties env tf hcl"},
        {"json", "jsonc json5 geojson webmanifest ipynb"},
        {"css", "scss sass less"},
        {"make", "makefile mk"},
        {"dockerfile", "docker"},
        {"sql", "psql mysql sqlite"},
        {"lua", "lua"},
        {"php", "pl perl"},
    };
    QHash<QString, QString> aliases;
    for (const auto& [key, names] : groups)
        for (const QString& name : QString::fromLatin1(names).split(u' '))
            aliases.insert(name, QString::fromLatin1(key));
    return aliases;
}

} // namespace

const QHash<QString, QString>& aliases()
{
    static const QHash<QString, QString> map = buildAliases();
    return map;
}

const Language* languageWithKey(QStringView key)
{
    for (const Language& language : table())
        if (language.key == key)
            return &language;
    return nullptr;
}

const std::vector<const Language*>& allLanguages()
{
    static const std::vector<const Language*> list = [] {
        std::vector<const Language*> pointers;
        for (const Language& language : table())
            pointers.push_back(&language);
        return pointers;
    }();
    return list;
}

QString languageKey(const Language& language) { return language.key; }

const Language* languageNamed(QStringView name)
{
    const QString lower = name.toString().toLower();
    const auto alias = aliases().constFind(lower);
    return languageWithKey(alias != aliases().cend() ? QStringView(*alias) : QStringView(lower));
}

const Language* languageForFileName(QStringView fileName)
{
    const QString name = fileName.toString().toLower();
    if (name == u"makefile")
        return languageWithKey(u"make");
    if (name == u"dockerfile" || name.startsWith(u"dockerfile."))
        return languageWithKey(u"dockerfile");
    if (name.startsWith(u'.') && name != u".env" && (name.endsWith(u"rc") || name.endsWith(u"profile")))
        return languageWithKey(u"sh");
    const qsizetype dot = name.lastIndexOf(u'.');
    if (dot < 0)
        return nullptr;
    const QStringView extension = QStringView(name).mid(dot + 1);
    const auto alias = aliases().constFind(extension.toString());
    return languageWithKey(alias != aliases().cend() ? QStringView(*alias) : extension);
}

const Language* languageFor(const FilePath& path) { return languageForFileName(path.fileName()); }

} // namespace orwick::SyntaxHighlighter
