// Saving a whole file so that a failure never costs the file that was there.
// Written on POSIX calls rather than QSaveFile: every write, the sync to disk
// and the close are checked one by one, and errno gives the reason in words.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

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

// Bytes gathered before they go to the system: writes come a few bytes at a
// time, and a chunk this size still sits in the processor's cache.
constexpr std::int64_t kChunkBytes = 1 << 20;

// Asks the system to start writing [Offset, Offset + Count) to the disk now,
// so that the sync at the end finds most of the file there. Advice only: the
// sync reports any failure.
void StartWriteback(int fd, std::int64_t offset, std::int64_t count) {
#if defined(__linux__)
  sync_file_range(fd, offset, count, SYNC_FILE_RANGE_WRITE);
#else
  (void)fd, (void)offset, (void)count;
#endif
}

}  // namespace

// A temporary file beside the target, removed unless it was renamed over it.
class TAtomicFileStream::TTemporary {
 public:
  TTemporary(const std::string& target, mode_t mode) {
    // The target's own name plus a suffix keeps the file in the same folder
    // (so the rename is atomic) and recognisable if the machine stops.
    for (int attempt = 0; attempt < 100 && fd_ < 0; ++attempt) {
      path_ = target + ".tmp" + std::to_string(getpid()) + "-" + std::to_string(attempt);
      fd_ = open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
      if (fd_ < 0 && errno != EEXIST) break;
    }
  }
  ~TTemporary() {
    if (fd_ >= 0) close(fd_);
    if (!renamed_) unlink(path_.c_str());
  }
  TTemporary(const TTemporary&) = delete;
  TTemporary& operator=(const TTemporary&) = delete;

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

TAtomicFileStream::TAtomicFileStream(const std::string& fileName)
    : fileName_(fileName), target_(ResolvedTarget(fileName)) {
  struct stat existing {};
  const bool exists = stat(target_.c_str(), &existing) == 0;
  // Renaming over a device, a pipe or a folder would replace it with a file.
  if (exists && !S_ISREG(existing.st_mode))
    throw EFOpenError("cannot save " + fileName + ": it is not a regular file (a folder, device or pipe)");
  const mode_t mode = exists ? existing.st_mode & 07777 : 0666;
  temp_ = std::make_unique<TTemporary>(target_, mode);
  if (temp_->Fd() < 0) throw EFOpenError("cannot save " + fileName + ": " + Reason(errno));
  // The umask narrowed the mode of the new file; a replaced file keeps its own.
  if (exists && fchmod(temp_->Fd(), mode) != 0) Fail(fileName, errno);
  buffer_.resize(kChunkBytes);
}

TAtomicFileStream::~TAtomicFileStream() = default;

std::int64_t TAtomicFileStream::Read(void*, std::int64_t) { return 0; }

std::int64_t TAtomicFileStream::Write(const void* buffer, std::int64_t count) {
  if (!temp_ || count <= 0) return 0;
  const auto* in = static_cast<const std::uint8_t*>(buffer);
  // Past the end: the gap reads as zeros, as in every stream.
  if (position_ > Size()) {
    const std::int64_t at = position_;
    position_ = Size();
    const std::vector<std::uint8_t> zeros(static_cast<std::size_t>(std::min(at - position_, kChunkBytes)));
    while (position_ < at) Write(zeros.data(), std::min<std::int64_t>(at - position_, std::ssize(zeros)));
  }
  const std::int64_t end = position_ + count;
  while (position_ < end) {
    const std::int64_t left = end - position_;
    if (position_ < bufferStart_) {  // back over bytes the system has
      const std::int64_t n = std::min(left, bufferStart_ - position_);
      WriteThrough(in, n, position_);
      in += n;
      position_ += n;
    } else if (position_ == Size() && bufferLength_ == 0 && left >= kChunkBytes) {  // large blocks skip the copy
      WriteThrough(in, left, position_);
      StartWriteback(temp_->Fd(), position_, left);
      bufferStart_ += left;
      position_ += left;
    } else if (position_ - bufferStart_ == kChunkBytes) {
      WriteOut();
    } else {
      const std::int64_t offset = position_ - bufferStart_;
      const std::int64_t n = std::min(left, kChunkBytes - offset);
      std::memcpy(buffer_.data() + offset, in, static_cast<std::size_t>(n));
      bufferLength_ = std::max(bufferLength_, offset + n);
      in += n;
      position_ += n;
    }
  }
  return count;
}

std::int64_t TAtomicFileStream::Seek(std::int64_t offset, TSeekOrigin origin) {
  const std::int64_t base = origin == soBeginning ? 0 : origin == soCurrent ? position_ : Size();
  position_ = std::max<std::int64_t>(0, base + offset);
  return position_;
}

void TAtomicFileStream::SetSize(std::int64_t size) {
  if (!temp_) return;
  WriteOut();
  size = std::max<std::int64_t>(size, 0);
  if (ftruncate(temp_->Fd(), size) != 0) Fail(fileName_, errno);
  bufferStart_ = size;
  position_ = std::min(position_, size);
}

void TAtomicFileStream::Commit() {
  if (!temp_) return;
  WriteOut();
  // Delayed allocation can report a full disk only at fsync or close, so
  // both are checked before the old file is given up.
  if (fsync(temp_->Fd()) != 0 || !temp_->Close()) Fail(fileName_, errno);
  if (rename(temp_->Path().c_str(), target_.c_str()) != 0) Fail(fileName_, errno);
  temp_->MarkRenamed();
  temp_.reset();
}

void TAtomicFileStream::WriteOut() {
  if (bufferLength_ == 0) return;
  WriteThrough(buffer_.data(), bufferLength_, bufferStart_);
  StartWriteback(temp_->Fd(), bufferStart_, bufferLength_);
  bufferStart_ += bufferLength_;
  bufferLength_ = 0;
}

void TAtomicFileStream::WriteThrough(const std::uint8_t* bytes, std::int64_t count, std::int64_t offset) {
  std::int64_t done = 0;
  while (done < count) {
    const ssize_t n = pwrite(temp_->Fd(), bytes + done, static_cast<std::size_t>(count - done), offset + done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) Fail(fileName_, n == 0 ? ENOSPC : errno);
    done += n;
  }
}

void SaveBytesToFileAtomically(const std::string& fileName, std::span<const std::uint8_t> bytes) {
  TAtomicFileStream file(fileName);
  file.WriteBuffer(bytes.data(), std::ssize(bytes));
  file.Commit();
}

}  // namespace lumatrex
