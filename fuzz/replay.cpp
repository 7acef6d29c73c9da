// SPDX-License-Identifier: MIT
// Gives a target each file of the folders that are named: for compilers that have no fuzzer, and for tests.
#include <QtCore/QByteArray>
#include <QtCore/QDir>
#include <QtCore/QFile>

#include <cstddef>
#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv)
{
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        const QDir folder(QString::fromLocal8Bit(argv[i]));
        for (const QString& name : folder.entryList(QDir::Files, QDir::Name)) {
            QFile file(folder.filePath(name));
            if (!file.open(QIODevice::ReadOnly)) {
                std::fprintf(stderr, "%s cannot be read: %s\n", qPrintable(file.fileName()),
                             qPrintable(file.errorString()));
                return 1;
            }
            const QByteArray input = file.readAll();
            // The last file that is named is the one that has failed.
            std::printf("%s\n", qPrintable(name));
            std::fflush(stdout);
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.constData()),
                                   static_cast<std::size_t>(input.size()));
            ++count;
        }
    }
    if (count == 0)
        std::fputs("There are no inputs.\n", stderr);
    return count > 0 ? 0 : 1;
}
