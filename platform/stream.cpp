#include "platform/stream.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

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

TMemoryStream::TMemoryStream(std::vector<std::uint8_t> bytes) : data_(std::move(bytes)) {}

std::int64_t TMemoryStream::Read(void* buffer, std::int64_t count) {
  const std::int64_t n = std::clamp<std::int64_t>(Size() - position_, 0, std::max<std::int64_t>(count, 0));
  if (n > 0) std::memcpy(buffer, data_.data() + position_, static_cast<std::size_t>(n));
  position_ += n;
  return n;
}

std::int64_t TMemoryStream::Write(const void* buffer, std::int64_t count) {
  if (count <= 0) return 0;
  const std::int64_t end = position_ + count;
  if (end > Size()) data_.resize(static_cast<std::size_t>(end));
  std::memcpy(data_.data() + position_, buffer, static_cast<std::size_t>(count));
  position_ = end;
  return count;
}

std::int64_t TMemoryStream::Seek(std::int64_t offset, TSeekOrigin origin) {
  const std::int64_t base = origin == soBeginning ? 0 : origin == soCurrent ? position_ : Size();
  position_ = std::max<std::int64_t>(0, base + offset);
  return position_;
}

void TMemoryStream::SetSize(std::int64_t size) {
  data_.resize(static_cast<std::size_t>(std::max<std::int64_t>(size, 0)));
  position_ = std::min(position_, Size());
}

void TMemoryStream::Clear() {
  data_.clear();
  position_ = 0;
}

void TMemoryStream::LoadFromStream(TStream& source) {
  source.SetPosition(0);
  data_.resize(static_cast<std::size_t>(source.Size()));
  source.ReadBuffer(data_.data(), Size(), "stream content");
  position_ = 0;
}

void TMemoryStream::SaveToStream(TStream& target) const { target.WriteBuffer(data_.data(), Size()); }

void TMemoryStream::LoadFromFile(const std::string& fileName) {
  TFileStream file(fileName, fmOpenRead);
  LoadFromStream(file);
}

void TMemoryStream::SaveToFile(const std::string& fileName) const { SaveBytesToFileAtomically(fileName, data_); }

// ---------------------------------------------------------------------------

TFileStream::TFileStream(const std::string& fileName, TFileMode mode) : fileName_(fileName) {
  static constexpr const char* kModes[] = {"w+b", "rb", "r+b", "r+b"};
  file_ = std::fopen(fileName.c_str(), kModes[mode]);
  if (!file_) throw EFOpenError("cannot open file \"" + fileName + "\": " + std::strerror(errno));
}

TFileStream::~TFileStream() {
  if (file_) std::fclose(file_);
}

std::int64_t TFileStream::Read(void* buffer, std::int64_t count) {
  if (count <= 0) return 0;
  std::fseek(file_, position_, SEEK_SET);
  const auto n = static_cast<std::int64_t>(std::fread(buffer, 1, static_cast<std::size_t>(count), file_));
  position_ += n;
  return n;
}

std::int64_t TFileStream::Write(const void* buffer, std::int64_t count) {
  if (count <= 0) return 0;
  std::fseek(file_, position_, SEEK_SET);
  const auto n = static_cast<std::int64_t>(std::fwrite(buffer, 1, static_cast<std::size_t>(count), file_));
  position_ += n;
  return n;
}

std::int64_t TFileStream::Seek(std::int64_t offset, TSeekOrigin origin) {
  const std::int64_t base = origin == soBeginning ? 0 : origin == soCurrent ? position_ : Size();
  position_ = std::max<std::int64_t>(0, base + offset);
  return position_;
}

std::int64_t TFileStream::Size() const {
  std::fflush(file_);
  const long here = std::ftell(file_);
  std::fseek(file_, 0, SEEK_END);
  const long size = std::ftell(file_);
  std::fseek(file_, here, SEEK_SET);
  return size;
}

void TFileStream::SetSize(std::int64_t size) {
  std::fflush(file_);
  if (ftruncate(fileno(file_), std::max<std::int64_t>(size, 0)) != 0)
    throw EWriteError("cannot resize file \"" + fileName_ + "\"");
  position_ = std::min(position_, Size());
}

void TFileStream::Flush() {
  if (std::fflush(file_) != 0) throw EWriteError("cannot write file \"" + fileName_ + "\"");
}

}  // namespace lumatrex
