// TUserData: an ordered list of key/value byte strings that an application
// attaches to a shape or to the canvas. The library stores and copies the
// pairs but never interprets them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lumatrex {

struct TUserDataRecord {
  std::string Key;
  std::string Value;
  friend bool operator==(const TUserDataRecord&, const TUserDataRecord&) = default;
};

using TArrUserDataRecord = std::vector<TUserDataRecord>;

// Records keep insertion order. Keys compare byte for byte (case-sensitive)
// and every lookup takes the first match. AddKeyandValue keeps keys unique;
// ReNameKey and SetUserDataRecord do not check, so duplicates can exist and
// are kept as they are.
class TUserData {
 public:
  // Appends (Key, Value) unless a record with Key exists (then false, no change).
  bool AddKeyandValue(const std::string& key, const std::string& value);
  // Sets the value of the first record with Key; false when there is none.
  bool ChangeValueByKey(const std::string& key, const std::string& value);
  // Removes the first record with Key, keeping the order of the others.
  bool DeleteRecordByKey(const std::string& key);
  // Gives the first record with OldKey the key NewKey, even when NewKey is
  // already used; false when OldKey is absent.
  bool ReNameKey(const std::string& oldKey, const std::string& newKey);
  // The key at 0-based position No; empty when No is out of range.
  std::string GetKeyByNo(std::int32_t no) const;
  // The value of the first record with Key; empty when there is none (a
  // missing key and an empty value look alike).
  std::string GetValueByKey(const std::string& key) const;
  std::int32_t GetCount() const { return static_cast<std::int32_t>(records_.size()); }
  void ClearAll() { records_.clear(); }
  // Replaces the whole list by a copy of Records, as it stands.
  void SetUserDataRecord(const TArrUserDataRecord& records) { records_ = records; }
  const TArrUserDataRecord& Records() const { return records_; }
  void Assign(const TUserData& source) { records_ = source.records_; }

  friend bool operator==(const TUserData&, const TUserData&) = default;

 private:
  TArrUserDataRecord::iterator Find(const std::string& key);
  TArrUserDataRecord::const_iterator Find(const std::string& key) const;

  TArrUserDataRecord records_;
};

}  // namespace lumatrex
