// vndoc check: what is wrong in documents, and what of it can be put right.
#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <ostream>
#include <set>

#include "command.h"
#include "flow.h"
#include "objects.h"
#include "one_line.h"
#include "platform/file_system.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/content/salvage.h"
#include "vndoc6/content/walk.h"
#include "vndoc6/process/jump.h"

namespace vndoc {
namespace {

struct Finding {
  const char* kind;  // programs read these: never change one
  std::string message;
  bool fixable = false;
  bool is_wrong = true;  // else it is for the user to know
};

std::string Quoted(TextView text) { return '"' + OneLine(text) + '"'; }

class Checker {
 public:
  explicit Checker(vnDocument& document) : document_(document), flow_(document) {}

  std::vector<Finding> Check() {
    CheckLinks();
    CheckNumbers();
    CheckReach();
    CheckDependencies();
    CheckJumps();
    return std::move(findings_);
  }

 private:
  void Add(const char* kind, std::string message, bool fixable = false) {
    findings_.push_back({kind, std::move(message), fixable});
  }

  static std::string NameOf(vnStep& step) {
    return "step " + std::to_string(step.StepIndex()) + " " + Quoted(step.Label());
  }

  void CheckLinks() {
    for (const Ref<vnLink>& link : flow_.dangling) {
      Add("dangling link", "the link " + Quoted(link->Key()) + " lacks a step at one end", true);
    }
  }

  // A step that was taken out of the numbering (-1) is as it should be.
  void CheckNumbers() {
    int64_t expected = 1;  // a number may be the highest Long
    for (const FlowStep& step : flow_.steps) {
      const int32_t number = step.step->StepIndex();
      if (number == 0) Add("no number", NameOf(*step.step) + " has no number", true);
      if (number <= 0) continue;
      if (number < expected) {
        Add("duplicate number", NameOf(*step.step) + " shares its number", true);
      } else if (number > expected) {
        Add("missing number", "there is no step " + std::to_string(expected), true);
      }
      expected = std::max(expected, int64_t{number} + 1);
    }
  }

  void CheckReach() {
    for (const size_t step : flow_.Unreachable()) {
      Add("unreachable step", NameOf(*flow_.steps[step].step) + " can't be reached");
    }
  }

  std::vector<size_t> DependenciesOf(size_t step) {
    std::vector<size_t> dependencies;
    ForEachIn(*flow_.steps[step].step->Dependancies(), [&](Object& entry) {
      const auto found = flow_.by_key.find(static_cast<vndoc6::Property&>(entry).Key());
      if (found != flow_.by_key.end()) {
        dependencies.push_back(found->second);
      } else {
        Add("dangling dependency",
            NameOf(*flow_.steps[step].step) + " depends on a step that is gone", true);
      }
    });
    return dependencies;
  }

  // A depth-first walk with a stack of its own: dependencies may be as deep as a file likes.
  void CheckDependencies() {
    enum class State { kNew, kOpen, kDone };
    std::vector<State> states(flow_.steps.size(), State::kNew);
    struct Open {
      size_t step;
      std::vector<size_t> left;
    };
    for (size_t start = 0; start < states.size(); ++start) {
      std::vector<Open> path;
      const auto enter = [&](size_t step) {
        states[step] = State::kOpen;
        path.push_back({step, DependenciesOf(step)});
      };
      if (states[start] == State::kNew) enter(start);
      while (!path.empty()) {
        if (path.back().left.empty()) {
          states[path.back().step] = State::kDone;
          path.pop_back();
          continue;
        }
        const size_t next = path.back().left.back();
        path.back().left.pop_back();
        if (states[next] == State::kNew) {
          enter(next);
        } else if (states[next] == State::kOpen) {
          Add("circular dependency", NameOf(*flow_.steps[next].step) + " depends on itself");
        }
      }
    }
  }

  // Those of the document, and of steps that keep theirs to themselves.
  void CheckJumps() {
    std::set<Text> names;
    const auto check = [&](Object& object) {
      const Text& name = static_cast<vndoc6::vnJump&>(object).FileName();
      if (name.empty() || !names.insert(name).second || IsThere(name)) return;
      Add("dangling jump", "the jump to " + Quoted(name) + " leads to no file");
    };
    ForEachIn(*document_.Jumps(), check);
    for (const FlowStep& step : flow_.steps) {
      const vndoc6::PassingRead reading(*step.step);
      ForEachIn(*step.step->Jumps(), check);
    }
  }

  // Seen from here, as a host opens it, or from the document's folder.
  bool IsThere(const Text& name) const {
    const Text document = document_.FileName();
    const Text folder = document.substr(0, document.find_last_of(u"/\\") + 1);
    return vndoc6::platform::FileExists(name) || vndoc6::platform::FileExists(folder + name);
  }

  vnDocument& document_;
  Flow flow_;
  std::vector<Finding> findings_;
};

void AddDamage(const vndoc6::Damage& damage, std::vector<Finding>& findings) {
  using Kind = vndoc6::Damage::Kind;
  const std::string where =
      damage.place.empty() ? "the file" : OneLine(vndoc6::automation::FromUtf8(damage.place));
  const std::string at = "byte " + std::to_string(damage.offset);
  switch (damage.kind) {
    case Kind::kUnknown:
      findings.push_back({"unknown key", where + " is not known; saves keep it", false, false});
      break;
    case Kind::kTwice:
      findings.push_back({"damaged text", where + " is there twice; the next save drops one"});
      break;
    case Kind::kMissing:
      findings.push_back({"damaged text", where + " lacks " + damage.keys});
      break;
    case Kind::kLost:
      findings.push_back({"damaged text", where + " does not parse from " + at + " on"});
      break;
    case Kind::kMended:
      findings.push_back({"damaged text", where + " is damaged at " + at});
      break;
  }
}

// Numbers every step that is not taken out anew, in the order there is.
void Renumber(vnDocument& document) {
  Flow flow(document);
  std::vector<Ref<vnStep>> steps;
  for (const FlowStep& step : flow.steps) {
    if (step.step->StepIndex() >= 0) steps.push_back(step.step);
  }
  // From the last one on nothing has to move.
  for (auto step = steps.rbegin(); step != steps.rend(); ++step) (*step)->SetStepIndex(-1);
  for (size_t i = 0; i < steps.size(); ++i) steps[i]->SetStepIndex(static_cast<int32_t>(i + 1));
}

// The next save removes dependencies on steps that are gone.
void Fix(Context& context, const std::string& file) {
  ChangeDocument(context, file, [](vnDocument& document) {
    for (const Ref<vnLink>& link : Flow(document).dangling) {
      document.Links()->Remove(Variant(link->Key()));
    }
    bool numbers_differ = false;
    for (const Finding& finding : Checker(document).Check()) {
      numbers_differ = numbers_differ || std::string_view(finding.kind).ends_with("number");
    }
    if (numbers_differ) Renumber(document);
    return true;
  });
}

struct CheckOptions {
  std::vector<std::string> files;
  bool json = false;
  bool fix = false;
};

class Report {
 public:
  Report(Context& context, const CheckOptions& options) : context_(context), options_(options) {}

  void Check(const std::string& file) {
    Ref<vnDocument> document = Load(context_, file);
    // Nothing of what was not read can be put right.
    const bool refused = options_.fix && !context_.force && !document->WhatWasNotRead().empty();
    std::vector<Finding> findings = Checker(*document).Check();
    document = nullptr;
    for (const vndoc6::Damage& damage : vndoc6::Salvage(ReadBytes(context_, file)).damages) {
      AddDamage(damage, findings);
    }
    const bool fixable = std::any_of(findings.begin(), findings.end(),
                                     [](const Finding& finding) { return finding.fixable; });
    const bool fixed = ((options_.fix && fixable) || refused) && TryFix(file);
    for (const Finding& finding : findings) Add(file, finding, fixed && finding.fixable);
  }

  void Finish() {
    if (options_.json) json_ += json_.empty() ? "[]\n" : "\n]\n";
    context_.out << json_;
  }

 private:
  // What can't be written is told of all the same.
  bool TryFix(const std::string& file) {
    try {
      Fix(context_, file);
      return true;
    } catch (const Failure& failure) {
      context_.err << "vndoc: " << OneLine(vndoc6::automation::FromUtf8(failure.what())) << '\n';
      context_.status = kFailed;
      return false;
    }
  }

  void Add(const std::string& file, const Finding& finding, bool fixed) {
    if (finding.is_wrong && !fixed && context_.status == kDone) context_.status = kFindings;
    if (options_.json) {
      nlohmann::ordered_json json = {
          {"file", file}, {"kind", finding.kind}, {"message", finding.message}, {"fixed", fixed}};
      json_ += json_.empty() ? "[\n  " : ",\n  ";
      json_ += json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    } else {
      context_.out << OneLine(vndoc6::automation::FromUtf8(file)) << ": " << finding.kind << ": "
                   << finding.message << (fixed ? " (fixed)\n" : "\n");
    }
  }

  Context& context_;
  const CheckOptions& options_;
  std::string json_;
};

void CheckAll(Context& context, const CheckOptions& options) {
  Report report(context, options);
  for (const std::string& file : options.files) {
    try {
      report.Check(file);
    } catch (const Failure& failure) {
      context.err << "vndoc: " << OneLine(vndoc6::automation::FromUtf8(failure.what())) << '\n';
      context.status = kFailed;
    }
  }
  report.Finish();
}

}  // namespace

void AddCheck(CLI::App& app, Context& context) {
  auto* const command = app.add_subcommand("check", "Says what is wrong in documents");
  const auto options = std::make_shared<CheckOptions>();
  command->add_option("FILE", options->files, "The documents")->required();
  command->add_flag("--json", options->json, "The findings as JSON");
  command->add_flag("--fix", options->fix,
                    "Put right what can be: remove links and dependencies that lack a step, number "
                    "the steps anew");
  AddForce(*command, context);
  command->footer(
      "Finds links, dependencies and jumps that lead nowhere, steps that can't be reached, "
      "numbers\n"
      "that are missing or there twice, dependencies in circles, texts that are damaged and keys\n"
      "that are not known.\n"
      "Exit status: 0 nothing is wrong, or all of it was fixed; 1 findings, but for keys that are\n"
      "not known, which are kept; 2 a file can't be "
      "read.");
  command->callback([options, &context] { CheckAll(context, *options); });
}

}  // namespace vndoc
