#include "core/scripts/SyntaxHelper.h"

#include <gtest/gtest.h>

#include <utility>

namespace mirvel {
namespace {

using enum SyntaxType;

TEST(SyntaxHelperTest, TheFirstLineDeterminesTheLanguage) {
  const std::pair<const char*, std::optional<SyntaxType>> table[] = {
      {"#!/bin/zsh\n\n", shell},
      {"#!/bin/SH", shell},
      {"#! /bin/bash -e\r\n", shell},
      {"#!/usr/bin/perl -w\nprint", perl},
      {"#!/opt/x/python3.12", python},
      {"#!/opt/x/ruby-3.2", ruby},
      {"#!/usr/bin/env ruby", ruby},
      {"#!/usr/bin/env -S -i A=b swift -O", swift},
      {"#!/usr/bin/env php8", php},
      {"#!/usr/bin/env", none},
      {"#!", none},
      {"#!/usr/bin/osascript", appleScript},
      {"#!/usr/bin/pythonista", none},
      {"#!/home/python/tool", none},
      {"<?php\n", php},
      {"<?\n", php},
      {"<?XML version='1.0'?>", xml},
      {"%!PS-Adobe", none},
      {"% a comment", tex},
      {"", std::nullopt},
      {"echo hi\n#!/bin/sh", std::nullopt},
      {" #!/bin/sh", std::nullopt},
  };
  for (const auto& [text, syntax] : table) EXPECT_EQ(SyntaxHelper::syntaxOfText(text), syntax) << text;
}

TEST(SyntaxHelperTest, TheTextOfAFileCountsMoreThanItsExtension) {
  struct Row {
    const char* file;
    const char* text;
    SyntaxType syntax;
  };
  const Row table[] = {
      {"/x/a.py", "", python},
      {"/x/a.PL", "use strict;", perl},
      {"/x/a.command", "echo", shell},
      {"/x/a.py", "#!/bin/sh\n", shell},
      {"/x/a.py", "#!/opt/unknown\n", none},
      {"/x/a.plist", "", xml},
      {"/x/a", "", none},
      {"/x.py/a", "", none},
      {"/x/.sh", "", none},
      {"/x/a.", "", none},
      {"/x/a.tex", "%!PS", tex},
      {"/x/a", "<?php", php},
  };
  for (const Row& row : table) {
    EXPECT_EQ(SyntaxHelper::createSyntaxType(URL::file(row.file), row.text), row.syntax) << row.file << row.text;
  }
  EXPECT_EQ(SyntaxHelper::determineSyntaxFromLowercasedFirstLine("#!/bin/zsh"), shell);
  EXPECT_EQ(SyntaxHelper::determineSyntaxFromLowercasedFirstLine("echo"), none);
}

}  // namespace
}  // namespace mirvel
