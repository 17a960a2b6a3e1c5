#include "core/jobfile/MergeIntoFile.h"

#include <gtest/gtest.h>

#include "core/jobfile/JobFile.h"

namespace mirvel::jobfile {
namespace {

TEST(MergeIntoFileTest, OnlyEditsComeFromTheRecord) {
  const Dict x{{"x", 1}};
  const Dict odd{{"x", 1}, {"Odd", "kept"}};
  const Dict other{{"x", 2}, {"Other", "kept"}};
  const struct {
    const char* what;
    propertylist::Value file, read, edited, merged;
  } table[] = {
      {"another form of the same value", 10.0, 10, 10, 10.0},
      {"an edited value", 10.0, 10, 11, 11},
      {"another type", odd, x, true, true},
      {"an entry that isn't known", odd, x, Dict{{"x", 5}}, Dict{{"x", 5}, {"Odd", "kept"}}},
      {"a new entry", odd, x, Dict{{"x", 1}, {"y", 2}}, Dict{{"x", 1}, {"y", 2}, {"Odd", "kept"}}},
      {"a removed entry", odd, x, Dict{}, Dict{{"Odd", "kept"}}},
      {"an entry that takes the place of one that wasn't read", Dict{{"x", "bad"}, {"y", "bad"}}, Dict{},
       Dict{{"x", 1}}, Dict{{"x", 1}, {"y", "bad"}}},
      {"an entry that the record adds by itself", Dict{}, x, x, Dict{}},
      {"deep below", Dict{{"a", Dict{{"b", odd}}}}, Dict{{"a", Dict{{"b", x}}}},
       Dict{{"a", Dict{{"b", Dict{{"x", 3}}}}}}, Dict{{"a", Dict{{"b", Dict{{"x", 3}, {"Odd", "kept"}}}}}}},
      {"elements in their places", List{odd, other}, List{x, Dict{{"x", 2}}}, List{x, Dict{{"x", 3}}},
       List{odd, Dict{{"x", 3}, {"Other", "kept"}}}},
      {"an element at the end", List{odd}, List{x}, List{x, x}, List{odd, x}},
      {"an element at the beginning", List{odd}, List{x}, List{Dict{{"x", 9}}, x}, List{Dict{{"x", 9}}, odd}},
      {"an element between", List{odd, other}, List{x, Dict{{"x", 2}}}, List{x, 7, Dict{{"x", 2}}},
       List{odd, 7, other}},
      {"a removed element", List{odd, other}, List{x, Dict{{"x", 2}}}, List{Dict{{"x", 2}}}, List{other}},
      {"all elements removed", List{odd, other}, List{x, Dict{{"x", 2}}}, List{}, List{}},
      {"one value becomes several", odd, x, List{x, Dict{{"x", 2}}}, List{odd, Dict{{"x", 2}}}},
      {"several become one", List{odd, other}, List{x, Dict{{"x", 2}}}, Dict{{"x", 2}}, other},
      {"a list that was read in part", List{"a", odd}, List{x}, List{Dict{{"x", 2}}}, List{Dict{{"x", 2}}}},
  };
  for (const auto& row : table) {
    EXPECT_EQ(
        propertylist::Value(mergeIntoFile(Dict{{"key", row.file}}, Dict{{"key", row.read}}, Dict{{"key", row.edited}})),
        propertylist::Value(Dict{{"key", row.merged}}))
        << row.what;
  }
}

}  // namespace
}  // namespace mirvel::jobfile
