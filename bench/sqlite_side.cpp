#include "bench/sqlite_side.h"

#include <sqlite3.h>

#include <memory>
#include <stdexcept>
#include <type_traits>

#include "bench/rows.h"

namespace vndoc6::bench {
namespace {

using String = std::string;

constexpr std::tuple kTables{"steps", "figures", "tasks", "links", "lines"};

class Database {
 public:
  explicit Database(const String& file) {
    sqlite3* opened = nullptr;
    const int result = sqlite3_open(file.c_str(), &opened);
    database_.reset(opened);
    Check(result);
  }
  void Run(const String& sql) {
    Check(sqlite3_exec(database_.get(), sql.c_str(), nullptr, nullptr, nullptr));
  }
  sqlite3* get() const { return database_.get(); }
  void Check(int result) const {
    if (result != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(database_.get()));
  }

 private:
  struct Close {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
  };
  std::unique_ptr<sqlite3, Close> database_;
};

class Statement {
 public:
  Statement(const Database& database, const String& sql) {
    sqlite3_stmt* prepared = nullptr;
    database.Check(sqlite3_prepare_v2(database.get(), sql.c_str(), -1, &prepared, nullptr));
    statement_.reset(prepared);
  }
  void Bind(int at, const String& value) {
    sqlite3_bind_text(get(), at, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
  }
  template <class T>
  void Bind(int at, T value) {
    if constexpr (std::is_floating_point_v<T>) {
      sqlite3_bind_double(get(), at, static_cast<double>(value));
    } else {
      sqlite3_bind_int(get(), at, static_cast<int>(value));
    }
  }
  bool Step() { return sqlite3_step(get()) == SQLITE_ROW; }
  void Reset() { sqlite3_reset(get()); }
  sqlite3_stmt* get() const { return statement_.get(); }

 private:
  struct Finish {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  std::unique_ptr<sqlite3_stmt, Finish> statement_;
};

// A table and the statement that fills it. SQLite takes letters of either case for the same column,
// so columns are numbered.
template <class... Tables>
class Filler {
 public:
  Filler(Database& database, const String& name, const Tables&... tables)
      : tables_(tables...), insert_(Create(database, name)) {}

  template <class... Structs>
  void Insert(const Structs&... values) {
    int at = 0;
    const auto bind = [&](const auto& table, const auto& source) {
      ForEachRow(table, [&](const auto& row) { insert_.Bind(++at, source.*row.member); });
    };
    std::apply([&](const auto&... table) { (bind(table, values), ...); }, tables_);
    insert_.Step();
    insert_.Reset();
  }

 private:
  static Statement Create(Database& database, const String& name) {
    constexpr size_t kColumns = (std::tuple_size_v<Tables> + ...);
    String columns = "c1";
    String places = "?";
    for (size_t i = 2; i <= kColumns; ++i) {
      columns += ",c" + std::to_string(i);
      places += ",?";
    }
    database.Run("create table " + name + "(" + columns + ")");
    return {database, "insert into " + name + " values(" + places + ")"};
  }

  std::tuple<Tables...> tables_;
  Statement insert_;
};

size_t ReadTable(const Database& database, const char* table) {
  Statement select(database, String("select * from ") + table);
  const int columns = sqlite3_column_count(select.get());
  size_t sum = 0;
  while (select.Step()) {
    for (int i = 0; i < columns; ++i) {
      if (sqlite3_column_type(select.get(), i) == SQLITE_TEXT) {
        const String value(reinterpret_cast<const char*>(sqlite3_column_text(select.get(), i)));
        sum += value.size();
      } else {
        sum += static_cast<size_t>(sqlite3_column_int64(select.get(), i));
      }
    }
  }
  return sum;
}

}  // namespace

void WriteDatabase(const String& file, const Content<String>& content) {
  Database database(file);
  database.Run("begin");
  Filler steps(database, "steps", kStepRows<String>);
  Filler figures(database, "figures", kFigureRows<String>, kFontRows<String>);
  Filler tasks(database, "tasks", kTaskRows<String>);
  Filler links(database, "links", kLinkRows<String>);
  Filler lines(database, "lines", kLineRows<String>, kFontRows<String>);
  for (const StepContent<String>& step : content.steps) {
    steps.Insert(step);
    figures.Insert(step.figure, step.figure);
    for (const TaskContent<String>& task : step.tasks) tasks.Insert(task);
  }
  for (const LinkContent<String>& link : content.links) {
    links.Insert(link);
    lines.Insert(link.line, link.line);
  }
  database.Run("commit");
}

size_t ReadDatabase(const String& file) {
  const Database database(file);
  return std::apply([&](const auto*... table) { return (ReadTable(database, table) + ...); },
                    kTables);
}

}  // namespace vndoc6::bench
