#pragma once

#include <QtGlobal>

#include <atomic>

/// The account's engine: a deduplicating account has an executable of its own, and other jobs.
enum class EUserType : quint8 { Other = 0, Dedup = 2 };

namespace QNUtility
{
/// The type of the signed-in account; Dedup until an opening of the menu or a sign-in says otherwise. From any
/// thread.
inline std::atomic<EUserType> userType = EUserType::Dedup;
} // namespace QNUtility
