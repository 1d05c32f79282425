#pragma once

#include <QString>

#include <optional>

/// The well-known files of the product, by number.
class ApplicationFilePath
{
public:
    static constexpr int CaseCount = 30;

    explicit constexpr ApplicationFilePath(int number) : m_number(number) {}

    /// The file's path from the table, in the form that its users expect: standardised, or still a format with
    /// a placeholder for the account. None for a number outside 0 to 29.
    [[nodiscard]] std::optional<QString> path() const;

private:
    int m_number;
};
