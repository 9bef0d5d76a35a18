#include "writers/outputbuffer.h"

#include "writers/outputfile.h"

#include <algorithm>
#include <charconv>
#include <cstring>

char *OutputBuffer::room(std::size_t size)
{
    constexpr std::size_t usualSize = 1 << 20;
    if (m_bytes.size() - m_used < size) {
        flush();
        m_bytes.resize(std::max({m_bytes.size(), usualSize, size}));
    }
    return m_bytes.data() + m_used;
}

void OutputBuffer::append(const QByteArray &text)
{
    const auto size = std::size_t(text.size());
    char *place = room(size);
    std::memcpy(place, text.constData(), size);
    appendUntil(place + size);
}

void OutputBuffer::flush()
{
    m_file.write(m_bytes.data(), qint64(m_used));
    m_used = 0;
}

char *OutputBuffer::writeNumber(char *place, double number)
{
    return std::to_chars(place, place + NumberSize, number).ptr;
}
