#include "Utility/Paths/ApplicationFilePath.h"

#include "Extensions/TextFormat.h"
#include "Platform/Home.h"
#include "Utility/Paths/PathTable.h"

#include <array>

using namespace Qt::StringLiterals;

namespace
{
enum class Form {
    AsStored,
    Standardized,
    FileUrl,       ///< as a file URL gives it back: absolute and standardised
    KeepsLastSlot, ///< formatted once with "%@" itself, so one placeholder is left for the caller
};

struct KnownFile {
    const char *key = nullptr;
    Form form = Form::AsStored;
};

constexpr std::array<KnownFile, ApplicationFilePath::CaseCount> KnownFiles{{
    {"ApplicationExecName"},
    {"ApplicationExecPath"},
    {"LastUserLoginDetailsFilePath", Form::Standardized},
    {"SessionsLogsPlistPath", Form::FileUrl},
    {"SessionLogsFolderPath", Form::FileUrl},
    {"SchedulerSettingsFile"},
    {"SessionLogsNewFolderPath", Form::FileUrl},
    {"UserDetailsPath"},
    {"ScheduledBackupLog"},
    {"DeduplicationTraceFilePath"},
    {"MonitorTraceFilePath"},
    {"InteractiveSessionLog"},
    {"DaemonTraceFilePath"},
    {"RemoteTraceFile", Form::FileUrl},
    {"ScheduleTraceFilePath"},
    {"InteractiveTraceFilePath"},
    {"OperationTraceFilePath"},
    {"AppInterfaceTraceFilePath"},
    {"SyncDaemonTraceLogFilePath"},
    {"SyncWatcherTraceLogFilePath"},
    {"SyncFinderPluginLogFilePath"},
    {"BackupFailCountFilePath", Form::KeepsLastSlot},
    {"SchedulerState"},
    {"ApplicationStatusPath"},
    {"ProxySettingsPath", Form::Standardized},
    {"ApplicationRootFolderPath"},
    {"CDPFilePath", Form::KeepsLastSlot},
    {"ApplicationPreferenceFile"},
    {"InProcessState", Form::Standardized},
    {"SessionLogsNewFolderPath"},
}};
} // namespace

std::optional<QString> ApplicationFilePath::path() const
{
    if (m_number < 0 || m_number >= CaseCount)
        return std::nullopt;
    const KnownFile &file = KnownFiles[static_cast<std::size_t>(m_number)];
    const QString value = pathValue(QLatin1StringView(file.key));
    switch (file.form) {
    case Form::AsStored:
        return value;
    case Form::Standardized:
    case Form::FileUrl:
        return standardizedPath(value);
    case Form::KeepsLastSlot:
        return formatted(value, {u"%@"_s});
    }
    return value;
}
