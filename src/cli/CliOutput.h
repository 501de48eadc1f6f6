#pragma once
// Buffered raw-byte output for orwick-cli: paths are printed as their bytes (names need not be
// UTF-8), one write per megabyte so printing never costs more than the work.

#include <QByteArray>
#include <cstdio>

namespace orwick::cli {

class LineWriter {
public:
    LineWriter() { m_buffer.reserve(1 << 20); }
    ~LineWriter() { flush(); }
    void add(const QByteArray& bytes) { m_buffer += bytes; }
    void add(const char* text) { m_buffer += text; }
    void endLine()
    {
        m_buffer += '\n';
        if (m_buffer.size() > (1 << 20) - 4096)
            flush();
    }
    void flush()
    {
        fwrite(m_buffer.constData(), 1, size_t(m_buffer.size()), stdout);
        fflush(stdout);
        m_buffer.clear();
    }

private:
    QByteArray m_buffer;
};

} // namespace orwick::cli
