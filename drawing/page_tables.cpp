// The tables of a report: the same document by role, by container, by file, by revision.
#include <unordered_map>
#include <unordered_set>

#include "page_account.h"
#include "vndoc6/content/walk.h"

namespace vndoc6::drawing {
namespace {

// Rows of one name in the order in which they come up, each with the steps that belong to it.
class Grouped {
 public:
  struct Group {
    std::string name;
    std::vector<size_t> steps;  // places
  };

  Group& operator[](const std::string& name) {
    const auto [found, is_new] = position_.try_emplace(name, groups_.size());
    if (is_new) groups_.push_back({name, {}});
    return groups_[found->second];
  }
  const std::vector<Group>& groups() const { return groups_; }

 private:
  std::unordered_map<std::string, size_t> position_;
  std::vector<Group> groups_;
};

class Tables {
 public:
  explicit Tables(Account& account) : account_(account), words_(account.words) {}

  std::vector<Section> Write() {
    for (const size_t place : account_.procedure.order) ReadStep(place);
    AddUnattached(account_.document.Files(), files_,
                  [this](vnFile& file) { return account_.FileLink(file); });
    AddUnattached(account_.document.Jumps(), jumps_,
                  [this](vnJump& jump) { return account_.JumpLink(jump); });
    AddGrouped("roles", Word::kRoles, Word::kRolesCaption, Word::kRole, roles_);
    AddResponsibilities();
    AddContainers();
    AddGrouped("files", Word::kFiles, Word::kFilesCaption, Word::kFile, files_);
    AddGrouped("jumps", Word::kJumps, Word::kJumpsCaption, Word::kProcedure, jumps_);
    AddLooseLinks();
    AddRevisions();
    return std::move(sections_);
  }

 private:
  void ReadStep(size_t place) {
    vnStep& step = *account_.procedure.steps[place - 1];
    const PassingRead reading(step);
    const auto add = [place](Grouped::Group& group) {
      if (group.steps.empty() || group.steps.back() != place) group.steps.push_back(place);
    };
    ForEach(step.PerformedBy(),
            [&](vnTitleRef& title) { add(roles_[Shown(title.DisplayName())]); });
    ForEach(step.Files(), [&](vnFile& file) {
      attached_.insert(file.Key());
      add(files_[account_.FileLink(file)]);
    });
    ForEach(step.Jumps(), [&](vnJump& jump) {
      attached_.insert(jump.Key());
      add(jumps_[account_.JumpLink(jump)]);
    });
  }

  // What belongs to the document and to no step. What was added to a step stands there under its
  // key, and in the document's own list as well.
  template <class Collection, class Show>
  void AddUnattached(const Ref<Collection>& collection, Grouped& groups, Show&& show) {
    ForEach(collection, [&](auto& member) {
      if (attached_.count(member.Key()) == 0) groups[show(member) + account_.Others(member, "div")];
    });
  }

  void Add(const char* id, Word heading, const Table& table, const std::string& more = {}) {
    if (!table.IsEmpty()) sections_.push_back({id, words_(heading), table.Html() + more});
  }

  std::string StepList(const std::vector<size_t>& places) const {
    std::string list;
    for (const size_t place : places) list += Element("li", account_.StepLink(place));
    return list.empty() ? "" : Element("ul", list);
  }

  void AddGrouped(const char* id, Word heading, Word caption, Word column, const Grouped& groups) {
    Table table(id, words_(caption), {words_(column), words_(Word::kSteps)});
    for (const auto& [name, steps] : groups.groups()) {
      table.AddRow({name.empty() ? "&ndash;" : name, StepList(steps)});
    }
    Add(id, heading, table);
  }

  // A row for each step, so that what nobody performs shows; left out where it would be too large
  // to be read: the roles have their steps in their own table.
  void AddResponsibilities() {
    constexpr size_t kMostRoles = 12;
    constexpr size_t kMostSteps = 500;
    const std::string authority = Shown(account_.document.Details()->AuthorisedBy()->DisplayName());
    Grouped roles = roles_;
    if (roles.groups().empty()) return;
    if (!authority.empty()) roles[authority];
    const auto& columns = roles.groups();
    const auto& order = account_.procedure.order;
    if (columns.size() > kMostRoles || order.size() > kMostSteps) return;
    std::unordered_map<size_t, std::vector<std::string>> rows;
    std::vector<std::string> head = {words_(Word::kStep)};
    for (size_t column = 0; column < columns.size(); ++column) {
      const std::string& name = columns[column].name;
      head.push_back(name);
      for (const size_t place : order) {
        auto& row = rows[place];
        row.resize(columns.size() + 1);
        row[column + 1] = name == authority ? "A" : "";
      }
      for (const size_t place : columns[column].steps) {
        std::string& cell = rows[place][column + 1];
        cell = cell.empty() ? "R" : "R, A";
      }
    }
    Table table("raci", words_(Word::kRaciCaption), head);
    for (const size_t place : order) {
      rows[place][0] = account_.StepLink(place);
      table.AddRow(rows[place]);
    }
    Add("raci", Word::kRaci, table, Element("p", words_(Word::kRaciNote), " class=\"note\""));
  }

  void AddContainers() {
    Table table("containers", words_(Word::kContainersCaption),
                {words_(Word::kName), words_(Word::kDescription), words_(Word::kSteps)});
    std::unordered_map<Text, std::vector<size_t>> steps_of;
    for (const size_t place : account_.procedure.order) {
      steps_of[account_.procedure.container_of[place - 1]].push_back(place);
    }
    ForEach(ContainersOf(account_.document), [&](vnContainer& container) {
      table.AddRow({Shown(container.Label()),
                    Paragraph(container.Description()) + account_.Others(container, "div"),
                    StepList(steps_of[container.Key()])});
    });
    Add("containers", Word::kContainers, table);
  }

  void AddLooseLinks() {
    Table table("loose", words_(Word::kLooseLinksCaption),
                {words_(Word::kLink), words_(Word::kCondition), words_(Word::kStep)});
    const auto& place_of = account_.procedure.place_of;
    for (const Ref<vnLink>& loose : account_.procedure.loose) {
      vnLink& link = *loose;
      const PassingRead reading(link);
      std::string ends;
      for (const Text& key : {link.OriginStepKey(), link.DestinationStepKey()}) {
        const auto place = place_of.find(key);
        if (place != place_of.end()) ends += account_.StepLink(place->second);
      }
      table.AddRow({link.Text().empty() ? Code(link.Key()) : Shown(link.Text()),
                    account_.LinkConditions(link), ends});
    }
    Add("loose", Word::kLooseLinks, table);
  }

  void AddRevisions() {
    Table table("revisions", words_(Word::kRevisionsCaption),
                {words_(Word::kNumber), words_(Word::kDate), words_(Word::kRevision),
                 words_(Word::kReason)});
    ForEach(account_.document.RevisionHistory(), [&](vnRevision& revision) {
      table.AddRow({std::to_string(revision.IR()), Day(revision.RevisionDate()),
                    RevisionNumber(revision.Revision()), Shown(revision.Reason())});
    });
    Add("revisions", Word::kRevisions, table);
  }

  Account& account_;
  const Words& words_;
  Grouped roles_, files_, jumps_;
  std::unordered_set<Text> attached_;  // keys of files and jumps of steps
  std::vector<Section> sections_;
};

}  // namespace

std::vector<Section> TableSections(Account& account) { return Tables(account).Write(); }

}  // namespace vndoc6::drawing
