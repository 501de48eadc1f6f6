// One snippet of each of the twenty languages, highlighted as a reader expects: table-driven,
// one named row per language.

#include "TokenText.h"

#include <gtest/gtest.h>

namespace orwick::test {
namespace {

struct Snippet {
    const char* key;
    const char* text;
    QStringList expected;
};

void PrintTo(const Snippet& snippet, std::ostream* os) { *os << snippet.key; }

class LanguageSnippet : public ::testing::TestWithParam<Snippet> {};

TEST_P(LanguageSnippet, HighlightsAsExpected)
{
    const Snippet& snippet = GetParam();
    EXPECT_EQ(tokenText(QString::fromUtf8(snippet.text), snippet.key), snippet.expected);
}

const Snippet kSnippets[] = {
    {"swift", "func greet(name: String) -> String { return \"Hi \\(name)\" } // done\n#if DEBUG",
     {"keyword func", "function greet", "type String", "type String", "keyword return", "string \"Hi \\(name)\"",
      "comment // done", "keyword #if", "type DEBUG"}},
    {"js", "const x = await fetch('/a', `t${b}`); // go\nlet n = undefined",
     {"keyword const", "keyword await", "function fetch", "string '/a'", "string `t${b}`", "comment // go",
      "keyword let", "type undefined"}},
    {"py", "def f(self):\n    \"\"\"It's \"doc\".\"\"\"\n    return None  # no\nx = a#b",
     {"keyword def", "function f", "type self", "string \"\"\"It's \"doc\".\"\"\"", "keyword return", "type None",
      "comment # no"}},
    {"rb", "def hi\n  puts \"x\" if true\nend # bye",
     {"keyword def", "string \"x\"", "keyword if", "type true", "keyword end", "comment # bye"}},
    {"go", "func main() { fmt.Println(`raw`, len(x)) } // end",
     {"keyword func", "function main", "function Println", "string `raw`", "type len", "comment // end"}},
    {"rs", "fn main() { let v: Vec<u8> = Vec::new(); } /* x */",
     {"keyword fn", "function main", "keyword let", "type Vec", "type u8", "type Vec", "function new",
      "comment /* x */"}},
    {"cpp", "#include <vector>\nint main() { return nullptr == 0; } /* x */",
     {"keyword #include", "type int", "function main", "keyword return", "type nullptr", "number 0",
      "comment /* x */"}},
    {"java", "public class A extends B { @Override void run() { String s = 'x'; } }",
     {"keyword public", "keyword class", "keyword extends", "type Override", "keyword void", "function run",
      "type String", "string 'x'"}},
    {"cs", "var list = new List<int>(); // c#",
     {"keyword var", "keyword new", "type List", "type int", "comment // c#"}},
    {"php", "<?php\n$name = \"x\"; echo $name; # c\nforeach ($a as $b) {}",
     {"property $name", "string \"x\"", "keyword echo", "property $name", "comment # c", "keyword foreach",
      "property $a", "keyword as", "property $b"}},
    {"lua", "local t = {} --[[ block\n]] -- line\nfunction f() return nil end",
     {"keyword local", "comment --[[ block\\n]]", "comment -- line", "keyword function", "function f",
      "keyword return", "type nil", "keyword end"}},
    {"sh", "if [ -n \"$HOME\" ]; then echo $USER; fi # end\nx=a#b",
     {"keyword if", "string \"$HOME\"", "keyword then", "keyword echo", "property $USER", "keyword fi",
      "comment # end"}},
    {"make", ".PHONY: all\nall: $(CC)\n\t$CC -o out # build\ninclude rules.mk",
     {"keyword .PHONY", "property $CC", "comment # build", "keyword include"}},
    {"dockerfile", "FROM debian:12 AS build\nRUN apt-get install -y curl # tools",
     {"keyword FROM", "number 12", "keyword AS", "keyword RUN", "comment # tools"}},
    {"sql", "SELECT id, COUNT(*) FROM users WHERE name = 'x' -- q\n/* c */ select now()",
     {"keyword SELECT", "type COUNT", "keyword FROM", "keyword WHERE", "string 'x'", "comment -- q",
      "comment /* c */", "keyword select", "type now"}},
    {"yaml", "name: app\nitems:\n  - key: yes\n  - ~\n# c\nport: 8080",
     {"property name", "property items", "property -", "property key", "type yes", "property -", "type ~",
      "comment # c", "property port", "number 8080"}},
    {"toml", "[server]\nport = 8080 ; note\nhost = \"x\" # c\nok = true",
     {"property [server]", "number 8080", "comment ; note", "string \"x\"", "comment # c", "type true"}},
    {"json", "{\"a\": [1, true, null], \"b\": \"c\", \"d\" : 2.5e3}",
     {"property \"a\"", "number 1", "type true", "type null", "property \"b\"", "string \"c\"", "string \"d\"",
      "number 2.5e3"}},
    {"css", "@media screen { .a-b { color: rgba(0,0,0,.5) !important; } } /* c */",
     {"keyword @media", "function rgba", "number 0", "number 0", "number 0", "number .5", "keyword !important",
      "comment /* c */"}},
    {"html", "<!-- c --><a href=\"x\" data-id='1'>t \"q\" don't</a>",
     {"comment <!-- c -->", "tag a", "attribute href", "string \"x\"", "attribute data-id", "string '1'",
      "tag a"}},
};

INSTANTIATE_TEST_SUITE_P(AllLanguages, LanguageSnippet, ::testing::ValuesIn(kSnippets),
                         [](const ::testing::TestParamInfo<Snippet>& info) { return std::string(info.param.key); });

TEST(LanguageSnippet, EveryLanguageHasASnippet)
{
    EXPECT_EQ(std::size(kSnippets), SyntaxHighlighter::allLanguages().size());
    for (std::size_t i = 0; i < std::size(kSnippets); ++i)
        EXPECT_EQ(SyntaxHighlighter::languageKey(*SyntaxHighlighter::allLanguages()[i]), kSnippets[i].key);
}

} // namespace
} // namespace orwick::test
