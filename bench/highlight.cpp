// The highlighter as the preview and the note export call it: tokens of a large source text,
// HTML spans, and the preview's formats for the most text it colours (256 K characters).
// Throughput is printed per byte of UTF-16 text. Target: the preview's 256 K characters in
// formats under 20 ms.

#include "highlight/Language.h"

#include <QFont>
#include <QGuiApplication>
#include <benchmark/benchmark.h>
#include <random>

using namespace orwick;

namespace {

// C++ like a large real file: functions with comments, strings, numbers, keywords and types.
QString sourceText(qsizetype size)
{
    const char* words[] = {"value", "count", "index", "buffer", "result", "node", "offset", "length", "name", "state"};
    std::mt19937 random(7);
    QString text;
    for (int n = 0; text.size() < size; ++n) {
        const QString a = QString::fromLatin1(words[random() % 10]);
        const QString b = QString::fromLatin1(words[random() % 10]);
        text += QStringLiteral("// %1 of the %2 (case %3)\n"
                               "static std::vector<int> %1_%3(const std::string& %2, size_t limit = %4)\n{\n"
                               "    for (size_t i = 0; i < limit; ++i) {\n"
                               "        if (%2.size() > %5 && i %% 3 == 0)\n            continue; /* skip */\n"
                               "        std::printf(\"%s: %zu \\n\", %2.c_str(), i * 0.5 + 0x%6);\n"
                               "    }\n    return {};\n}\n\n")
                    .arg(a, b)
                    .arg(n)
                    .arg(random() % 4096)
                    .arg(random() % 1000)
                    .arg(random() % 65536, 4, 16, QLatin1Char('0'));
    }
    text.truncate(size);
    return text;
}

const SyntaxHighlighter::Language& cpp() { return *SyntaxHighlighter::languageNamed(u"cpp"); }

void Tokens(benchmark::State& state)
{
    const QString text = sourceText(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(SyntaxHighlighter::tokens(text, cpp()));
    state.SetBytesProcessed(state.iterations() * text.size() * 2);
}
BENCHMARK(Tokens)->Arg(1 << 20)->Arg(10 << 20)->Unit(benchmark::kMillisecond);

void HtmlSpans(benchmark::State& state)
{
    const QString text = sourceText(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(SyntaxHighlighter::html(text, cpp()));
    state.SetBytesProcessed(state.iterations() * text.size() * 2);
}
BENCHMARK(HtmlSpans)->Arg(1 << 20)->Unit(benchmark::kMillisecond);

void PreviewFormats(benchmark::State& state)
{
    const QString text = sourceText(256 * 1024);
    const QFont font(QStringLiteral("Monospace"), 11);
    for (auto _ : state)
        benchmark::DoNotOptimize(SyntaxHighlighter::attributed(text, cpp(), font, {}, false));
    state.SetBytesProcessed(state.iterations() * text.size() * 2);
}
BENCHMARK(PreviewFormats)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv); // QFont needs the GUI application
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
