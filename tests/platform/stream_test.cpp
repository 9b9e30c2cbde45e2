// Byte streams: the file stream, the exact-size helpers of TStream that
// readers rely on for their error offsets, and saving a whole file.
#include <gtest/gtest.h>

#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <algorithm>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "platform/stream.h"
#include "support/test_paths.h"

namespace lumatrex {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes ReadAll(TStream& stream) {
  Bytes bytes(static_cast<std::size_t>(stream.Size()));
  stream.SetPosition(0);
  stream.ReadBuffer(bytes.data(), stream.Size());
  return bytes;
}

// The error Call throws; a failure, and offset -1, when it throws none.
EReadError ReadErrorOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const EReadError& e) {
    return e;
  }
  ADD_FAILURE() << "no error";
  return EReadError(-1, "");
}

// ---------------------------------------------------------------------------
// Exact-size reads and copies
// ---------------------------------------------------------------------------

TEST(ReadBuffer, ShortReadThrowsWithTheOffsetWhereTheReadBeganZeroBytesNeverAndNegativeCountsAlways) {
  TMemoryStream stream(Bytes(10));
  stream.SetPosition(6);
  Bytes buffer(8);
  const EReadError e = ReadErrorOf([&] { stream.ReadBuffer(buffer.data(), 8, "shape count"); });
  EXPECT_EQ(e.Offset(), 6);
  EXPECT_NE(std::string(e.what()).find("shape count"), std::string::npos) << e.what();
  EXPECT_NE(std::string(e.what()).find("byte 6"), std::string::npos) << e.what();
  EXPECT_NO_THROW(stream.ReadBuffer(nullptr, 0));
  EXPECT_THROW(stream.ReadBuffer(nullptr, -1), EReadError);
}

TEST(CopyFrom, ZeroCopiesTheWholeSourceACountCopiesFromThePositionAcrossChunks) {
  TMemoryStream source(Bytes{1, 2, 3, 4});
  source.SetPosition(3);
  TMemoryStream target(Bytes{9});
  target.SetPosition(1);
  EXPECT_EQ(target.CopyFrom(source, 0), 4);
  EXPECT_EQ(target.Bytes(), (Bytes{9, 1, 2, 3, 4}));
  EXPECT_EQ(source.Position(), 4);
  Bytes data(200000);
  for (std::size_t i = 0; i < data.size(); ++i) data[i] = static_cast<std::uint8_t>(i * 7);
  TMemoryStream big(data), copy;
  big.SetPosition(1);
  EXPECT_EQ(copy.CopyFrom(big, 150000), 150000);
  EXPECT_EQ(copy.Bytes(), Bytes(data.begin() + 1, data.begin() + 150001));
  EXPECT_EQ(big.Position(), 150001);
}

TEST(CopyFrom, MoreThanTheSourceHoldsOrANegativeCountThrowsEReadError) {
  TMemoryStream source(Bytes{1, 2, 3});
  source.SetPosition(1);
  TMemoryStream target;
  EXPECT_EQ(ReadErrorOf([&] { target.CopyFrom(source, 5); }).Offset(), 1);
  EXPECT_THROW(target.CopyFrom(source, -1), EReadError);
  EXPECT_EQ(target.Size(), 0);
}

// ---------------------------------------------------------------------------
// TFileStream
// ---------------------------------------------------------------------------

class FileStream : public testing::Test {
 protected:
  std::string Path(const char* name) const { return dir_.filePath(name).toStdString(); }
  void WriteFile(const char* name, const Bytes& bytes) {
    TFileStream file(Path(name), fmCreate);
    file.WriteBuffer(bytes.data(), static_cast<std::int64_t>(bytes.size()));
  }

 private:
  QTemporaryDir dir_;
};

TEST_F(FileStream, CreateTruncatesAnExistingFileAndAReadOnlyStreamRefusesWrites) {
  WriteFile("a.bin", {1, 2, 3, 4, 5});
  WriteFile("a.bin", {6});
  TFileStream file(Path("a.bin"), fmOpenRead);
  EXPECT_EQ(ReadAll(file), (Bytes{6}));
  const std::uint8_t value = 2;
  EXPECT_THROW(file.WriteBuffer(&value, 1), EWriteError);
}

TEST_F(FileStream, MissingFileThrowsEFOpenErrorNamingIt) {
  for (TFileMode mode : {fmOpenRead, fmOpenWrite, fmOpenReadWrite}) {
    try {
      TFileStream file(Path("missing.bin"), mode);
      FAIL() << "opened in mode " << int(mode);
    } catch (const EFOpenError& e) {
      EXPECT_NE(std::string(e.what()).find("missing.bin"), std::string::npos) << e.what();
    }
  }
  EXPECT_THROW(TFileStream(Path("no/such/folder.bin"), fmCreate), EFOpenError);
}

TEST_F(FileStream, MemoryStreamSavesToAndLoadsFromFiles) {
  const TMemoryStream saved(Bytes{4, 5, 6});
  saved.SaveToFile(Path("m.bin"));
  TMemoryStream loaded(Bytes{1});
  loaded.SetPosition(1);
  loaded.LoadFromFile(Path("m.bin"));
  EXPECT_EQ(loaded.Bytes(), (Bytes{4, 5, 6}));
  EXPECT_EQ(loaded.Position(), 0);
}

// The file stream buffers its reads and writes: any mix of them, small and
// larger than its buffer, at any position, must leave it (and the file) as a
// memory stream given the same calls. As the file's own seeks, sizes and
// zero-filled gaps are the system's, this pins the memory stream as well.
TEST_F(FileStream, BufferedCallsMatchAMemoryStream) {
  TMemoryStream memory;
  std::mt19937 random(8);
  {
    TFileStream file(Path("b.bin"), fmCreate);
    Bytes data(400000), got(200000), want(200000);
    for (std::uint8_t& b : data) b = static_cast<std::uint8_t>(random());
    for (int step = 0; step < 400; ++step) {
      SCOPED_TRACE(step);
      const std::int64_t count = random() % 4 == 0 ? random() % 150000 : random() % 40;
      const std::int64_t at = random() % 180000;
      switch (random() % 5) {
        case 0:
        case 1: EXPECT_EQ(file.Write(data.data() + at, count), memory.Write(data.data() + at, count)); break;
        case 2:
        case 3:
          EXPECT_EQ(file.Read(got.data(), count), memory.Read(want.data(), count));
          EXPECT_TRUE(std::equal(got.begin(), got.begin() + count, want.begin()));
          break;
        default:
          if (step % 20 == 0) {
            file.SetSize(at);
            memory.SetSize(at);
          } else {
            const auto origin = static_cast<TSeekOrigin>(random() % 3);
            EXPECT_EQ(file.Seek(at - 90000, origin), memory.Seek(at - 90000, origin));
          }
      }
      ASSERT_EQ(file.Position(), memory.Position());
      ASSERT_EQ(file.Size(), memory.Size());
    }
    file.Flush();
  }
  TFileStream reopened(Path("b.bin"), fmOpenRead);
  EXPECT_EQ(ReadAll(reopened), memory.Bytes());
}

TEST_F(FileStream, ReadPastTheEndThrowsWithItsOffsetAfterBufferedReads) {
  WriteFile("a.bin", Bytes(100000, 7));
  TFileStream file(Path("a.bin"), fmOpenRead);
  Bytes buffer(20);
  file.ReadBuffer(buffer.data(), 10);  // fills the buffer from the start
  file.SetPosition(99990);
  EXPECT_EQ(ReadErrorOf([&] { file.ReadBuffer(buffer.data(), 20, "tail"); }).Offset(), 99990);
}

TEST_F(FileStream, AFailedWriteIsReportedWhenSmallOrLarge) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  const Bytes small(10, 1), large(1 << 17, 2);
  TFileStream buffered("/dev/full", fmOpenWrite);
  buffered.WriteBuffer(small.data(), 10);  // held in the buffer until flushed
  EXPECT_THROW(buffered.Flush(), EWriteError);
  TFileStream direct("/dev/full", fmOpenWrite);
  EXPECT_THROW(direct.WriteBuffer(large.data(), static_cast<std::int64_t>(large.size())), EWriteError);
}

// ---------------------------------------------------------------------------
// Saving a whole file: a save either leaves the complete new file or keeps
// the old one, says why in plain words, and never turns something that is not
// a regular file into one.
// ---------------------------------------------------------------------------

std::size_t EntryCount(const std::string& folder) {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

// A folder on a 64 KiB tmpfs, unmounted at the end; empty when this process
// may not mount (not root, or no mount rights in a container).
class TSmallDisk {
 public:
  explicit TSmallDisk(const std::string& folder) : folder_(folder) {
    mounted_ = mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=64k") == 0;
  }
  ~TSmallDisk() {
    if (mounted_) umount(folder_.c_str());
  }
  bool Mounted() const { return mounted_; }

 private:
  std::string folder_;
  bool mounted_ = false;
};

// The largest file this process may write, for the life of the object.
class TFileSizeLimit {
 public:
  explicit TFileSizeLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &saved_);
    std::signal(SIGXFSZ, SIG_IGN);  // the write fails with EFBIG instead
    rlimit limit = saved_;
    limit.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~TFileSizeLimit() { setrlimit(RLIMIT_FSIZE, &saved_); }

 private:
  rlimit saved_{};
};

TEST(SaveBytesToFileAtomically, AFailedWriteKeepsTheOldFileAndSaysWhy) {
  struct Case {
    const char* name;
    // Prepares the folder holding the file; false to skip the case here.
    std::function<bool(const std::string& folder, std::function<void()> save)> run;
    const char* reason;
  };
  const Case cases[] = {
      {"disk full", [](const std::string& folder, std::function<void()> save) {
         TSmallDisk disk(folder);
         if (!disk.Mounted()) return false;
         std::ofstream(folder + "/old.lmx") << "old drawing";
         save();
         return true;
       }, "the disk is full"},
      {"file size limit", [](const std::string& folder, std::function<void()> save) {
         std::ofstream(folder + "/old.lmx") << "old drawing";
         TFileSizeLimit limit(4096);
         save();
         return true;
       }, "larger than this system allows"},
  };
  const Bytes big(200 * 1024, 0x5A);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    QTemporaryDir dir;
    const std::string folder = dir.path().toStdString();
    std::string message;
    std::size_t entries = 0;
    std::string kept;
    const bool ran = c.run(folder, [&] {
      try {
        SaveBytesToFileAtomically(folder + "/old.lmx", big);
      } catch (const EWriteError& e) {
        message = e.what();
      }
      kept = test::ReadFileBytes(folder + "/old.lmx");
      entries = EntryCount(folder);
    });
    if (!ran) continue;
    EXPECT_NE(message.find(c.reason), std::string::npos) << message;
    EXPECT_NE(message.find("old.lmx"), std::string::npos) << message;
    EXPECT_EQ(kept, "old drawing");
    EXPECT_EQ(entries, 1u) << "a temporary file was left";
  }
}

// Written as it comes, in chunks: the bytes must still be those a memory
// stream ends with after the same writes, and the old file must stay until
// the commit, also when the stream is given up.
TEST(TAtomicFileStream, SavesWhatAMemoryStreamHoldsAndOnlyOnCommit) {
  const auto writes = [](TStream& s) {
    Bytes block(3 * 1024 * 1024 + 17);
    std::iota(block.begin(), block.end(), std::uint8_t{0});
    s.WriteBuffer(block.data(), std::ssize(block));  // past several chunks at once
    for (std::size_t at = 0; at < block.size(); at += 1000)  // and through the buffer
      s.WriteBuffer(block.data() + at, std::min<std::int64_t>(1000, std::ssize(block) - at));
    const std::uint8_t patch[4] = {0xDE, 0xAD, 0xBE, 0xEF};
    for (const std::int64_t at : {std::int64_t{10}, s.Size() - 2, s.Size() + 3}) {  // written, buffered, a gap
      s.SetPosition(at);
      s.WriteBuffer(patch, sizeof patch);
    }
  };
  TMemoryStream expected;
  writes(expected);
  QTemporaryDir dir;
  const std::string folder = dir.path().toStdString(), path = folder + "/old.lmx";
  std::ofstream(path) << "old drawing";
  for (const bool commit : {false, true}) {
    SCOPED_TRACE(commit ? "committed" : "given up");
    {
      TAtomicFileStream file(path);
      writes(file);
      EXPECT_EQ(file.Size(), expected.Size());
      EXPECT_EQ(test::ReadFileBytes(path), "old drawing");
      if (commit) file.Commit();
    }
    EXPECT_EQ(EntryCount(folder), 1u) << "a temporary file was left";
  }
  const std::string saved = test::ReadFileBytes(path);
  EXPECT_TRUE(Bytes(saved.begin(), saved.end()) == expected.Bytes());
}

TEST(SaveBytesToFileAtomically, RefusesTargetsThatAreNotRegularFiles) {
  struct Case {
    const char* name;
    std::function<bool(const std::string& path)> make;
  };
  const Case cases[] = {
      {"FIFO", [](const std::string& p) { return mkfifo(p.c_str(), 0600) == 0; }},
      {"device node", [](const std::string& p) { return mknod(p.c_str(), S_IFCHR | 0600, makedev(1, 3)) == 0; }},
      {"folder", [](const std::string& p) { return mkdir(p.c_str(), 0700) == 0; }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    QTemporaryDir dir;
    const std::string target = dir.path().toStdString() + "/target";
    if (!c.make(target)) continue;  // device nodes need root
    struct stat before {};
    stat(target.c_str(), &before);
    try {
      SaveBytesToFileAtomically(target, Bytes{1, 2, 3});
      ADD_FAILURE() << "saved";
    } catch (const EFOpenError& e) {
      EXPECT_NE(std::string(e.what()).find("not a regular file"), std::string::npos) << e.what();
    }
    struct stat after {};
    stat(target.c_str(), &after);
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(EntryCount(dir.path().toStdString()), 1u);
  }
}

TEST(SaveBytesToFileAtomically, ReplacesTheFileBehindALinkAndKeepsItsMode) {
  QTemporaryDir dir;
  const std::string folder = dir.path().toStdString();
  std::ofstream(folder + "/real.lmx") << "old";
  chmod((folder + "/real.lmx").c_str(), 0640);
  symlink("real.lmx", (folder + "/link.lmx").c_str());
  SaveBytesToFileAtomically(folder + "/link.lmx", Bytes{'n', 'e', 'w'});
  EXPECT_TRUE(std::filesystem::is_symlink(folder + "/link.lmx"));
  EXPECT_EQ(test::ReadFileBytes(folder + "/real.lmx"), "new");
  struct stat st {};
  stat((folder + "/real.lmx").c_str(), &st);
  EXPECT_EQ(st.st_mode & 07777, 0640u);
}

}  // namespace
}  // namespace lumatrex
