// Makes choices from a fuzzer's input.
#pragma once

#include <QByteArray>

#include <array>
#include <cstdint>
#include <cstring>

/// Reads values from the start of an input, and zeros once it is used up, so that any input works.
class ByteSource
{
public:
    ByteSource(const std::uint8_t *data, std::size_t size)
        : m_data(reinterpret_cast<const char *>(data)), m_left(size)
    {
    }

    bool isEmpty() const { return m_left == 0; }

    template <typename T>
    T take()
    {
        T value{};
        const std::size_t size = qMin(m_left, sizeof value);
        if (size > 0)
            std::memcpy(&value, m_data, size);
        skip(size);
        return value;
    }

    /// A number from 0 up to and without \a end, which is 256 at most.
    int below(int end) { return take<std::uint8_t>() % end; }

    template <typename T, std::size_t Size>
    const T &pick(const std::array<T, Size> &choice)
    {
        return choice[std::size_t(below(int(Size)))];
    }

    /// The next \a size bytes, padded with zeros.
    QByteArray bytes(int size)
    {
        const auto there = int(qMin(m_left, std::size_t(size)));
        QByteArray taken(m_data, there);
        taken.append(size - there, '\0');
        skip(std::size_t(there));
        return taken;
    }

    /// The rest of the input.
    QByteArray rest() { return bytes(int(m_left)); }

private:
    void skip(std::size_t size)
    {
        m_data += size;
        m_left -= size;
    }

    const char *m_data;
    std::size_t m_left;
};
