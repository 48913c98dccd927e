// SPDX-License-Identifier: MIT
#pragma once
#include <string_view>

/// What the fuzzer and the replay of the corpus run. Each function takes the bytes of one input and returns when every
/// property held for it; BrokenProperty, another exception or a sanitizer's report is a finding. One thread at a time.
namespace holdwise::fuzz {

void NumberTexts(std::string_view input);      ///< a number's text; also eight bytes of a double and one for decimals
void PacketFile(std::string_view input);       ///< a packet file as it lies on the disk
void PacketContent(std::string_view input);    ///< the CBOR inside a packet file
void CsvTexts(std::string_view input);         ///< CSV in any encoding, and as a typed result set
void Bars(std::string_view input);             ///< a file of daily bars
void ReferenceFiles(std::string_view input);   ///< the producer's other CSV files
void PortfolioCsv(std::string_view input);     ///< portfolios to import
void BackupFile(std::string_view input);       ///< a backup of all portfolios
void StatementShapes(std::string_view input);  ///< one SQL statement
void Literals(std::string_view input);       ///< a byte for the parameter's type, one for the literal's kind, the text
void ExchangeFiles(std::string_view input);  ///< both exchange files as CSV, "====" and a line end between them

struct Target {
  std::string_view name;  ///< the folder of its corpus
  void (*run)(std::string_view input);
};
inline constexpr Target kTargets[] = {
    {"number_texts", NumberTexts},
    {"packet_file", PacketFile},
    {"packet_content", PacketContent},
    {"csv_texts", CsvTexts},
    {"bars", Bars},
    {"reference_files", ReferenceFiles},
    {"portfolio_csv", PortfolioCsv},
    {"backup_file", BackupFile},
    {"statement_shapes", StatementShapes},
    {"literals", Literals},
    {"exchange_files", ExchangeFiles},
};

}  // namespace holdwise::fuzz
