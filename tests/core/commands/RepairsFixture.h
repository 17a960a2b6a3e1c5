#pragma once

#include <gtest/gtest.h>

#include "core/commands/CommandRepairs.h"
#include "support/FakeInterface.h"
#include "support/FakeProcessRunner.h"
#include "support/TestData.h"

namespace mirvel {

/// Command repairs with the home folder /Users/x, fakes and settings of their own.
struct RepairsFixture : testing::Test {
  testdata::TemporaryFolder folder;
  Defaults defaults{folder.path() / "defaults.plist"};
  Localize localize{"en"};
  Commands commands;
  testdata::FakeInterface interface { defaults, localize };
  testdata::FakeWhich which;
  CommandRepairs repairs{defaults, commands, interface, which, localize, "/Users/x"};
};

}  // namespace mirvel
