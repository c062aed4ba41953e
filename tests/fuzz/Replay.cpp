#include <cstdio>

#include <QDirIterator>
#include <QFile>

#include "tests/fuzz/Fuzzing.h"

namespace
{

/// The number of inputs in the folder, or -1 if one cannot be read.
int replay(QString const& folder)
{
    int count = 0;
    for (QDirIterator inputs(folder, QDir::Files); inputs.hasNext(); ++count)
    {
        QFile file(inputs.next());
        if (!file.open(QIODevice::ReadOnly))
        {
            std::fprintf(stderr, "cannot read %s\n", qPrintable(file.fileName()));
            return -1;
        }
        QByteArray const input = file.readAll();
        // What a crash leaves on the screen.
        std::printf("%s\n", qPrintable(file.fileName()));
        std::fflush(stdout);
        LLVMFuzzerTestOneInput(
            reinterpret_cast<std::uint8_t const*>(input.constData()), static_cast<std::size_t>(input.size()));
    }
    return count;
}

} // namespace

/// Replays the inputs in the folders that are its arguments.
int main(int argc, char** argv)
{
    LLVMFuzzerInitialize(&argc, &argv);
    for (int index = 1; index < argc; ++index)
    {
        if (replay(QString::fromLocal8Bit(argv[index])) <= 0)
        {
            std::fprintf(stderr, "no inputs in %s\n", argv[index]);
            return 1;
        }
    }
    return argc > 1 ? 0 : 1;
}
