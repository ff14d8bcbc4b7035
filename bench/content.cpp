#include "bench/content.h"

#include <array>
#include <random>
#include <string_view>
#include <type_traits>

#include "vndoc6/automation/text.h"

namespace vndoc6::bench {
namespace {

constexpr size_t kTasks = 2;

template <class String>
class Maker {
 public:
  StepContent<String> Step(size_t number) {
    StepContent<String> step;
    step.key = Key();
    step.label = Said("Check ", number);
    step.description = Said("What has to be verified before approval no. ", number);
    step.instructions = Said("Compare the order with the café's offer ", number);
    step.duration = Said("", number % 30);
    step.index = static_cast<int32_t>(number + 1);
    step.assign_type = Below(4);
    step.assign_to = Below(100);
    step.due_date_type = Below(3);
    step.auto_complete = number % 2 == 0;
    Fill(step.figure, number);
    for (size_t i = 0; i < kTasks; ++i) step.tasks.push_back(Task(i));
    return step;
  }

  LinkContent<String> Link(const std::vector<StepContent<String>>& steps, size_t number) {
    LinkContent<String> link;
    link.key = Key();
    link.text = Said("when ", number);
    link.from = number % steps.size();
    link.to = (number * 7 + 1) % steps.size();
    link.origin = steps[link.from].key;
    link.destination = steps[link.to].key;
    Fill(link.line);
    return link;
  }

 private:
  static String Of(std::string_view text) {
    if constexpr (std::is_same_v<String, Text>) {
      return automation::FromUtf8(text);
    } else {
      return String(text);
    }
  }
  static String Said(std::string text, size_t number) { return Of(text + std::to_string(number)); }
  int32_t Below(int32_t limit) { return static_cast<int32_t>(random_() % uint32_t(limit)); }

  String Key() {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string key = "{xxxxxxxx-xxxx-4xxx-8xxx-xxxxxxxxxxxx}";
    for (char& c : key) {
      if (c == 'x') c = kDigits[random_() % kDigits.size()];
    }
    return Of(key);
  }

  TaskContent<String> Task(size_t position) {
    TaskContent<String> task;
    task.key = Key();
    task.name = Said("Enter amount ", position);
    task.description = Said("Into the ledger, column ", position);
    task.type = Below(5);
    task.module = Below(9);
    task.order = static_cast<int32_t>(position + 1);
    task.data = Said("http://ledger.example/entry?id=", random_() % 100000);
    return task;
  }

  void Fill(FontContent<String>& font) {
    font.name = Of("Tahoma");
    font.size = 8 + Below(5);
    font.bold = Below(4) == 0;
  }
  void Fill(FigureContent<String>& figure, size_t number) {
    Fill(static_cast<FontContent<String>&>(figure));
    figure.figure_key = Key();
    figure.tooltip_text = Said("Approval ", number);
    figure.left = static_cast<float>(number % 20) * 1800;
    figure.top = static_cast<float>(number / 20) * 1200 + 0.5f;
    figure.width = 1200;
    figure.height = 600;
    figure.shape = static_cast<EnumVantrelShapes>(Below(10));
    figure.fill_colour = Below(0x1000000);
    figure.draw_width = 1;
    figure.alignment = 7;
    figure.back_mode = 5;
    figure.picture_position = 9;
    figure.selectable = figure.scrollable_x = figure.scrollable_y = true;
    figure.sizeable_x = figure.sizeable_y = figure.moveable_x = figure.moveable_y = true;
    figure.z_order_index = static_cast<int32_t>(number);
  }
  void Fill(LineContent<String>& line) {
    Fill(static_cast<FontContent<String>&>(line));
    line.arrow_dest = 3;
    line.back_mode = 2;
    line.draw_width = 1;
    line.draw_colour = Below(0x1000000);
    line.logical = line.selectable = line.stretchable = true;
    line.show_jump = -1;
    for (auto* const coordinate : {&line.orig_x, &line.orig_y, &line.dest_x, &line.dest_y}) {
      *coordinate = Below(40000);
    }
  }

  std::mt19937 random_{6};
};

}  // namespace

template <class String>
Content<String> MakeContent(size_t count) {
  Maker<String> maker;
  Content<String> content;
  for (size_t i = 0; i < count; ++i) content.steps.push_back(maker.Step(i));
  for (size_t i = 0; i < count * 3 / 2; ++i) content.links.push_back(maker.Link(content.steps, i));
  return content;
}

template Content<std::string> MakeContent(size_t count);
template Content<Text> MakeContent(size_t count);

}  // namespace vndoc6::bench
