// Saving a whole file: a save either leaves the complete new file or keeps
// the old one, says why in plain words, and never turns something that is not
// a regular file into one.
#include <gtest/gtest.h>

#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>

#include "platform/stream.h"

namespace lumatrex {
namespace {

using TBytes = std::vector<std::uint8_t>;

TBytes Read(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return TBytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

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
  const TBytes big(200 * 1024, 0x5A);
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    QTemporaryDir dir;
    const std::string folder = dir.path().toStdString();
    std::string message;
    std::size_t entries = 0;
    TBytes kept;
    const bool ran = c.run(folder, [&] {
      try {
        SaveBytesToFileAtomically(folder + "/old.lmx", big);
      } catch (const EWriteError& e) {
        message = e.what();
      }
      kept = Read(folder + "/old.lmx");
      entries = EntryCount(folder);
    });
    if (!ran) continue;
    EXPECT_NE(message.find(c.reason), std::string::npos) << message;
    EXPECT_NE(message.find("old.lmx"), std::string::npos) << message;
    EXPECT_EQ(std::string(kept.begin(), kept.end()), "old drawing");
    EXPECT_EQ(entries, 1u) << "a temporary file was left";
  }
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
      SaveBytesToFileAtomically(target, TBytes{1, 2, 3});
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
  SaveBytesToFileAtomically(folder + "/link.lmx", TBytes{'n', 'e', 'w'});
  EXPECT_TRUE(std::filesystem::is_symlink(folder + "/link.lmx"));
  EXPECT_EQ(Read(folder + "/real.lmx"), (TBytes{'n', 'e', 'w'}));
  struct stat st {};
  stat((folder + "/real.lmx").c_str(), &st);
  EXPECT_EQ(st.st_mode & 07777, 0640u);
}

}  // namespace
}  // namespace lumatrex
