// Runs a fuzz target over files, or over the files in folders, in builds without a fuzzer.

#include <QDirIterator>
#include <QFileInfo>

#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace {

bool replay(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "cannot read %s\n", qPrintable(fileName));
        return false;
    }
    const QByteArray input = file.readAll();
    // The name is printed first, because a broken promise ends the program.
    std::printf("%s\n", qPrintable(fileName));
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(input.constData()),
                           std::size_t(input.size()));
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    int replayed = 0;
    for (int i = 1; i < argc; ++i) {
        const QString path = QFile::decodeName(argv[i]);
        if (!QFileInfo(path).isDir()) {
            if (!replay(path))
                return 1;
            ++replayed;
            continue;
        }
        QDirIterator files(path, QDir::Files);
        while (files.hasNext()) {
            if (!replay(files.next()))
                return 1;
            ++replayed;
        }
    }
    std::printf("%d inputs\n", replayed);
    return replayed > 0 ? 0 : 1;
}
