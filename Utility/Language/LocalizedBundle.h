#pragma once

#include "Platform/Bundle.h"
#include "Platform/StringTable.h"

#include <QTranslator>

#include <mutex>
#include <optional>

/// The program's string tables with one language chosen: look-ups that name no language obey the choice.
/// Installed as the application's translator it answers for windows too; all sentences share one flat table, so
/// the context that a form names plays no part.
class LocalizedBundle : public QTranslator
{
public:
    explicit LocalizedBundle(const Bundle &bundle);

    /// The one of this process.
    static LocalizedBundle &main();

    /// Answers from the folder of `language` from now on; a language without a folder leaves the last choice.
    void forceLanguage(const QString &language);

    /// The text for `key` from the chosen language's table, else from the English one, else the key itself.
    [[nodiscard]] QString localizedString(const QString &key) const;

    [[nodiscard]] QString translate(const char *context, const char *sourceText, const char *disambiguation,
                                    int n) const override;
    [[nodiscard]] bool isEmpty() const override { return false; }

private:
    const Bundle &m_bundle;
    mutable std::mutex m_lock;
    std::optional<StringTable> m_attached;
    std::optional<StringTable> m_default;
};
