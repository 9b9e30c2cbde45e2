#include <gtest/gtest.h>

#include "persistence/user_data.h"

namespace lumatrex {
namespace {

TArrUserDataRecord Records(const TUserData& data) { return data.Records(); }

TEST(TUserData, AddingAnExistingKeyKeepsTheFirstValueAndReturnsFalse) {
  TUserData data;
  EXPECT_TRUE(data.AddKeyandValue("a", "1"));
  EXPECT_FALSE(data.AddKeyandValue("a", "2"));
  EXPECT_EQ(Records(data), (TArrUserDataRecord{{"a", "1"}}));
}

TEST(TUserData, KeysCompareByteForByte) {
  TUserData data;
  EXPECT_TRUE(data.AddKeyandValue("Key", "upper"));
  EXPECT_TRUE(data.AddKeyandValue("key", "lower"));
  EXPECT_TRUE(data.AddKeyandValue("", ""));
  EXPECT_EQ(data.GetValueByKey("key"), "lower");
  EXPECT_EQ(data.GetCount(), 3);
}

TEST(TUserData, GetKeyByNoOutOfRangeIsEmpty) {
  TUserData data;
  data.AddKeyandValue("a", "1");
  EXPECT_EQ(data.GetKeyByNo(0), "a");
  EXPECT_EQ(data.GetKeyByNo(-1), "");
  EXPECT_EQ(data.GetKeyByNo(data.GetCount()), "");
}

TEST(TUserData, RenameOntoAnExistingKeyCreatesADuplicateAndLookupsTakeTheFirst) {
  TUserData data;
  data.AddKeyandValue("a", "first");
  data.AddKeyandValue("b", "second");
  EXPECT_TRUE(data.ReNameKey("b", "a"));
  EXPECT_EQ(Records(data), (TArrUserDataRecord{{"a", "first"}, {"a", "second"}}));
  EXPECT_EQ(data.GetValueByKey("a"), "first");
  EXPECT_FALSE(data.ReNameKey("missing", "x"));
}

TEST(TUserData, ChangeAndDeleteActOnTheFirstMatchOnly) {
  TUserData data;
  data.SetUserDataRecord({{"k", "1"}, {"k", "2"}});
  EXPECT_TRUE(data.ChangeValueByKey("k", "changed"));
  EXPECT_EQ(Records(data), (TArrUserDataRecord{{"k", "changed"}, {"k", "2"}}));
  EXPECT_TRUE(data.DeleteRecordByKey("k"));
  EXPECT_EQ(Records(data), (TArrUserDataRecord{{"k", "2"}}));
  EXPECT_FALSE(data.ChangeValueByKey("none", "x"));
  EXPECT_FALSE(data.DeleteRecordByKey("none"));
}

TEST(TUserData, DeletingTheMiddleRecordKeepsTheOrderOfTheOthers) {
  TUserData data;
  data.AddKeyandValue("a", "1");
  data.AddKeyandValue("b", "2");
  data.AddKeyandValue("c", "3");
  EXPECT_TRUE(data.DeleteRecordByKey("b"));
  EXPECT_EQ(Records(data), (TArrUserDataRecord{{"a", "1"}, {"c", "3"}}));
}

TEST(TUserData, MissingKeyAndEmptyValueLookAlike) {
  TUserData data;
  data.AddKeyandValue("empty", "");
  EXPECT_EQ(data.GetValueByKey("empty"), "");
  EXPECT_EQ(data.GetValueByKey("absent"), "");
}

TEST(TUserData, AssignCopiesAndClearAllEmpties) {
  TUserData source;
  source.SetUserDataRecord({{"x", "1"}, {"x", "2"}});
  TUserData copy;
  copy.AddKeyandValue("old", "gone");
  copy.Assign(source);
  EXPECT_EQ(copy, source);
  source.ClearAll();
  EXPECT_EQ(source.GetCount(), 0);
  EXPECT_EQ(copy.GetCount(), 2);
}

}  // namespace
}  // namespace lumatrex
