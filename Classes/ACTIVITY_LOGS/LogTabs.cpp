#include "Classes/ACTIVITY_LOGS/LogTabs.h"

#include "Utility/Language/LogTextSentences.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

const std::vector<LogTab> &LogTabs::ofSync()
{
    static const std::vector<LogTab> tabs{LogTab::Upload, LogTab::Download, LogTab::Rename, LogTab::Delete};
    return tabs;
}

std::vector<LogTab> LogTabs::of(const QString &logfile, bool isSync,
                                const std::function<bool(const QString &)> &exists)
{
    const auto hasFile = [&](LogTab tab) { return exists(file(logfile, tab)); };
    if (!isSync)
        return hasFile(LogTab::Summary) ? std::vector{LogTab::Summary, LogTab::Details}
                                        : std::vector{LogTab::Details};
    std::vector<LogTab> tabs;
    std::copy_if(ofSync().begin(), ofSync().end(), std::back_inserter(tabs), hasFile);
    return tabs;
}

bool LogTabs::isSyncLog(const QString &logfile)
{
    return logfile.endsWith("_sync"_L1);
}

QString LogTabs::file(const QString &logfile, LogTab tab)
{
    switch (tab) {
    case LogTab::Details:
        break;
    case LogTab::Summary:
        return logfile + ".summary"_L1;
    case LogTab::Upload:
        return logfile + ".sync-up"_L1;
    case LogTab::Download:
        return logfile + ".sync-down"_L1;
    case LogTab::Rename:
        return logfile + ".rename"_L1;
    case LogTab::Delete:
        return logfile + ".delete"_L1;
    }
    return logfile;
}

const QString &LogTabs::title(LogTab tab)
{
    switch (tab) {
    case LogTab::Details:
        break;
    case LogTab::Summary:
        return DynamicViewLogs::summaryTab;
    case LogTab::Upload:
        return DynamicViewLogs::uploadTab;
    case LogTab::Download:
        return DynamicViewLogs::downloadTab;
    case LogTab::Rename:
        return DynamicViewLogs::renameTab;
    case LogTab::Delete:
        return DynamicViewLogs::deleteTab;
    }
    return DynamicViewLogs::detailsTab;
}
