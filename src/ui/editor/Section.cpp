#include "ui/editor/Section.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "core/editor/FieldSearch.h"

namespace mirvel::ui {

bool Section::narrow(const FieldSearch& search) {
  return search.isEmpty();
}

void Section::takeProblems(std::vector<FieldProblem>& problems) {
  for (const ProblemPlace& place : m_problemPlaces) {
    const auto others = std::stable_partition(problems.begin(), problems.end(),
                                              [&](const FieldProblem& problem) { return place.isOurs(problem.key); });
    std::vector<FieldProblem> ours(std::make_move_iterator(problems.begin()), std::make_move_iterator(others));
    problems.erase(problems.begin(), others);
    const bool showsKeys = place.names == KeyNames::Shown;
    place.view->setProblems(showsKeys ? withKeys(std::move(ours), isRightToLeft()) : std::move(ours));
  }
}

ProblemsView* Section::makeProblemsView(std::function<bool(const std::string& key)> isOurs, KeyNames names) {
  auto* const view = new ProblemsView;
  m_problemPlaces.push_back({.isOurs = std::move(isOurs), .view = view, .names = names});
  return view;
}

}  // namespace mirvel::ui
