#include <gtest/gtest.h>

#include <QListView>
#include <QScrollArea>

#include "ui/Misfits.h"
#include "ui/editor/EditorFixture.h"

namespace mirvel::ui {
namespace {

/// A job with a value, of an ordinary length, for each field of the editor.
propertylist::Dictionary everyKey() {
  using propertylist::Array;
  using propertylist::Dictionary;
  const Dictionary conditions{{"Crashed", true},
                              {"SuccessfulExit", false},
                              {"PathState", Dictionary{{"/tmp/a", true}}},
                              {"OtherJobEnabled", Dictionary{{"org.other", false}}}};
  const Dictionary limits{{"CPU", 60}, {"NumberOfProcesses", 20}, {"ResidentSetSize", 1048576}};
  const Dictionary socket{{"SockServiceName", "8080"}, {"SockType", "stream"}, {"SockPassive", true}};
  const Dictionary event{
      {"Notification", "disk.ready"}, {"Count", 3}, {"Names", Array{"a", "b"}}, {"Since", propertylist::Date{1}}};
  return {{"ProgramArguments", Array{"/bin/echo", "hello"}},
          {"KeepAlive", conditions},
          {"StartCalendarInterval", Dictionary{{"Hour", 3}, {"Minute", 15}}},
          {"StandardOutPath", "/tmp/out.log"},
          {"StandardErrorPath", "/tmp/err.log"},
          {"StandardInPath", "/dev/null"},
          {"WorkingDirectory", "/tmp"},
          {"QueueDirectories", Array{"/tmp/queue"}},
          {"WatchPaths", Array{"/tmp/watched", "/etc/hosts"}},
          {"Nice", 10},
          {"ThrottleInterval", 30},
          {"ProcessType", "Background"},
          {"LimitLoadToSessionType", Array{"Aqua", "Background"}},
          {"LimitLoadToHardware", Dictionary{{"model", Array{"VMware7,1"}}}},
          {"SoftResourceLimits", limits},
          {"HardResourceLimits", limits},
          {"ExitTimeOut", 5},
          {"Umask", 63},
          {"EnvironmentVariables", Dictionary{{"PATH", "/usr/bin:/bin"}, {"API_TOKEN", "abc"}}},
          {"Sockets", Dictionary{{"Listeners", socket}, {"Both", Array{socket, socket}}}},
          {"MachServices", Dictionary{{"org.a.service", true}, {"org.b", Dictionary{{"ResetAtClose", true}}}}},
          {"LaunchEvents", Dictionary{{"com.apple.notifyd.matching", Dictionary{{"ready", event}}}}},
          {"Debug", true},
          {"TimeOut", 7},
          {"Unheard", Array{"of", 1}}};
}

class EditorLayoutTest : public EditorFixture {
 protected:
  ~EditorLayoutTest() override { QApplication::setLayoutDirection(Qt::LeftToRight); }

  void resizeDetails(int width) {
    window().details().setMinimumWidth(width);
    window().details().setMaximumWidth(width);
    window().resize(std::max(width + 700, 1100), 900);
    testdata::settle();
  }
  /// The path to a leaf with each kind of value, after the key of the browser.
  static std::vector<std::vector<std::string>> leaves() {
    return {{"Sockets", "Listeners", "SockServiceName"},
            {"Sockets", "Listeners", "SockPassive"},
            {"Sockets", "Both", "2", "SockType"},
            {"MachServices", "org.b", "ResetAtClose"},
            {"LaunchEvents", "com.apple.notifyd.matching", "ready", "Names"},
            {"LaunchEvents", "com.apple.notifyd.matching", "ready", "Since"}};
  }
  /// Selects the items of a path in the columns of a browser, of which the first has its name.
  void select(const std::vector<std::string>& path) {
    for (std::size_t column = 1; column < path.size(); ++column) {
      const auto lists = window().details().currentWidget()->findChildren<QListView*>();
      const auto list = std::find_if(lists.begin(), lists.end(), [&](const QListView* each) {
        return each->isVisible() && each->accessibleName() == qt(path[column - 1]);
      });
      ASSERT_NE(list, lists.end()) << path[column - 1];
      const auto rows = (*list)->model()->match((*list)->model()->index(0, 0), Qt::DisplayRole, qt(path[column]), 1,
                                                Qt::MatchExactly);
      ASSERT_FALSE(rows.isEmpty()) << path[column];
      (*list)->setCurrentIndex(rows.front());
      testdata::settle();
    }
  }
  void expectAllFits(const std::string& place) {
    EXPECT_GT(testdata::expectAllFits(*window().details().currentWidget(), place), 100);
  }
};

TEST_F(EditorLayoutTest, NothingIsCutOffInAnyDirectionAtAnyWidth) {
  for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    QApplication::setLayoutDirection(direction);
    edit(everyKey());
    for (const int width : {420, 700}) {
      resizeDetails(width);
      const std::string place = (direction == Qt::RightToLeft ? "right to left, " : "") + std::to_string(width);
      EXPECT_EQ(window().details().width(), width);
      expectAllFits(place);
      for (const auto& path : leaves()) {
        select(path);
        expectAllFits(place + ", " + path.back());
      }
    }
    program().editing.setUnsavedChanges(false);
    program().shell.detail->showDisplay();
  }
}

/// The controls in the order of Tab, beginning with the first one of the sections.
QWidgetList tabOrder(QWidget& pane) {
  QWidgetList result;
  for (QWidget* next = pane.nextInFocusChain(); next != &pane; next = next->nextInFocusChain()) {
    const bool isStop = (next->focusPolicy() & Qt::TabFocus) != 0 && !next->focusProxy();
    if (isStop && next->isVisible() && next->isEnabled() && pane.isAncestorOf(next)) result.append(next);
  }
  return result;
}

/// Whether a widget is read after another one: below it or, in the same line, on the side to which lines run.
bool isReadAfter(const QWidget& before, const QWidget& after, const QWidget& pane) {
  const auto rectOf = [&pane](const QWidget& widget) {
    return QRect(widget.mapTo(&pane, QPoint(0, 0)), widget.size());
  };
  const QRect first = rectOf(before);
  const QRect second = rectOf(after);
  if (second.top() >= first.bottom()) return true;
  const bool isBeside = second.bottom() > first.top();
  const bool isFurther = pane.isRightToLeft() ? second.right() <= first.left() : second.left() >= first.right();
  return isBeside && isFurther;
}

TEST_F(EditorLayoutTest, TheFocusMovesInReadingOrder) {
  for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    QApplication::setLayoutDirection(direction);
    edit(everyKey());
    resizeDetails(700);
    QWidget& pane = *window().details().currentWidget()->findChild<QScrollArea*>()->widget();
    const QWidgetList stops = tabOrder(pane);
    EXPECT_GT(stops.size(), 80);
    for (qsizetype i = 1; i < stops.size(); ++i) {
      EXPECT_TRUE(isReadAfter(*stops[i - 1], *stops[i], pane))
          << utf8(stops[i - 1]->accessibleName()) << " before " << utf8(stops[i]->accessibleName());
    }
    program().editing.setUnsavedChanges(false);
    program().shell.detail->showDisplay();
  }
}

}  // namespace
}  // namespace mirvel::ui
