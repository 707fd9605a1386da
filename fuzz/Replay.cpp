#include <cstdint>
#include <cstdio>

#include <QByteArray>
#include <QDirIterator>
#include <QFile>

// Runs a fuzz target on each file of the folders that are named: what it once broke on stays tested.

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size);

int main(int argumentCount, char** arguments)
{
    int inputs = 0;
    for (int i = 1; i < argumentCount; ++i) {
        QDirIterator files(QString::fromLocal8Bit(arguments[i]), QDir::Files);
        while (files.hasNext()) {
            QFile file(files.next());
            if (!file.open(QIODevice::ReadOnly)) {
                std::fprintf(stderr, "%s can't be read\n", qPrintable(file.fileName()));
                return 1;
            }
            const QByteArray input = file.readAll();
            LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(input.constData()),
                                   static_cast<size_t>(input.size()));
            ++inputs;
        }
    }
    std::printf("%d inputs\n", inputs);
    return inputs > 0 ? 0 : 1;
}
