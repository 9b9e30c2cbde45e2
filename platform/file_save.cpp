// Saving a whole file so that a failure never costs the file that was there.
// Written on POSIX calls rather than QSaveFile: every write, the sync to disk
// and the close are checked one by one, and errno gives the reason in words.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/stream.h"

namespace lumatrex {

namespace {

// The reason a save failed, as a user would put it.
std::string Reason(int error) {
  switch (error) {
    case ENOSPC:
    case EDQUOT:
      return "the disk is full";
    case EACCES:
    case EPERM:
      return "permission denied";
    case EROFS:
      return "the disk is read-only";
    case ENOENT:
    case ENOTDIR:
      return "the folder does not exist";
    case EISDIR:
      return "it is a folder";
    case EFBIG:
      return "the file is larger than this system allows";
    case ENAMETOOLONG:
      return "the file name is too long";
    case EIO:
      return "the disk reported an input/output error";
    default:
      return std::strerror(error);
  }
}

[[noreturn]] void Fail(const std::string& fileName, int error) {
  throw EWriteError("cannot save " + fileName + ": " + Reason(error));
}

// The file a save replaces: a symbolic link is followed, so that the link
// stays and the file it names gets the new content.
std::string ResolvedTarget(const std::string& fileName) {
  char resolved[PATH_MAX];
  return realpath(fileName.c_str(), resolved) ? std::string(resolved) : fileName;
}

// A temporary file beside the target, removed unless it was renamed over it.
class TTemporaryFile {
 public:
  TTemporaryFile(const std::string& target, mode_t mode) {
    // The target's own name plus a suffix keeps the file in the same folder
    // (so the rename is atomic) and recognisable if the machine stops.
    for (int attempt = 0; attempt < 100 && fd_ < 0; ++attempt) {
      path_ = target + ".tmp" + std::to_string(getpid()) + "-" + std::to_string(attempt);
      fd_ = open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
      if (fd_ < 0 && errno != EEXIST) break;
    }
  }
  ~TTemporaryFile() {
    if (fd_ >= 0) close(fd_);
    if (!renamed_) unlink(path_.c_str());
  }
  TTemporaryFile(const TTemporaryFile&) = delete;
  TTemporaryFile& operator=(const TTemporaryFile&) = delete;

  int Fd() const { return fd_; }
  const std::string& Path() const { return path_; }
  // Closes the descriptor; false (with errno) when the last data failed.
  bool Close() {
    const int fd = fd_;
    fd_ = -1;
    return close(fd) == 0;
  }
  void MarkRenamed() { renamed_ = true; }

 private:
  std::string path_;
  int fd_ = -1;
  bool renamed_ = false;
};

// Writes all of Bytes, resuming after partial writes and interruptions.
bool WriteAll(int fd, std::span<const std::uint8_t> bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t n = write(fd, bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      if (n == 0) errno = ENOSPC;
      return false;
    }
    done += static_cast<std::size_t>(n);
  }
  return true;
}

}  // namespace

void SaveBytesToFileAtomically(const std::string& fileName, std::span<const std::uint8_t> bytes) {
  const std::string target = ResolvedTarget(fileName);
  struct stat existing {};
  const bool exists = stat(target.c_str(), &existing) == 0;
  // Renaming over a device, a pipe or a folder would replace it with a file.
  if (exists && !S_ISREG(existing.st_mode))
    throw EFOpenError("cannot save " + fileName + ": it is not a regular file (a folder, device or pipe)");
  const mode_t mode = exists ? existing.st_mode & 07777 : 0666;
  TTemporaryFile temp(target, mode);
  if (temp.Fd() < 0) throw EFOpenError("cannot save " + fileName + ": " + Reason(errno));
  // The umask narrowed the mode of the new file; a replaced file keeps its own.
  if (exists && fchmod(temp.Fd(), mode) != 0) Fail(fileName, errno);
  // Delayed allocation can report a full disk only at fsync or close, so
  // both are checked before the old file is given up.
  if (!WriteAll(temp.Fd(), bytes) || fsync(temp.Fd()) != 0 || !temp.Close()) Fail(fileName, errno);
  if (rename(temp.Path().c_str(), target.c_str()) != 0) Fail(fileName, errno);
  temp.MarkRenamed();
}

}  // namespace lumatrex
