#include "Platform/Bundle.h"

#include "Platform/PropertyList.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace
{
QString ownExecutable()
{
    // Not QCoreApplication: the language is chosen, and with it this is asked, before that object exists.
    return QFileInfo(u"/proc/self/exe"_s).canonicalFilePath();
}

std::optional<QString> textOf(const QVariantMap &dictionary, const QString &key)
{
    const QVariant value = dictionary.value(key);
    return value.metaType() == QMetaType::fromType<QString>() ? std::optional(value.toString()) : std::nullopt;
}
} // namespace

Bundle::Bundle(QString executablePath) : m_executable(std::move(executablePath))
{
    m_resources = QDir::cleanPath(QFileInfo(m_executable).path() + u"/../share/corvane-monitor"_s);
    m_info = PropertyList::readDictionary(resource(u"Info.plist"_s)).value_or(QVariantMap());
}

const Bundle &Bundle::main()
{
    static const Bundle bundle(ownExecutable());
    return bundle;
}

QString Bundle::resource(const QString &relativePath) const
{
    return m_resources + u'/' + relativePath;
}

std::optional<QString> Bundle::localizationFolder(const QString &language) const
{
    // A language comes from a file that others write: it names a folder here and nothing else.
    if (language.isEmpty() || language.contains(u'/') || language.startsWith(u'.'))
        return std::nullopt;
    const QString folder = resource(language + u".lproj"_s);
    return QFileInfo(folder).isDir() ? std::optional(folder) : std::nullopt;
}

std::optional<QString> Bundle::info(const QString &key) const
{
    return textOf(m_info, key);
}

std::optional<QString> Bundle::identifier() const
{
    return info(u"CFBundleIdentifier"_s);
}

std::optional<QString> Bundle::version() const
{
    return info(u"CFBundleVersion"_s);
}

std::optional<QString> Bundle::shortVersion() const
{
    return info(u"CFBundleShortVersionString"_s);
}
