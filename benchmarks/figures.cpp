#include "figures.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cmath>

namespace tralio {
namespace {

using namespace Qt::StringLiterals;

/// The first number after `name` in the content of a file in /proc.
double valueOf(const QByteArray& content, const QByteArray& name) {
    const qsizetype at = content.indexOf(name + ':');
    return at < 0 ? 0 : content.mid(at + name.size() + 1, 40).simplified().split(' ').first().toDouble();
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::vector<qint64> withDescendants(qint64 processId) {
    std::vector<qint64> processes{processId};
    for (size_t i = 0; i < processes.size(); ++i)
        for (const QByteArray& child :
            contentOf(u"/proc/%1/task/%1/children"_s.arg(processes[i])).simplified().split(' '))
            if (!child.isEmpty())
                processes.push_back(child.toLongLong());
    return processes;
}

}  // namespace

double Samples::percentile(int percent) const {
    if (m_values.empty())
        return 0;
    std::vector<double> sorted = m_values;
    std::sort(sorted.begin(), sorted.end());
    const auto rank = std::ceil(percent / 100.0 * static_cast<double>(sorted.size()));
    return sorted[static_cast<size_t>(std::max(rank, 1.0)) - 1];
}

QString Samples::text() const {
    if (m_values.empty())
        return u"–"_s;
    return u"%1 (%2–%3)"_s.arg(percentile(50), 0, 'f', 1)
        .arg(percentile(0), 0, 'f', 1)
        .arg(percentile(100), 0, 'f', 1);
}

Memory memoryOf(qint64 processId, Including including) {
    Memory sum;
    for (const qint64 process :
        including == Including::itself ? std::vector{processId} : withDescendants(processId)) {
        const QByteArray rollup = contentOf(u"/proc/%1/smaps_rollup"_s.arg(process));
        sum.proportional += valueOf(rollup, "\nPss") / 1024;
        sum.unique += (valueOf(rollup, "Private_Clean") + valueOf(rollup, "Private_Dirty")) / 1024;
        sum.resident += valueOf(rollup, "Rss") / 1024;
    }
    return sum;
}

qint64 wakeUpsOf(qint64 processId) {
    double sum = 0;
    for (const qint64 process : withDescendants(processId)) {
        const QDir tasks(u"/proc/%1/task"_s.arg(process));
        for (const QString& task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            sum += valueOf(contentOf(tasks.filePath(task + u"/status"_s)), "\nvoluntary_ctxt_switches");
    }
    return static_cast<qint64>(sum);
}

}  // namespace tralio
