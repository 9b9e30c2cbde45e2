#include <gtest/gtest.h>

#include "persistence/user_data.h"

namespace lumatrex {
namespace {

TArrUserDataRecord Records(const TUserData& data) { return data.Records(); }

TEST(TUserData, AddingAnExistingKeyKeepsTheFirstValueAndKeysCompareByteForByte) {
  TUserData data;
  EXPECT_TRUE(data.AddKeyandValue("a", "1"));
  EXPECT_FALSE(data.AddKeyandValue("a", "2"));
  EXPECT_EQ(Records(data), (TArrUserDataRecord{{"a", "1"}}));
  data.ClearAll();
  EXPECT_TRUE(data.AddKeyandValue("Key", "upper"));  // keys compare byte for byte
  EXPECT_TRUE(data.AddKeyandValue("key", "lower"));
  EXPECT_TRUE(data.AddKeyandValue("", ""));
  EXPECT_EQ(data.GetValueByKey("key"), "lower");
  EXPECT_EQ(data.GetCount(), 3);
}

TEST(TUserData, RenameChangeAndDeleteActOnTheFirstMatchAndMayMakeDuplicates) {
  TUserData data;
  data.AddKeyandValue("a", "first");
  data.AddKeyandValue("b", "second");
  EXPECT_TRUE(data.ReNameKey("b", "a"));
  EXPECT_EQ(Records(data), (TArrUserDataRecord{{"a", "first"}, {"a", "second"}}));
  EXPECT_EQ(data.GetValueByKey("a"), "first");
  EXPECT_FALSE(data.ReNameKey("missing", "x"));
  data.SetUserDataRecord({{"k", "1"}, {"k", "2"}});
  EXPECT_TRUE(data.ChangeValueByKey("k", "changed"));
  EXPECT_EQ(Records(data), (TArrUserDataRecord{{"k", "changed"}, {"k", "2"}}));
  EXPECT_TRUE(data.DeleteRecordByKey("k"));
  EXPECT_EQ(Records(data), (TArrUserDataRecord{{"k", "2"}}));
  EXPECT_FALSE(data.ChangeValueByKey("none", "x"));
  EXPECT_FALSE(data.DeleteRecordByKey("none"));
}

}  // namespace
}  // namespace lumatrex
