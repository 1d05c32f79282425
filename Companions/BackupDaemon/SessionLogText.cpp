#include "Companions/BackupDaemon/SessionLogText.h"

#include "Companions/BackupDaemon/LogRecords.h"
#include "Companions/Common/PropertyList.h"

#include <QTranslator>

#include <array>

using namespace Qt::StringLiterals;

namespace
{
/// The words of a log in one language.
struct Words {
    const char *code;
    const char16_t *user, *start, *end, *considered, *done, *left, *success, *failure, *cancelled, *running;
};

constexpr std::array<Words, 3> AllWords = {{
    {"en", u"User name", u"Start time", u"End time", u"Files considered", u"Files processed",
     u"Files not processed", u"The operation was completed successfully.",
     u"The operation failed. Reason: the connection to the server was lost.",
     u"The operation was cancelled by the user.", u"The operation is in progress."},
    {"es", u"Nombre de usuario", u"Hora de inicio", u"Hora de finalización", u"Archivos considerados",
     u"Archivos procesados", u"Archivos no procesados", u"La operación se completó correctamente.",
     u"La operación falló. Motivo: se perdió la conexión con el servidor.", u"El usuario canceló la operación.",
     u"La operación está en curso."},
    {"ja", u"ユーザー名", u"開始時刻", u"終了時刻", u"対象ファイル数", u"処理済みファイル数",
     u"未処理ファイル数", u"操作は正常に完了しました。",
     u"操作に失敗しました。理由: サーバーへの接続が失われました。",
     u"操作はユーザーによりキャンセルされました。", u"操作を実行しています。"},
}};

const Words &wordsOf(LogLanguage language)
{
    return AllWords[static_cast<std::size_t>(language)];
}

QString line(const char16_t *label, const QString &value)
{
    return QString::fromUtf16(label) + u": "_s + value + u'\n';
}

QString resultLine(const SessionStory &story, const Words &words)
{
    const char16_t *text = words.running;
    if (story.status == LogStatus::Success)
        text = words.success;
    else if (story.status == LogStatus::Failure)
        text = words.failure;
    else if (story.status == LogStatus::Cancelled)
        text = words.cancelled;
    return QString::fromUtf16(text) + u'\n';
}

QString momentText(const QDateTime &moment)
{
    return moment.toString(u"MM-dd-yyyy HH:mm:ss");
}

QString fileLine(const LoggedFile &file, const QString &folder)
{
    if (folder == "Delete"_L1)
        return u"Deleted file "_s + file.path + u'\n';
    if (folder == "Rename"_L1)
        return u"Renamed file "_s + file.path + u" to "_s + file.path + u".old\n"_s;
    if (folder == "PutBack"_L1)
        return u"Moved file "_s + file.path + u'\n';
    return file.path + u"  File Size: "_s + file.size + u'\n';
}

bool isScheduled(int optype)
{
    static constexpr std::array Scheduled = {2, 11, 14, 20, 24};
    return std::find(Scheduled.begin(), Scheduled.end(), optype) != Scheduled.end();
}
} // namespace

std::optional<LogLanguage> logLanguageOf(const QString &word)
{
    for (std::size_t place = 0; place < AllWords.size(); ++place) {
        if (word == QLatin1StringView(AllWords[place].code))
            return static_cast<LogLanguage>(place);
    }
    return std::nullopt;
}

QString operationFolder(int optype)
{
    switch (optype) {
    case 3:
    case 11:
    case 15:
    case 21:
        return u"Restore"_s;
    case 5:
    case 16:
    case 18:
    case 22:
        return u"Delete"_s;
    case 6:
        return u"Rename"_s;
    case 7:
        return u"Continuous Data Protection"_s;
    case 8:
    case 10:
        return u"Archive Cleanup"_s;
    case 9:
        return u"PutBack"_s;
    case 12:
        return u"Sync"_s;
    default:
        return u"Backup"_s;
    }
}

LinkSentences linkSentences(LogLanguage language, const PathTable &table)
{
    QTranslator messages;
    const bool isRead = messages.load(
        table.folder() + u"/%1.lproj/Localizable.qm"_s.arg(QLatin1StringView(wordsOf(language).code)));
    const auto said = [&](const char *english) {
        const QString text = isRead ? messages.translate("Localizable", english) : QString();
        return text.isEmpty() ? QString::fromLatin1(english) : text;
    };
    const QVariantMap deployment = readPropertyList(table.folder() + u"/Deployment.plist"_s).toMap();
    const QString faq =
        deployment.value(u"PublicWebHost"_s).toString() + u"/online-backup-mac-faq#pre-authorize"_s;
    const QString instruction = PathTable::filled(
        said("To enable access, add %@ and %@ under Full Disk Access. To know more visit %@.\n"),
        {table.value(u"ApplicationExecName"_s), table.value(u"DaemonExecName"_s), faq});
    const QString steps = said("Click here to view excluded files / folders") + u'\n' +
                          said("Click here to edit the cut-off time.") + u'\n';
    const QString missing =
        said("Reason: Missing permission for one or more files / folders in the backup set content.") + u'\n' +
        said("Some files / folders could not be backed up due to missing permissions.") + u'\n';
    return {steps + instruction, steps + missing + instruction};
}

QString sessionLogText(const SessionStory &story, LogLanguage language)
{
    const Words &words = wordsOf(language);
    const QString folder = operationFolder(story.optype);
    const QString rule = QString(60, u'-') + u'\n';
    QString text = line(words.user, story.account) + line(words.start, momentText(story.started));
    if (isScheduled(story.optype))
        text += u"Mode : Scheduled "_s + folder + u'\n';
    text += rule;
    for (const LoggedFile &file : story.files)
        text += fileLine(file, folder);
    text += rule + resultLine(story, words);
    if (story.ended)
        text += line(words.end, momentText(*story.ended));
    return text;
}

QString summaryText(const SessionStory &story, LogLanguage language)
{
    const Words &words = wordsOf(language);
    const qint64 left = story.status == LogStatus::Success ? 0 : 1;
    return line(words.user, story.account) + line(words.start, momentText(story.started)) +
           line(words.considered, QString::number(story.count + left)) +
           line(words.done, QString::number(story.count)) + line(words.left, QString::number(left)) +
           resultLine(story, words);
}
