// Damages the files of a corpus for some seconds and feeds them to the reader that it is linked with. It
// learns nothing; what it finds is what a change has plainly broken. usage: fuzz_NAME SECONDS CORPUS

#include <QDir>
#include <QElapsedTimer>
#include <QList>

#include <cstdio>
#include <cstdlib>
#include <random>

#include "support/files.h"

namespace tralio::fuzz {
void readInput(const QByteArray& input);
}

namespace {

QByteArray damaged(const QList<QByteArray>& corpus, std::mt19937& random) {
    const auto below = [&random](qsizetype limit) {
        return static_cast<qsizetype>(random() % static_cast<unsigned>(std::max<qsizetype>(1, limit)));
    };
    QByteArray input = corpus[below(corpus.size())];
    for (auto changes = below(8); changes >= 0; --changes) {
        const qsizetype at = below(input.size());
        const qsizetype fewOrAll = below(4) == 0 ? input.size() : below(9);
        input.replace(at, fewOrAll,
            below(2) == 0 ? QByteArray(below(3), static_cast<char>(random()))
                          : corpus[below(corpus.size())].mid(below(64), below(64)));
    }
    return input;
}

}  // namespace

int main(int argc, char** argv) {
    QList<QByteArray> corpus;
    const QDir folder(QString::fromLocal8Bit(argc > 2 ? argv[2] : ""));
    for (const QString& name : folder.entryList(QDir::Files))
        corpus += tralio::contentOf(folder.filePath(name));
    if (corpus.isEmpty()) {
        std::fputs("usage: fuzz_NAME SECONDS CORPUS\n", stderr);
        return EXIT_FAILURE;
    }
    for (const QByteArray& input : corpus)
        tralio::fuzz::readInput(input);
    std::mt19937 random(1);
    QElapsedTimer time;
    time.start();
    long executions = 0;
    for (; !time.hasExpired(1000LL * std::atoi(argv[1])); ++executions)
        tralio::fuzz::readInput(damaged(corpus, random));
    std::printf("%ld executions\n", executions);
    return EXIT_SUCCESS;
}
