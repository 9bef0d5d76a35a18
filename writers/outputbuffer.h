#pragma once

#include <QByteArray>

#include <vector>

class OutputFile;

/// Collects text for an OutputFile, so that many small pieces make few large ones.
class OutputBuffer
{
public:
    /// Characters that writeNumber() needs at most.
    static constexpr int NumberSize = 24;

    /// \a file must outlive the buffer.
    explicit OutputBuffer(OutputFile &file) : m_file(file) { }

    /// Room for \a size characters after everything appended so far. Call appendUntil() with the
    /// end of what was written there.
    char *room(std::size_t size);
    void appendUntil(const char *end) { m_used = std::size_t(end - m_bytes.data()); }

    void append(const QByteArray &text);

    /// Hands everything to the file.
    void flush();

    /// Writes the shortest decimal text that reads back as \a number to \a place, with a point in
    /// every locale, infinity as "inf". Returns where the text ends.
    static char *writeNumber(char *place, double number);

private:
    OutputFile &m_file;
    std::vector<char> m_bytes;
    std::size_t m_used = 0;
};
