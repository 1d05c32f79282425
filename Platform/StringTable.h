#pragma once

#include <QString>
#include <QTranslator>

#include <memory>
#include <optional>

/// One string table of a language folder: English sentence to translated sentence. The file is Qt's compiled
/// message file `<table>.qm`, whose sentences all stand in the one context "Localizable".
class StringTable
{
public:
    static constexpr char Context[] = "Localizable";

    /// None when the folder holds no such table or it is damaged.
    static std::optional<StringTable> open(const QString &folder,
                                           const QString &table = QStringLiteral("Localizable"));

    /// The table's text for `key`, none when it has no entry.
    [[nodiscard]] std::optional<QString> text(const QString &key) const;

private:
    StringTable() = default;
    std::shared_ptr<QTranslator> m_messages;
};
