#include "persistence/user_data.h"

#include <algorithm>

namespace lumatrex {

TArrUserDataRecord::iterator TUserData::Find(const std::string& key) {
  return std::find_if(records_.begin(), records_.end(), [&](const auto& r) { return r.Key == key; });
}

TArrUserDataRecord::const_iterator TUserData::Find(const std::string& key) const {
  return std::find_if(records_.begin(), records_.end(), [&](const auto& r) { return r.Key == key; });
}

bool TUserData::AddKeyandValue(const std::string& key, const std::string& value) {
  if (Find(key) != records_.end()) return false;
  records_.push_back({key, value});
  return true;
}

bool TUserData::ChangeValueByKey(const std::string& key, const std::string& value) {
  const auto it = Find(key);
  if (it == records_.end()) return false;
  it->Value = value;
  return true;
}

bool TUserData::DeleteRecordByKey(const std::string& key) {
  const auto it = Find(key);
  if (it == records_.end()) return false;
  records_.erase(it);
  return true;
}

bool TUserData::ReNameKey(const std::string& oldKey, const std::string& newKey) {
  const auto it = Find(oldKey);
  if (it == records_.end()) return false;
  it->Key = newKey;
  return true;
}

std::string TUserData::GetKeyByNo(std::int32_t no) const {
  if (no < 0 || no >= GetCount()) return {};
  return records_[static_cast<std::size_t>(no)].Key;
}

std::string TUserData::GetValueByKey(const std::string& key) const {
  const auto it = Find(key);
  return it == records_.end() ? std::string() : it->Value;
}

}  // namespace lumatrex
