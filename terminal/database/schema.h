// SPDX-License-Identifier: MIT
#pragma once
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "database/engine/firebird_client.h"

namespace holdwise::firebird {

/// The numbered schema files in order; the version of a database is the number of files applied to it.
[[nodiscard]] std::span<const std::string_view> SchemaFiles();
/// The statements of a schema file. They end with ";" or with what "set term" names.
[[nodiscard]] std::vector<std::string> SplitScript(std::string_view script);
/// Brings the database to version `target` (at most the number of files). Each file is one transaction together with
/// its version row, so an upgrade that was cut off goes on where it stopped. A database that is newer than the known
/// files is Error(Refused); one that is at `target` or beyond stays as it is.
void UpgradeSchema(Status& status, Firebird::IAttachment& attachment, std::size_t target = SchemaFiles().size());

}  // namespace holdwise::firebird
