#include "VXFuzzTarget.h"

#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QStringList>

#include <cstdio>

namespace {

bool replay(const QString& theFile)
{
    QFile file(theFile);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray input = file.readAll();
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(input.constData()),
                           static_cast<size_t>(input.size()));
    return true;
}

QStringList casesIn(const QString& theFolder)
{
    QStringList files;
    QDirIterator entry(theFolder, QDir::Files);
    while (entry.hasNext())
        files.append(entry.next());
    files.sort();
    return files;
}

} // namespace

/// Stands where libFuzzer's main function is otherwise, for compilers without it: goes through
/// every file of the folders that are named. Options, which begin with "-", are libFuzzer's.
int main(int theArgumentCount, char* theArguments[])
{
    int count = 0;
    for (int index = 1; index < theArgumentCount; ++index) {
        const QString argument = QString::fromLocal8Bit(theArguments[index]);
        if (argument.startsWith(u'-'))
            continue;
        for (const QString& file : casesIn(argument)) {
            if (!replay(file)) {
                std::fprintf(stderr, "cannot read %s\n", qPrintable(file));
                return 1;
            }
            ++count;
        }
    }
    std::printf("%d cases\n", count);
    return count > 0 ? 0 : 1; // a run of nothing is no success
}
