// Choosing a language: by a file's name, then its extension; by a Markdown fence name; the
// ninety-three aliases (the twenty table keys in order are LanguageSnippet's).

#include "TokenText.h"

#include "base/FilePath.h"

#include <gtest/gtest.h>

namespace orwick::test {
namespace {

using namespace SyntaxHighlighter;

QString keyForFile(const char* name)
{
    const Language* language = languageForFileName(QString::fromUtf8(name));
    return language ? languageKey(*language) : QStringLiteral("(none)");
}

QString keyForFence(const char* name)
{
    const Language* language = languageNamed(QString::fromUtf8(name));
    return language ? languageKey(*language) : QStringLiteral("(none)");
}

} // namespace

// Makefiles in any case, Dockerfiles and their dotted variants and shell start-up files go by
// their names; the rest by an extension, compared in lower case, through the aliases.
TEST(LanguageChoice, FileNamesThenExtensions)
{
    const std::pair<const char*, const char*> rows[] = {
        {"Makefile", "make"}, {"makefile", "make"}, {"MAKEFILE", "make"}, {"rules.mk", "make"},
        {"Dockerfile", "dockerfile"}, {"Dockerfile.dev", "dockerfile"}, {"dockerfile.prod.arm", "dockerfile"},
        {"Dockerfiles", "(none)"}, // no dot after the name
        {".zshrc", "sh"}, {".bashrc", "sh"}, {".profile", "sh"}, {".bash_profile", "sh"},
        {".env", "toml"}, // by its extension "env"
        {"zshrc", "(none)"},
        {"App.tsx", "js"}, {"stdio.h", "cpp"}, {"Analysis.ipynb", "json"}, {"main.C", "cpp"}, {"script.PY", "py"},
        {"View.swift", "swift"}, // a table key maps to itself
        {"archive.tar.gz", "(none)"}, {"README", "(none)"}, {"notes.md", "(none)"}, {"", "(none)"},
    };
    for (const auto& [name, key] : rows)
        EXPECT_EQ(keyForFile(name), key) << name;
}

TEST(LanguageChoice, ByPathUsesTheLastComponent)
{
    const Language* language = languageFor(FilePath::fromText("/srv/build.d/Makefile"));
    ASSERT_NE(language, nullptr);
    EXPECT_EQ(languageKey(*language), "make");
    EXPECT_EQ(languageFor(FilePath::fromText("/srv/app.d/notes")), nullptr);
}

TEST(LanguageChoice, FenceNamesAreLowerCasedThenLookedUp)
{
    EXPECT_EQ(keyForFence("TypeScript"), "js");
    EXPECT_EQ(keyForFence("C++"), "cpp");
    EXPECT_EQ(keyForFence("c#"), "cs");
    EXPECT_EQ(keyForFence("Objective-C"), "cpp");
    EXPECT_EQ(keyForFence("SQL"), "sql");
    EXPECT_EQ(keyForFence("html"), "html");
    EXPECT_EQ(keyForFence("brainfuck"), "(none)");
    EXPECT_EQ(keyForFence(""), "(none)");
}

TEST(LanguageChoice, EveryAliasMapsToItsTableKey)
{
    const std::pair<const char*, const char*> groups[] = {
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
    int count = 0;
    for (const auto& [key, names] : groups) {
        for (const QString& name : QString(names).split(u' ')) {
            ++count;
            EXPECT_EQ(aliases().value(name), key) << name.toStdString();
            const Language* named = languageNamed(name.toUpper());
            ASSERT_NE(named, nullptr) << name.toStdString();
            EXPECT_EQ(languageKey(*named), key) << name.toStdString();
            EXPECT_EQ(keyForFile(("file." + name).toUtf8().constData()), key) << name.toStdString();
        }
    }
    EXPECT_EQ(count, 93);
    EXPECT_EQ(aliases().size(), 93);
}

TEST(LanguageChoice, EveryTableKeyNamesItself)
{
    for (const Language* language : allLanguages()) {
        EXPECT_EQ(languageNamed(languageKey(*language)), language);
        EXPECT_EQ(languageForFileName(QStringLiteral("x.") + languageKey(*language)), language);
    }
}

} // namespace orwick::test
