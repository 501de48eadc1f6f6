// orwick-cli match QUERY: reads candidate lines on standard input and prints the ones the fuzzy
// matcher scores, best first (by score, then by the line's bytes). The same score the pane
// filter and the palette use, on a large input: the matcher's benchmark hook.

#include "base/FuzzyMatch.h"
#include "cli/CliCommand.h"

#include <QStringDecoder>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <thread>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace orwick::cli {
namespace {

struct Hit {
    int score;
    uint64_t prefix[2]; // the line's first 16 bytes, big-endian: most ties end here
    std::string_view line;
};

uint64_t prefixAt(std::string_view line, size_t from)
{
    uint64_t prefix = 0;
    for (size_t k = from; k < from + 8; ++k)
        prefix = (prefix << 8) | (k < line.size() ? static_cast<unsigned char>(line[k]) : 0);
    return prefix;
}

// Best first: higher score, then the line's bytes.
bool better(const Hit& a, const Hit& b)
{
    if (a.score != b.score)
        return a.score > b.score;
    if (a.prefix[0] != b.prefix[0])
        return a.prefix[0] < b.prefix[0];
    if (a.prefix[1] != b.prefix[1])
        return a.prefix[1] < b.prefix[1];
    return a.line < b.line;
}

// Standard input: mapped when it is a regular file, else read whole.
class Input {
public:
    Input()
    {
        struct stat info {};
        if (fstat(STDIN_FILENO, &info) == 0 && S_ISREG(info.st_mode) && info.st_size > 0) {
            void* mapped = mmap(nullptr, size_t(info.st_size), PROT_READ, MAP_PRIVATE | MAP_POPULATE, STDIN_FILENO, 0);
            if (mapped != MAP_FAILED) {
                m_mapped = {static_cast<const char*>(mapped), size_t(info.st_size)};
                return;
            }
        }
        m_read = readAll();
    }
    ~Input()
    {
        if (m_mapped.data())
            munmap(const_cast<char*>(m_mapped.data()), m_mapped.size());
    }
    std::string_view text() const
    {
        return m_mapped.data() ? m_mapped : std::string_view(m_read.constData(), size_t(m_read.size()));
    }

private:
    static QByteArray readAll();
    std::string_view m_mapped;
    QByteArray m_read;
};

QByteArray Input::readAll()
{
    QByteArray data;
    qsizetype used = 0;
    data.resize(1 << 22);
    for (;;) {
        if (used == data.size())
            data.resize(data.size() * 2);
        const ssize_t n = ::read(STDIN_FILENO, data.data() + used, size_t(data.size() - used));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        used += n;
    }
    data.resize(used);
    return data;
}

// True when the line may match: an exact, cheap check on bytes for an ASCII query. A line that
// lacks some query character in order can only match through a non-ASCII character that
// lower-cases to ASCII (such as the Kelvin sign), so lines with non-ASCII bytes go on.
bool mayMatch(std::string_view line, const std::u16string& query)
{
    unsigned char high = 0;
    size_t at = 0;
    for (char16_t wanted : query) {
        const unsigned char lower = static_cast<unsigned char>(wanted);
        const unsigned char upper = (lower >= 'a' && lower <= 'z') ? lower - 32 : lower;
        for (;;) {
            if (at == line.size())
                return high & 0x80;
            const unsigned char c = static_cast<unsigned char>(line[at++]);
            high |= c;
            if (c == lower || c == upper)
                break;
        }
    }
    return true;
}

// Scores the lines of `chunk` (whole lines) into `hits`; returns how many lines it had.
size_t scoreLines(std::string_view chunk, const FuzzyQuery& query, std::vector<Hit>& hits)
{
    FuzzyCandidateBuffer buffer;
    std::vector<QChar> text;
    QStringDecoder decoder(QStringDecoder::Utf8);
    size_t count = 0;
    for (const char *p = chunk.data(), *end = p + chunk.size(); p < end; ++count) {
        const char* newline = static_cast<const char*>(memchr(p, '\n', size_t(end - p)));
        const char* stop = newline ? newline : end;
        const std::string_view line(p, size_t(stop - p));
        p = stop + 1;
        if (query.isAscii() && !mayMatch(line, query.chars()))
            continue;
        // ASCII is prepared from its bytes; anything else goes through the decoder, one line at
        // a time so that a broken sequence never spills over.
        size_t k = 0;
        while (k < line.size() && static_cast<unsigned char>(line[k]) < 0x80)
            ++k;
        FuzzyCandidate candidate;
        if (k == line.size()) {
            candidate = buffer.prepareAscii(QByteArrayView(line.data(), qsizetype(line.size())));
        } else {
            if (text.size() < line.size() + 1)
                text.resize(line.size() + 1);
            decoder.resetState();
            QChar* stop = decoder.appendToBuffer(text.data(), QByteArrayView(line.data(), qsizetype(line.size())));
            candidate = buffer.prepare(QStringView(text.data(), stop - text.data()));
        }
        if (const auto score = FuzzyMatch::score(query, candidate))
            hits.push_back({*score, {prefixAt(line, 0), prefixAt(line, 8)}, line});
    }
    std::sort(hits.begin(), hits.end(), better);
    return count;
}

int match(const Arguments& arguments)
{
    bool printScores = false;
    QStringList words;
    for (const QByteArray& argument : arguments) {
        if (argument == "--scores")
            printScores = true;
        else
            words.append(argumentText(argument));
    }
    if (words.isEmpty())
        return usageError(QStringLiteral("usage: orwick-cli match QUERY [--scores] < lines"));
    const FuzzyQuery query(words.join(u' '));

    const Input input;
    const std::string_view all = input.text();

    // Two or more workers, each on its own slice of the bytes, cut after a line's end, so that
    // finding the lines is shared too; results joined in order.
    const size_t workers = std::clamp<size_t>(std::thread::hardware_concurrency(), 1, 8);
    std::vector<std::vector<Hit>> parts(workers);
    std::vector<size_t> lineCounts(workers);
    std::vector<std::thread> threads;
    size_t begin = 0;
    for (size_t w = 0; w < workers; ++w) {
        size_t end = w + 1 == workers ? all.size() : std::max(begin, all.size() / workers * (w + 1));
        if (end < all.size()) {
            const size_t newline = all.find('\n', end);
            end = newline == std::string_view::npos ? all.size() : newline + 1;
        }
        const std::string_view chunk = all.substr(begin, end - begin);
        threads.emplace_back([&, w, chunk] { lineCounts[w] = scoreLines(chunk, query, parts[w]); });
        begin = end;
    }
    for (std::thread& t : threads)
        t.join();
    size_t lineCount = 0;
    for (size_t count : lineCounts)
        lineCount += count;
    // Each part is sorted by its worker; merge them.
    std::vector<Hit> hits;
    for (const auto& part : parts) {
        const auto middle = hits.insert(hits.end(), part.begin(), part.end());
        std::inplace_merge(hits.begin(), middle, hits.end(), better);
    }

    QByteArray buffer;
    buffer.reserve(1 << 20);
    for (const Hit& hit : hits) {
        if (printScores) {
            buffer += QByteArray::number(hit.score);
            buffer += '\t';
        }
        buffer.append(hit.line.data(), qsizetype(hit.line.size()));
        buffer += '\n';
        if (buffer.size() > (1 << 20) - 4096) {
            fwrite(buffer.constData(), 1, size_t(buffer.size()), stdout);
            buffer.clear();
        }
    }
    fwrite(buffer.constData(), 1, size_t(buffer.size()), stdout);
    fflush(stdout);
    err() << hits.size() << " of " << counted(qint64(lineCount), "line") << (hits.size() == 1 ? " matches" : " match") << Qt::endl;
    return hits.empty() ? 1 : 0;
}

const CliRegistration registration({QStringLiteral("match"), QStringLiteral("match QUERY [--scores]"),
                                     QStringLiteral("lines on standard input that fuzzy-match QUERY, best first"), match});

} // namespace
} // namespace orwick::cli
