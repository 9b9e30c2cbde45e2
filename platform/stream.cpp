#include "platform/stream.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace lumatrex {

EReadError::EReadError(std::int64_t offset, const std::string& what)
    : EStreamError("read error at byte " + std::to_string(offset) + ": " + what),
      offset_(offset) {}

void TStream::ReadBuffer(void* buffer, std::int64_t count, const char* what) {
  const std::int64_t start = position_;
  if (count < 0)
    throw EReadError(start, std::string("negative size for ") + what);
  if (count == 0) return;
  if (Read(buffer, count) != count)
    throw EReadError(start, std::string("stream ends inside ") + what + " (" +
                                std::to_string(count) + " bytes wanted)");
}

void TStream::WriteBuffer(const void* buffer, std::int64_t count) {
  if (count <= 0) return;
  if (Write(buffer, count) != count)
    throw EWriteError("write error at byte " + std::to_string(position_));
}

std::int64_t TStream::CopyFrom(TStream& source, std::int64_t count) {
  if (count < 0) throw EReadError(source.Position(), "negative size for copied data");
  if (count == 0) {
    source.SetPosition(0);
    count = source.Size();
  }
  std::vector<std::uint8_t> chunk(static_cast<std::size_t>(std::min<std::int64_t>(count, 1 << 16)));
  std::int64_t left = count;
  while (left > 0) {
    const std::int64_t n = std::min<std::int64_t>(left, static_cast<std::int64_t>(chunk.size()));
    source.ReadBuffer(chunk.data(), n, "copied data");
    WriteBuffer(chunk.data(), n);
    left -= n;
  }
  return count;
}

// ---------------------------------------------------------------------------

TMemoryStream::TMemoryStream(std::span<const std::uint8_t> bytes) {
  WriteBuffer(bytes.data(), static_cast<std::int64_t>(bytes.size()));
  position_ = 0;
}

TMemoryStream::TMemoryStream(const TMemoryStream& other) : TMemoryStream(other.View()) {
  position_ = other.position_;
}

TMemoryStream& TMemoryStream::operator=(const TMemoryStream& other) {
  if (this != &other) *this = TMemoryStream(other);
  return *this;
}

TMemoryStream::TMemoryStream(TMemoryStream&& other) noexcept
    : TStream(other),
      data_(std::exchange(other.data_, nullptr)),
      size_(std::exchange(other.size_, 0)),
      capacity_(std::exchange(other.capacity_, 0)) {
  other.position_ = 0;
}

TMemoryStream& TMemoryStream::operator=(TMemoryStream&& other) noexcept {
  std::swap(data_, other.data_);
  std::swap(size_, other.size_);
  std::swap(capacity_, other.capacity_);
  std::swap(position_, other.position_);
  return *this;
}

TMemoryStream::~TMemoryStream() { std::free(data_); }

void TMemoryStream::Reserve(std::int64_t capacity) {
  if (capacity <= capacity_) return;
  const std::int64_t grown = std::max<std::int64_t>({capacity, capacity_ * 2, 256});
  auto* data = static_cast<std::uint8_t*>(std::realloc(data_, static_cast<std::size_t>(grown)));
  if (data == nullptr) throw std::bad_alloc();
  data_ = data;
  capacity_ = grown;
}

void TMemoryStream::Expect(std::int64_t count) { Reserve(position_ + std::max<std::int64_t>(count, 0)); }

// Bytes between the end and Offset, left by seeking or resizing past the end,
// read back as zeros. The buffer must already reach Offset.
void TMemoryStream::ZeroGapBefore(std::int64_t offset) {
  if (offset > size_) std::memset(data_ + size_, 0, static_cast<std::size_t>(offset - size_));
}

std::int64_t TMemoryStream::Read(void* buffer, std::int64_t count) {
  const std::int64_t n = std::clamp<std::int64_t>(size_ - position_, 0, std::max<std::int64_t>(count, 0));
  if (n > 0) std::memcpy(buffer, data_ + position_, static_cast<std::size_t>(n));
  position_ += n;
  return n;
}

std::int64_t TMemoryStream::Write(const void* buffer, std::int64_t count) {
  if (count <= 0) return 0;
  const std::int64_t end = position_ + count;
  Reserve(end);
  ZeroGapBefore(position_);
  std::memcpy(data_ + position_, buffer, static_cast<std::size_t>(count));
  size_ = std::max(size_, end);
  position_ = end;
  return count;
}

std::int64_t TMemoryStream::Seek(std::int64_t offset, TSeekOrigin origin) {
  const std::int64_t base = origin == soBeginning ? 0 : origin == soCurrent ? position_ : size_;
  position_ = std::max<std::int64_t>(0, base + offset);
  return position_;
}

void TMemoryStream::SetSize(std::int64_t size) {
  size = std::max<std::int64_t>(size, 0);
  Reserve(size);
  ZeroGapBefore(size);
  size_ = size;
  position_ = std::min(position_, size_);
}

void TMemoryStream::Clear() {
  size_ = 0;
  position_ = 0;
}

void TMemoryStream::LoadFromStream(TStream& source) {
  source.SetPosition(0);
  SetSize(source.Size());
  source.ReadBuffer(data_, size_, "stream content");
  position_ = 0;
}

void TMemoryStream::SaveToStream(TStream& target) const { target.WriteBuffer(data_, size_); }

void TMemoryStream::LoadFromFile(const std::string& fileName) {
  TFileStream file(fileName, fmOpenRead);
  LoadFromStream(file);
}

void TMemoryStream::SaveToFile(const std::string& fileName) const { SaveBytesToFileAtomically(fileName, View()); }

// ---------------------------------------------------------------------------

namespace {

constexpr std::int64_t kFileBufferSize = 1 << 16;

// Reads up to Count bytes at Offset; fewer only at the end of the file or on an error.
std::int64_t ReadAt(int fd, void* buffer, std::int64_t count, std::int64_t offset) {
  std::int64_t done = 0;
  while (done < count) {
    const ssize_t n = pread(fd, static_cast<char*>(buffer) + done, static_cast<std::size_t>(count - done), offset + done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    done += n;
  }
  return done;
}

// Writes Count bytes at Offset; returns how many the system took.
std::int64_t WriteAt(int fd, const void* buffer, std::int64_t count, std::int64_t offset) {
  std::int64_t done = 0;
  while (done < count) {
    const ssize_t n =
        pwrite(fd, static_cast<const char*>(buffer) + done, static_cast<std::size_t>(count - done), offset + done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    done += n;
  }
  return done;
}

}  // namespace

TFileStream::TFileStream(const std::string& fileName, TFileMode mode)
    : fileName_(fileName), writable_(mode != fmOpenRead) {
  static constexpr int kFlags[] = {O_RDWR | O_CREAT | O_TRUNC, O_RDONLY, O_RDWR, O_RDWR};
  fd_ = open(fileName.c_str(), kFlags[mode] | O_CLOEXEC, 0666);
  struct stat info {};
  if (fd_ < 0 || fstat(fd_, &info) != 0) {
    const int error = errno;
    if (fd_ >= 0) close(fd_);
    throw EFOpenError("cannot open file \"" + fileName + "\": " + std::strerror(error));
  }
  size_ = info.st_size;
}

TFileStream::~TFileStream() {
  try {
    Flush();
  } catch (const EWriteError&) {  // a destructor cannot report it; Flush can
  }
  close(fd_);
}

void TFileStream::DropBuffer() {
  bufferStart_ = bufferLength_ = 0;
  dirty_ = false;
}

void TFileStream::Fill() {
  Flush();
  if (buffer_.empty()) buffer_.resize(kFileBufferSize);
  bufferStart_ = position_;
  bufferLength_ = ReadAt(fd_, buffer_.data(), std::min(kFileBufferSize, size_ - position_), position_);
}

std::int64_t TFileStream::Read(void* buffer, std::int64_t count) {
  auto* out = static_cast<std::uint8_t*>(buffer);
  std::int64_t left = std::clamp<std::int64_t>(size_ - position_, 0, std::max<std::int64_t>(count, 0));
  const std::int64_t start = position_;
  while (left > 0) {
    const std::int64_t inBuffer = bufferStart_ + bufferLength_ - position_;
    if (position_ >= bufferStart_ && inBuffer > 0) {
      const std::int64_t n = std::min(left, inBuffer);
      std::memcpy(out, buffer_.data() + (position_ - bufferStart_), static_cast<std::size_t>(n));
      out += n;
      position_ += n;
      left -= n;
    } else if (left >= kFileBufferSize) {  // large reads skip the buffer
      Flush();
      const std::int64_t n = ReadAt(fd_, out, left, position_);
      position_ += n;
      break;
    } else {
      Fill();
      if (bufferLength_ == 0) break;
    }
  }
  return position_ - start;
}

std::int64_t TFileStream::Write(const void* buffer, std::int64_t count) {
  if (!writable_ || count <= 0) return 0;
  const bool joins = position_ >= bufferStart_ && position_ <= bufferStart_ + bufferLength_ &&
                     position_ + count <= bufferStart_ + kFileBufferSize;
  std::int64_t written = count;
  if (joins && !buffer_.empty()) {
    std::memcpy(buffer_.data() + (position_ - bufferStart_), buffer, static_cast<std::size_t>(count));
    bufferLength_ = std::max(bufferLength_, position_ + count - bufferStart_);
    dirty_ = true;
  } else {
    Flush();
    DropBuffer();
    if (count >= kFileBufferSize) {
      written = WriteAt(fd_, buffer, count, position_);
    } else {
      if (buffer_.empty()) buffer_.resize(kFileBufferSize);
      std::memcpy(buffer_.data(), buffer, static_cast<std::size_t>(count));
      bufferStart_ = position_;
      bufferLength_ = count;
      dirty_ = true;
    }
  }
  position_ += written;
  size_ = std::max(size_, position_);
  return written;
}

std::int64_t TFileStream::Seek(std::int64_t offset, TSeekOrigin origin) {
  const std::int64_t base = origin == soBeginning ? 0 : origin == soCurrent ? position_ : size_;
  position_ = std::max<std::int64_t>(0, base + offset);
  return position_;
}

void TFileStream::SetSize(std::int64_t size) {
  Flush();
  DropBuffer();
  size = std::max<std::int64_t>(size, 0);
  if (!writable_ || ftruncate(fd_, size) != 0) throw EWriteError("cannot resize file \"" + fileName_ + "\"");
  size_ = size;
  position_ = std::min(position_, size_);
}

void TFileStream::Flush() {
  if (!dirty_) return;
  dirty_ = false;
  if (WriteAt(fd_, buffer_.data(), bufferLength_, bufferStart_) != bufferLength_) {
    DropBuffer();
    throw EWriteError("cannot write file \"" + fileName_ + "\"");
  }
}

}  // namespace lumatrex
