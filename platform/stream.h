// Byte streams: an abstract TStream with exact-size reads and writes, an
// in-memory stream and a file stream. Plain C++ (no Qt).
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace lumatrex {

// ---------------------------------------------------------------------------
// Errors
// ---------------------------------------------------------------------------

// Base of every stream error.
class EStreamError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A read that could not be satisfied: Offset() is the stream position at which
// the read began, What() the message naming what was read there.
class EReadError : public EStreamError {
 public:
  EReadError(std::int64_t offset, const std::string& what);
  std::int64_t Offset() const { return offset_; }

 private:
  std::int64_t offset_;
};

// A write that could not be completed (disk full, read-only stream).
class EWriteError : public EStreamError {
 public:
  using EStreamError::EStreamError;
};

// A file that could not be opened or created.
class EFOpenError : public EStreamError {
 public:
  using EStreamError::EStreamError;
};

// ---------------------------------------------------------------------------
// TStream
// ---------------------------------------------------------------------------

enum TSeekOrigin : std::uint8_t {
  soBeginning,
  soCurrent,
  soEnd,
};

class TStream {
 public:
  virtual ~TStream() = default;

  // Reads up to Count bytes; returns how many were read (0 at the end).
  virtual std::int64_t Read(void* buffer, std::int64_t count) = 0;
  // Writes up to Count bytes; returns how many were written.
  virtual std::int64_t Write(const void* buffer, std::int64_t count) = 0;
  // Moves the position; returns the new position. Positions before 0 clamp to 0.
  virtual std::int64_t Seek(std::int64_t offset, TSeekOrigin origin) = 0;
  virtual std::int64_t Size() const = 0;
  // Truncates or extends the stream; the position is clamped to the new size.
  virtual void SetSize(std::int64_t size) = 0;
  // A hint that about Count bytes are about to be written at the position:
  // a stream may make room for them at once. Does nothing by default.
  virtual void Expect(std::int64_t /*count*/) {}

  std::int64_t Position() const { return position_; }
  void SetPosition(std::int64_t position) { Seek(position, soBeginning); }
  std::int64_t Remaining() const { return Size() - position_; }

  // Reads exactly Count bytes or throws EReadError naming the start offset;
  // What describes the field being read, for the error message.
  void ReadBuffer(void* buffer, std::int64_t count, const char* what = "data");
  // Writes exactly Count bytes or throws EWriteError.
  void WriteBuffer(const void* buffer, std::int64_t count);
  // Copies Count bytes from Source's current position; Count 0 copies the whole
  // of Source from its start. Returns the number of bytes copied.
  std::int64_t CopyFrom(TStream& source, std::int64_t count);

 protected:
  std::int64_t position_ = 0;
};

// ---------------------------------------------------------------------------
// TMemoryStream
// ---------------------------------------------------------------------------

// Bytes in memory, in a buffer that doubles as it grows (Expect makes room
// at once, so that a large save copies nothing it has already written).
class TMemoryStream : public TStream {
 public:
  TMemoryStream() = default;
  explicit TMemoryStream(std::span<const std::uint8_t> bytes);
  TMemoryStream(const TMemoryStream& other);
  TMemoryStream& operator=(const TMemoryStream& other);
  TMemoryStream(TMemoryStream&& other) noexcept;
  TMemoryStream& operator=(TMemoryStream&& other) noexcept;
  ~TMemoryStream() override;

  std::int64_t Read(void* buffer, std::int64_t count) override;
  std::int64_t Write(const void* buffer, std::int64_t count) override;
  std::int64_t Seek(std::int64_t offset, TSeekOrigin origin) override;
  std::int64_t Size() const override { return size_; }
  void SetSize(std::int64_t size) override;
  void Expect(std::int64_t count) override;

  const std::uint8_t* Memory() const { return data_; }
  // The content in place, valid until the next write or resize.
  std::span<const std::uint8_t> View() const { return {data_, static_cast<std::size_t>(size_)}; }
  // A copy of the content.
  std::vector<std::uint8_t> Bytes() const { return {data_, data_ + size_}; }
  void Clear();
  // Replaces the content with the whole of Source (from its start); position 0.
  void LoadFromStream(TStream& source);
  void SaveToStream(TStream& target) const;
  void LoadFromFile(const std::string& fileName);
  void SaveToFile(const std::string& fileName) const;

 private:
  // Makes room for at least Capacity bytes; throws std::bad_alloc when the
  // memory is not there (nothing written so far is lost then).
  void Reserve(std::int64_t capacity);
  void ZeroGapBefore(std::int64_t offset);

  std::uint8_t* data_ = nullptr;
  std::int64_t size_ = 0;
  std::int64_t capacity_ = 0;
};

// ---------------------------------------------------------------------------
// TFileStream
// ---------------------------------------------------------------------------

enum TFileMode : std::uint8_t {
  fmCreate,         // create or truncate, read and write
  fmOpenRead,       // existing file, read only
  fmOpenWrite,      // existing file, write only
  fmOpenReadWrite,  // existing file, read and write
};

// A file read and written through one buffer of its own, so that the many
// small reads and writes of the file formats cost a copy each, not a system
// call (let alone a seek). The size is kept, not asked of the system.
// Buffered writes reach the file on Flush, a seek away from them, a read, a
// resize or destruction; a write the system refuses throws EWriteError then
// (the destructor cannot throw: call Flush to learn of it).
class TFileStream : public TStream {
 public:
  // Throws EFOpenError when the file cannot be opened in the mode asked.
  TFileStream(const std::string& fileName, TFileMode mode);
  ~TFileStream() override;
  TFileStream(const TFileStream&) = delete;
  TFileStream& operator=(const TFileStream&) = delete;

  std::int64_t Read(void* buffer, std::int64_t count) override;
  // Writes nothing (returns 0) on a stream opened for reading only.
  std::int64_t Write(const void* buffer, std::int64_t count) override;
  std::int64_t Seek(std::int64_t offset, TSeekOrigin origin) override;
  std::int64_t Size() const override { return size_; }
  void SetSize(std::int64_t size) override;
  const std::string& FileName() const { return fileName_; }
  // Hands buffered writes to the operating system; throws EWriteError on failure.
  void Flush();

 private:
  // The buffer holds file bytes [bufferStart_, bufferStart_ + bufferLength_):
  // read ahead, or written and not yet flushed when dirty_.
  void Fill();
  void DropBuffer();

  std::string fileName_;
  int fd_ = -1;
  bool writable_ = false;
  std::int64_t size_ = 0;
  std::vector<std::uint8_t> buffer_;
  std::int64_t bufferStart_ = 0;
  std::int64_t bufferLength_ = 0;
  bool dirty_ = false;
};

// A stream that replaces FileName when committed, written as the bytes come
// through a temporary file beside it: writing and syncing overlap whatever
// makes the bytes, and until Commit (also when the stream is destroyed
// without it, or anything before failed) FileName keeps its old content and
// the temporary file is removed. Positions may go back over what was written
// (a length patched in after its content); nothing can be read. Throws as
// SaveBytesToFileAtomically: EFOpenError from the constructor, EWriteError
// from a write the system refuses (its message says why) and from Commit.
class TAtomicFileStream : public TStream {
 public:
  explicit TAtomicFileStream(const std::string& fileName);
  ~TAtomicFileStream() override;
  TAtomicFileStream(const TAtomicFileStream&) = delete;
  TAtomicFileStream& operator=(const TAtomicFileStream&) = delete;

  // Reads nothing (returns 0): the stream is for saving.
  std::int64_t Read(void* buffer, std::int64_t count) override;
  std::int64_t Write(const void* buffer, std::int64_t count) override;
  std::int64_t Seek(std::int64_t offset, TSeekOrigin origin) override;
  std::int64_t Size() const override { return bufferStart_ + bufferLength_; }
  void SetSize(std::int64_t size) override;
  // Writes what is buffered, syncs it to disk and renames the file over
  // FileName. Nothing can be written after.
  void Commit();

 private:
  class TTemporary;
  // Hands the buffer to the system and starts it on its way to the disk.
  void WriteOut();
  // Writes Count bytes at Offset through the system; throws on failure.
  void WriteThrough(const std::uint8_t* bytes, std::int64_t count, std::int64_t offset);

  std::string fileName_;
  std::string target_;
  std::unique_ptr<TTemporary> temp_;
  // The buffer holds the file's last bytes, [bufferStart_, Size()); those
  // before are with the system.
  std::vector<std::uint8_t> buffer_;
  std::int64_t bufferStart_ = 0;
  std::int64_t bufferLength_ = 0;
};

// Replaces FileName by Bytes through a temporary file in the same folder that
// is renamed over it once written and synced to disk, so a failed save leaves
// an existing file as it was. A symbolic link is followed. Throws EFOpenError
// when the target exists but is not a regular file (device, FIFO, folder) or
// the temporary file cannot be created, EWriteError when writing, syncing or
// renaming fails; the message names the file and the reason in plain words
// ("the disk is full", "permission denied", "the folder does not exist").
void SaveBytesToFileAtomically(const std::string& fileName, std::span<const std::uint8_t> bytes);

}  // namespace lumatrex
