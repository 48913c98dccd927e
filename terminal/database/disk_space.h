// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <cstdint>

/// Room on the disk, looked after before the engine touches it: a full disk in the middle of a change is undone by the
/// engine, but a full disk under its mapped lock files ends the process.
namespace holdwise::firebird {

/// Free before a database is opened (the lock files take 3 MB of it) or made.
inline constexpr std::int64_t kBytesToOpen = 8LL << 20;
/// Free before a change begins. Changes that follow a failed one are refused as well by this, so that no figures are
/// calculated from rows that could not be stored.
inline constexpr std::int64_t kBytesToChange = 2LL << 20;

/// Error(Io), saying how much is missing where, when the disk of `folder` has less than `bytes` left for this user. A
/// folder that cannot be asked counts as one with room.
void RequireSpace(const QString& folder, std::int64_t bytes);

/// Gives the engine's lock files in `folder` all the blocks that their sizes promise. The engine maps them as files
/// with holes, and touching a hole on a full disk is a bus error. Error(Io) when the disk is full. File systems that
/// cannot reserve are left alone.
void ReserveLockFiles(const QString& folder);

}  // namespace holdwise::firebird
