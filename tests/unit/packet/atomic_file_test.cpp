// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cerrno>

#include "file_size_limit.h"
#include "holdwise/packet/system_error.h"
#include "packet_test_support.h"

namespace holdwise {
namespace {

using test::FileSizeLimit;

QByteArray ContentOf(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList NamesIn(const QString& folder) {
  return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

mode_t ModeOf(const QString& path) {
  struct stat status = {};
  EXPECT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
  return status.st_mode & 0777;
}

TEST(AtomicFile, WritesAndReplaces) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("数据.dat"));
  for (const Durability durability : {Durability::Lasting, Durability::Replaceable}) {
    WriteFileAtomically(path, "first, which is longer", durability);
    WriteFileAtomically(path, "second", durability);
    EXPECT_EQ(ContentOf(path), "second");
    EXPECT_EQ(NamesIn(folder.path()), QStringList(QStringLiteral("数据.dat")));
  }
}

TEST(AtomicFile, DoesNotTakeThePlaceOfAPipe) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("pipe"));
  ASSERT_EQ(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
  for (const Durability durability : {Durability::Replaceable, Durability::Lasting}) {
    EXPECT_THROW(WriteFileAtomically(path, "x", durability), Error);
    struct stat status {};
    ASSERT_EQ(stat(QFile::encodeName(path).constData(), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));
  }
  EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot),
            QStringList{"pipe"});
}

TEST(AtomicFile, ModeIsPrivateUnlessReplaceable) {
  const QTemporaryDir folder;
  const mode_t mask = ::umask(022);
  WriteFileAtomically(folder.filePath(QStringLiteral("lasting")), "x", Durability::Lasting);
  WriteFileAtomically(folder.filePath(QStringLiteral("replaceable")), "x", Durability::Replaceable);
  ::umask(mask);
  EXPECT_EQ(ModeOf(folder.filePath(QStringLiteral("lasting"))), 0600U);
  EXPECT_EQ(ModeOf(folder.filePath(QStringLiteral("replaceable"))), 0644U);
}

TEST(AtomicFile, AFullDiskLeavesTheEarlierFileAndNothingElse) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("a.dat"));
  for (const Durability durability : {Durability::Lasting, Durability::Replaceable}) {
    WriteFileAtomically(path, "earlier", durability);
    const FileSizeLimit limit(1000);
    std::string text;
    EXPECT_EQ(CategoryOf([&] { WriteFileAtomically(path, QByteArray(5000, 'x'), durability); }, &text),
              ErrorCategory::Io);
    EXPECT_NE(text.find(path.toStdString()), std::string::npos);
    EXPECT_EQ(ContentOf(path), "earlier");
    EXPECT_EQ(NamesIn(folder.path()), QStringList(QStringLiteral("a.dat")));
  }
}

TEST(AtomicFile, AReadOnlyFolderLeavesTheEarlierFile) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("a.dat"));
  const QByteArray folderName = QFile::encodeName(folder.path());
  WriteFileAtomically(path, "earlier", Durability::Replaceable);
  ASSERT_EQ(::chmod(folderName.constData(), 0555), 0);
  {
    const WithoutRoot withoutRoot;
    EXPECT_EQ(CategoryOf([&] { WritePacketFile(path, SampleSet(), Durability::Lasting); }), ErrorCategory::Io);
    EXPECT_EQ(CategoryOf([&] { WritePacketFile(path, SampleSet(), Durability::Replaceable); }), ErrorCategory::Io);
  }
  ASSERT_EQ(::chmod(folderName.constData(), 0755), 0);
  EXPECT_EQ(ContentOf(path), "earlier");
  EXPECT_EQ(NamesIn(folder.path()), QStringList(QStringLiteral("a.dat")));
}

TEST(AtomicFile, MissingFolderAndFolderInThePlace) {
  const QTemporaryDir folder;
  for (const Durability durability : {Durability::Lasting, Durability::Replaceable}) {
    const QString missing = folder.filePath(QStringLiteral("none/a.dat"));
    std::string text;
    EXPECT_EQ(CategoryOf([&] { WriteFileAtomically(missing, "x", durability); }, &text), ErrorCategory::Io);
    EXPECT_NE(text.find(missing.toStdString()), std::string::npos);
    ASSERT_TRUE(QDir(folder.path()).mkpath(QStringLiteral("place/inner")));
    EXPECT_EQ(CategoryOf([&] { WriteFileAtomically(folder.filePath(QStringLiteral("place")), "x", durability); }),
              ErrorCategory::Io);
    EXPECT_EQ(NamesIn(folder.path()), QStringList(QStringLiteral("place")));
  }
}

TEST(AtomicFile, RenamingTakesTheOtherPlaceInOneStep) {
  const QTemporaryDir folder;
  const QString from = folder.filePath(QStringLiteral("新.dat"));
  const QString to = folder.filePath(QStringLiteral("数据.dat"));
  for (const Durability durability : {Durability::Lasting, Durability::Replaceable}) {
    for (const char* earlier : {"", "earlier, which is longer"}) {
      QFile::remove(to);
      if (*earlier != 0) WriteFileAtomically(to, earlier, Durability::Replaceable);
      WriteFileAtomically(from, "new", Durability::Lasting);
      RenameFileAtomically(from, to, durability);
      EXPECT_EQ(ContentOf(to), "new");
      EXPECT_EQ(ModeOf(to), 0600U) << "the file's own mode";
      EXPECT_EQ(NamesIn(folder.path()), QStringList(QStringLiteral("数据.dat")));
    }
  }
}

TEST(AtomicFile, AFailedRenamingLeavesBothNamesAsTheyWere) {
  const QTemporaryDir folder;
  const QString from = folder.filePath(QStringLiteral("a.new"));
  const QString to = folder.filePath(QStringLiteral("a.dat"));
  WriteFileAtomically(to, "earlier", Durability::Replaceable);
  const auto expectFailure = [](const QString& source, const QString& target, Durability durability) {
    std::string text;
    EXPECT_EQ(CategoryOf([&] { RenameFileAtomically(source, target, durability); }, &text), ErrorCategory::Io);
    EXPECT_NE(text.find(target.toStdString()), std::string::npos) << text;
  };
  for (const Durability durability : {Durability::Lasting, Durability::Replaceable}) {
    expectFailure(from, to, durability);  // nothing to rename
    EXPECT_EQ(ContentOf(to), "earlier");
  }
  WriteFileAtomically(from, "new", Durability::Replaceable);
  ASSERT_TRUE(QDir(folder.path()).mkpath(QStringLiteral("place/inner")));
  for (const Durability durability : {Durability::Lasting, Durability::Replaceable}) {
    expectFailure(from, folder.filePath(QStringLiteral("place")), durability);
    expectFailure(from, folder.filePath(QStringLiteral("none/a.dat")), durability);
    EXPECT_EQ(ContentOf(from), "new");
  }
  const QByteArray folderName = QFile::encodeName(folder.path());
  ASSERT_EQ(::chmod(folderName.constData(), 0555), 0);
  {
    const WithoutRoot withoutRoot;
    expectFailure(from, to, Durability::Lasting);
    expectFailure(from, to, Durability::Replaceable);
  }
  ASSERT_EQ(::chmod(folderName.constData(), 0755), 0);
  EXPECT_EQ(ContentOf(from), "new");
  EXPECT_EQ(ContentOf(to), "earlier");
}

TEST(AtomicFile, ARefusedSetLeavesTheEarlierFile) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("a.dat"));
  WriteFileAtomically(path, "earlier", Durability::Lasting);
  PacketLimits limits;
  limits.rows = 1;
  EXPECT_EQ(CategoryOf([&] { WritePacketFile(path, SampleSet(), Durability::Lasting, limits); }),
            ErrorCategory::Refused);
  EXPECT_EQ(ContentOf(path), "earlier");
}

TEST(SystemReason, IsChineseWhereTheUserCanAct) {
  for (const int number : {ENOSPC, EDQUOT}) EXPECT_NE(SystemReason(number).find("已用完"), std::string::npos);
  EXPECT_NE(SystemReason(EROFS).find("只读"), std::string::npos);
  for (const int number : {EACCES, EPERM}) EXPECT_EQ(SystemReason(number), "没有权限");
  EXPECT_EQ(SystemReason(ENXIO), "No such device or address") << "the system's own words";
}

TEST(FlushFolder, AFolderThatIsNotThereIsNamed) {
  const QTemporaryDir folder;
  EXPECT_NO_THROW(FlushFolder(folder.path()));
  std::string text;
  const QString missing = folder.filePath(QStringLiteral("没有"));
  EXPECT_EQ(CategoryOf([&] { FlushFolder(missing); }, &text), ErrorCategory::Io);
  EXPECT_NE(text.find(missing.toStdString()), std::string::npos) << text;
}

}  // namespace
}  // namespace holdwise
