#include "Utility/LoginItemRegistry.h"

#include "Platform/AtomicFile.h"
#include "Platform/Bundle.h"
#include "Platform/DesktopEntry.h"
#include "Platform/Home.h"
#include "Platform/Limits.h"
#include "Source/Logger/WriteTrace.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr QLatin1StringView TrueText("true");
constexpr QLatin1StringView FalseText("false");
constexpr QLatin1StringView HideKey("X-Corvane-Hide");

QDir autostartFolder()
{
    const QString configured = qEnvironmentVariable("XDG_CONFIG_HOME");
    const QString config = QDir::isAbsolutePath(configured) ? configured : homeDirectory() + u"/.config"_s;
    return {config + u"/autostart"_s};
}

/// The program of an entry; empty where it names none that can be found.
QString programOf(const DesktopEntry::Keys &keys)
{
    const auto words = DesktopEntry::wordsOfExec(keys.value(u"Exec"_s));
    const QString program = words ? words->first() : QString();
    return program.contains(u'/') ? program : QStandardPaths::findExecutable(program);
}

std::optional<LoginItem> readItem(const QString &file)
{
    const auto bytes = AtomicFile::read(file, Limits::DesktopEntryBytes);
    const auto keys = bytes ? DesktopEntry::parse(*bytes) : std::nullopt;
    if (!keys || keys->value(u"Hidden"_s) == TrueText || keys->value(u"Type"_s) != "Application"_L1)
        return std::nullopt;
    const QString program = programOf(*keys);
    if (program.isEmpty())
        return std::nullopt;
    return LoginItem{QUrl::fromLocalFile(QDir::cleanPath(program)), keys->value(HideKey) == TrueText, file};
}

/// Two copies of the program have the same name in different folders, so a part of the path's digest tells the
/// files of their entries apart.
QString fileNameFor(const QString &path)
{
    const QByteArray digest =
        QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha256).toHex().left(8);
    return u"%1-%2.desktop"_s.arg(QFileInfo(path).fileName(), QString::fromLatin1(digest));
}
} // namespace

QList<LoginItem> LoginItemRegistry::allLoginItems()
{
    QList<LoginItem> items;
    const QDir folder = autostartFolder();
    for (const QString &name : folder.entryList({u"*.desktop"_s}, QDir::Files, QDir::Name)) {
        if (auto item = readItem(folder.filePath(name)))
            items.append(*std::move(item));
    }
    return items;
}

bool LoginItemRegistry::addLoginItemWithPath(const QString &path, HideIt hideIt)
{
    const QString program = QDir::cleanPath(path);
    const Bundle &bundle = Bundle::main();
    const DesktopEntry::Keys keys{
        {u"Type"_s, u"Application"_s},
        {u"Name"_s, bundle.info(u"CFBundleName"_s).value_or(QFileInfo(program).fileName())},
        {u"Icon"_s, bundle.resource(u"images/corvane.svg"_s)},
        {u"Exec"_s, DesktopEntry::execOfWords({program})},
        {u"TryExec"_s, program}, // a desktop passes over the entry once the program is gone
        {u"Terminal"_s, FalseText},
        {u"StartupNotify"_s, FalseText},
        {HideKey, hideIt == HideIt::Yes ? TrueText : FalseText},
    };
    const QDir folder = autostartFolder();
    const QString file = folder.filePath(fileNameFor(program));
    const QByteArray entry = DesktopEntry::serialize(keys);
    return AtomicFile::read(file, Limits::DesktopEntryBytes) == entry || writeOrTrace(file, entry);
}

bool LoginItemRegistry::addLoginItemWithURL(const QUrl &url, HideIt hideIt)
{
    return url.isLocalFile() && addLoginItemWithPath(url.toLocalFile(), hideIt);
}

void LoginItemRegistry::removeLoginItemWithPath(const QString &path)
{
    removeLoginItemAtIndex(indexForLoginItemWithPath(path));
}

void LoginItemRegistry::removeLoginItemWithURL(const QUrl &url)
{
    removeLoginItemAtIndex(indexForLoginItemWithURL(url));
}

void LoginItemRegistry::removeLoginItemAtIndex(qsizetype index)
{
    const QList<LoginItem> items = allLoginItems();
    if (index >= 0 && index < items.size())
        removeOrTrace(items[index].file);
}

qsizetype LoginItemRegistry::indexForLoginItemWithPath(const QString &path)
{
    return indexForLoginItemWithURL(QUrl::fromLocalFile(QDir::cleanPath(path)));
}

qsizetype LoginItemRegistry::indexForLoginItemWithURL(const QUrl &url)
{
    const QList<LoginItem> items = allLoginItems();
    const auto item =
        std::find_if(items.cbegin(), items.cend(), [&url](const LoginItem &i) { return i.url == url; });
    return item == items.cend() ? -1 : item - items.cbegin();
}
