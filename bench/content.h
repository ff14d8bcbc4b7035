// What the benchmarks store: a procedure as plain structs, the same for every side. Texts are
// UTF-16 for the library and UTF-8 for the others, each in the form that suits it best.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "vndoc6/chart/figure.h"
#include "vndoc6/chart/line.h"

namespace vndoc6::bench {

template <class String>
struct FontContent {
  bool bold = false;
  bool italic = false;
  String name;
  double size = 0;
  bool strikethrough = false;
  bool underline = false;
};

// The texts of the library's own structs stay empty; those below stand for them.
template <class String>
struct FigureContent : FigureValues, FontContent<String> {
  String figure_key;
  String tooltip_text;
};

template <class String>
struct LineContent : LineValues, FontContent<String> {};

template <class String>
struct TaskContent {
  String key, name, description, data;
  int32_t type = 0;
  int32_t module = 0;
  int32_t order = 0;
};

template <class String>
struct StepContent {
  String key, label, description, container_key, instructions, form, duration, condition;
  int32_t index = 0;
  int32_t assign_type = 0;
  int32_t assign_to = 0;
  int32_t table = 0;
  int32_t due_date_type = 0;
  int32_t continue_style = 0;
  bool auto_complete = false;
  FigureContent<String> figure;
  std::vector<TaskContent<String>> tasks;
};

template <class String>
struct LinkContent {
  String key, text, tooltip, origin, destination, condition;
  size_t from = 0;  // the positions of the steps that it joins
  size_t to = 0;
  LineContent<String> line;
};

template <class String>
struct Content {
  std::vector<StepContent<String>> steps;
  std::vector<LinkContent<String>> links;
};

// `count` steps each with a figure and two tasks, and half as many links again, each with a line.
// The same on every call. For std::string and for Text.
template <class String>
Content<String> MakeContent(size_t count);

}  // namespace vndoc6::bench
