// SPDX-License-Identifier: MIT
#pragma once
#include <CLI/CLI.hpp>
#include <string>

namespace holdwise {

/// What is wrong with the command line, in Chinese, one line without its end. What the parser says in words not known
/// here stays as it is.
/// @param program the parser that has just failed
[[nodiscard]] std::string ArgumentErrorText(const CLI::App& program, const CLI::Error& error);

}  // namespace holdwise
