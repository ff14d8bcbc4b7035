// The rules of a document on plain lists: what tests hold the library against.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "vndoc6/automation/text.h"
#include "vndoc6/document/document.h"

namespace vndoc6::testing {

// The numbers of steps, in the order of the collection.
class PlainNumbering {
 public:
  std::vector<int32_t> numbers;

  int32_t Highest() const;
  // A number of 0 stands for the next one.
  void Add(int32_t number = 0) { numbers.push_back(number != 0 ? number : Highest() + 1); }
  // Closes the gap, then takes the step out.
  void Remove(size_t at);
  // What StepIndex does.
  void Put(size_t at, int32_t number);

 private:
  void TakeOut(size_t at);
};

// The order of a step's tasks: a list of tasks, and the orders that the step counts, which a host
// that adds or removes tasks itself leaves as they are.
class PlainOrder {
 public:
  struct Task {
    Text key;
    int32_t order;
  };
  std::vector<Task> tasks;

  // What NewTask and RemoveTask do. Tasks are found in any letter case, counted orders are not.
  void New(const Text& key);
  void Remove(const Text& key);
  // A loaded step counts none of its tasks, a copied one all of them.
  void CountNone() { counted_.clear(); }
  void CountAll();

 private:
  std::vector<Task>::iterator Find(const Text& key);
  std::map<Text, int32_t> counted_;
};

struct PlainStep {
  Text key, label, description;
  float left = 15;
  PlainOrder order;
  std::vector<Text> conditions;  // their display names
  std::vector<Text> dependancies;
  // Added to a document while it belonged to another one, which it goes on belonging to.
  bool foreign = false;
};

struct PlainLink {
  Text key, origin, destination;
};

struct PlainContainer {
  Text key, label;
};

struct PlainDocument {
  PlainNumbering numbering;      // one number for each of
  std::vector<PlainStep> steps;  // these
  std::vector<PlainLink> links;
  std::vector<PlainContainer> containers;
  std::vector<std::pair<Text, Text>> bag;

  void AddStep(PlainStep step, int32_t number);
  void RemoveStep(size_t at);
  // Dependencies on steps that are gone go, as a save makes them go.
  void Prune();
  void Prune(PlainStep& step) const;
  // What a document holds that loaded this one's file.
  PlainDocument Loaded() const;

  // Where the document is not as this says, in words; empty where it is.
  std::string DifferenceFrom(vnDocument& document) const;
};

}  // namespace vndoc6::testing
