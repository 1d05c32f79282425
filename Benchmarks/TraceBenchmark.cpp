// Trace lines per second, beside a bare loop that opens a file, appends the same bytes and closes it.
#include "Source/Logger/QNLogger.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace
{
constexpr int Lines = 4000; // stays below the size at which a trace file is emptied

template<typename Work>
double linesPerSecond(Work work)
{
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < Lines; ++i)
        work();
    return Lines / std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double median(std::vector<double> values)
{
    std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
    return values[values.size() / 2];
}
} // namespace

int main()
{
    std::vector<double> ours;
    std::vector<double> bare;
    for (int round = 0; round < 9; ++round) {
        const QTemporaryDir home;
        qputenv("HOME", QFile::encodeName(home.path()));
        ours.push_back(
            linesPerSecond([] { QNLogger::logMonitorTrace(QStringLiteral("Start of the measured line")); }));
        const QByteArray path = QFile::encodeName(home.filePath(QStringLiteral("bare.log")));
        const QByteArray line = "Sun Nov 22 2026 9:55:53 PM : Start of the measured line \n";
        bare.push_back(linesPerSecond([&] {
            const int file = open(path.constData(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
            if (file < 0 || write(file, line.constData(), static_cast<size_t>(line.size())) != line.size())
                std::abort();
            close(file);
        }));
    }
    std::printf("trace lines per second        %10.0f\n", median(ours));
    std::printf("  bare open, append, close    %10.0f   ratio %.2f\n", median(bare),
                median(ours) / median(bare));
}
