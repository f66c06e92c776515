// Runs a target once with each file of a folder.
#include "fuzz/Fuzz.h"

#include <QtCore/QDirIterator>
#include <QtCore/QFile>

int main(int /*argc*/, char **argv)
{
    int count = 0;
    for (QDirIterator files(QFile::decodeName(argv[1]), QDir::Files); files.hasNext(); ++count) {
        QFile file(files.next());
        require(file.open(QIODevice::ReadOnly), "it can be read");
        std::cerr << file.fileName().toStdString() << std::endl;
        fuzz(file.readAll());
    }
    return count > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
