#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/editor/Browser.h"
#include "core/jobfile/JobFile.h"
#include "core/locale/Localize.h"
#include "core/schedule/NumberText.h"

namespace mirvel {

/// A browser that is connected to a record in the way of the editor's sections.
class EditedBrowser {
 public:
  /// The start is the value of the key; null for a job without it.
  EditedBrowser(const std::string& key, const std::optional<propertylist::Value>& start,
                const std::string& locale = "en")
      : m_localize(locale),
        m_numbers(locale),
        m_plist(jobfile::loaded(start ? jobfile::fileWith(key, *start) : jobfile::Dict{{"Label", "job"}})),
        browser(*browserSchema(key), m_localize, m_numbers,
                [this](Editing::Step step, const std::string& place) { edit(step, place); }) {
    fill();
  }
  EditedBrowser(const EditedBrowser&) = delete;
  EditedBrowser& operator=(const EditedBrowser&) = delete;

  std::optional<propertylist::Value> saved() const { return m_plist.savedValue(browser.schema().key); }
  jobfile::Plist& plist() { return m_plist; }
  bool isUnfinished() const { return !m_unfinished.isEmpty(); }
  /// The reason why the tree can't be saved, after its place; empty if it can.
  std::string refusal() const {
    const auto invalid = browser.refuse();
    return invalid ? invalid->message + ": " + invalid->reason : "";
  }
  void fill() { browser.fill(m_plist, m_unfinished); }
  void undo() {
    m_plist = std::move(m_steps.back().first);
    m_unfinished = std::move(m_steps.back().second);
    m_steps.pop_back();
    fill();
  }
  std::size_t stepCount() const { return m_steps.size(); }

  /// Selects the items with these titles, and returns the number of the column after them.
  std::size_t go(const std::vector<std::string>& titles) {
    browser.select(0, std::nullopt);
    for (std::size_t column = 0; column < titles.size(); ++column) browser.select(column, row(column, titles[column]));
    return titles.size();
  }
  std::size_t row(std::size_t column, const std::string& title) const {
    const std::size_t count = browser.items(column).size();
    for (std::size_t row = 0; row < count; ++row) {
      if (browser.title(column, row) == title) return row;
    }
    throw std::runtime_error("no item " + title);
  }
  /// Adds an item below those with these titles, and gives it a name unless that is fixed.
  void add(const std::vector<std::string>& below, const std::string& offer, const std::string& name = {}) {
    const std::size_t column = go(below);
    const auto offers = browser.offers(column);
    const auto found =
        std::find_if(offers.begin(), offers.end(), [&](const auto& each) { return each.title == offer; });
    if (found == offers.end()) throw std::runtime_error("no offer " + offer);
    const auto row = browser.add(column, static_cast<std::size_t>(found - offers.begin()));
    if (row && !name.empty()) browser.rename(column, *row, name);
  }
  void rename(const std::vector<std::string>& path, const std::string& name) {
    const std::size_t column = go(path) - 1;
    browser.rename(column, *browser.selected(column), name);
  }
  void remove(const std::vector<std::string>& path) {
    const std::size_t column = go(path) - 1;
    browser.remove(column, *browser.selected(column));
  }
  void setType(const std::vector<std::string>& path, BrowserItem::Type type) {
    const std::size_t column = go(path) - 1;
    browser.setType(column, *browser.selected(column), type);
  }
  BrowserPreview preview(const std::vector<std::string>& path) {
    go(path);
    const auto preview = browser.preview();
    if (!preview) throw std::runtime_error("no preview");
    return *preview;
  }
  void type(const std::vector<std::string>& path, const std::string& text) {
    browser.enterText(preview(path).item, text);
  }
  void setOn(const std::vector<std::string>& path, bool isOn) { browser.setOn(preview(path).item, isOn); }
  void setStrings(const std::vector<std::string>& path, const std::vector<std::string>& strings) {
    browser.setStrings(preview(path).item, strings);
  }
  /// "column by column", with the selected items in brackets: "a [b] | [c]".
  std::string shown() const {
    std::string text;
    for (std::size_t column = 0; column < browser.columnCount(); ++column) {
      if (column > 0) text += " | ";
      for (std::size_t row = 0; row < browser.items(column).size(); ++row) {
        const std::string title = browser.title(column, row);
        text += (row > 0 ? " " : "") + (browser.selected(column) == row ? '[' + title + ']' : title);
      }
    }
    return text;
  }

 private:
  void edit(Editing::Step step, const std::string& place) {
    const bool joins = step == Editing::Step::Continues && !m_steps.empty() && m_place == place;
    if (!joins) m_steps.emplace_back(m_plist.clone(), m_unfinished);
    m_place = step == Editing::Step::Continues ? place : "";
    browser.write(m_plist, m_unfinished);
    fill();
  }

  Localize m_localize;
  Scheduled::NumberText m_numbers;
  jobfile::Plist m_plist;
  Unfinished m_unfinished;
  std::vector<std::pair<jobfile::Plist, Unfinished>> m_steps;
  std::string m_place;

 public:
  Browser browser;
};

}  // namespace mirvel
