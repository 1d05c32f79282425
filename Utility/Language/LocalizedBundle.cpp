#include "Utility/Language/LocalizedBundle.h"

using namespace Qt::StringLiterals;

namespace
{
std::optional<StringTable> tableOf(const Bundle &bundle, const QString &language)
{
    const auto folder = bundle.localizationFolder(language);
    return folder ? StringTable::open(*folder) : std::nullopt;
}
} // namespace

LocalizedBundle::LocalizedBundle(const Bundle &bundle) : m_bundle(bundle), m_default(tableOf(bundle, u"en"_s))
{
}

LocalizedBundle &LocalizedBundle::main()
{
    static auto &bundle =
        *new LocalizedBundle(Bundle::main()); // outlives the application that it is installed in
    return bundle;
}

void LocalizedBundle::forceLanguage(const QString &language)
{
    if (auto table = tableOf(m_bundle, language)) {
        const std::lock_guard guard(m_lock);
        m_attached = std::move(table);
    }
}

QString LocalizedBundle::localizedString(const QString &key) const
{
    const std::lock_guard guard(m_lock);
    for (const auto &table : {std::cref(m_attached), std::cref(m_default)}) {
        if (const auto text = table.get() ? table.get()->text(key) : std::nullopt)
            return *text;
    }
    return key;
}

QString LocalizedBundle::translate(const char *, const char *sourceText, const char *, int) const
{
    return localizedString(QString::fromUtf8(sourceText));
}
