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

}  // namespace
}  // namespace mirvel
