// Runs a fuzz target over files instead of a fuzzer, so that what was found once is tested with every
// compiler.
#include <QDir>
#include <QFile>

#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int main(int argc, char **argv)
{
    int inputs = 0;
    for (int i = 1; i < argc; ++i) {
        const QDir folder(QString::fromLocal8Bit(argv[i]));
        for (const QString &name : folder.entryList(QDir::Files)) {
            QFile file(folder.filePath(name));
            if (!file.open(QIODevice::ReadOnly)) {
                std::fprintf(stderr, "cannot read %s\n", qPrintable(file.fileName()));
                return 2;
            }
            const QByteArray text = file.readAll();
            LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(text.constData()), size_t(text.size()));
            ++inputs;
        }
    }
    std::printf("%d inputs\n", inputs);
    return inputs > 0 ? 0 : 1;
}
