// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "properties.h"
#include "targets.h"

namespace holdwise::fuzz {
namespace {

class Corpus : public testing::TestWithParam<Target> {};

TEST_P(Corpus, EveryInputKeepsItsProperties) {
  const std::string_view name = GetParam().name;
  const QDir folder(qEnvironmentVariable("HOLDWISE_SOURCE") + QStringLiteral("/fuzz/corpus/") +
                    QLatin1String(name.data(), static_cast<qsizetype>(name.size())));
  const QStringList files = folder.entryList(QDir::Files);
  ASSERT_FALSE(files.isEmpty()) << folder.path().toStdString();
  for (const QString& fileName : files) {
    QFile file(folder.filePath(fileName));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray input = file.readAll();
    EXPECT_NO_THROW(GetParam().run(View(input))) << fileName.toStdString();
  }
}

/// The properties hold for nothing at all, too.
TEST_P(Corpus, AnEmptyInputKeepsItsProperties) {
  EXPECT_NO_THROW(GetParam().run({}));
}

INSTANTIATE_TEST_SUITE_P(Fuzz, Corpus, testing::ValuesIn(kTargets),
                         [](const auto& target) { return std::string(target.param.name); });

}  // namespace
}  // namespace holdwise::fuzz
