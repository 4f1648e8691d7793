#include <sys/select.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <optional>

#include "base/formatString.h"
#include "command.h"
#include "files.h"
#include "fleet/query.h"
#include "fleet/scan.h"
#include "fleet/tables.h"
#include "output.h"
#include "show/csv.h"
#include "show/grid.h"
#include "show/json.h"
#include "takeIn.h"

using fleet::Database;
using fleet::Statement;
using machine::Row;
using Step = Statement::Step;

namespace {

volatile std::sig_atomic_t interrupted = 0;

// Ctrl-C ends a query or the line that is typed, not the program.
void catchInterrupts(const Database& database) {
  database.endStatementsWhen(interrupted);
  struct sigaction action {};
  action.sa_handler = [](int /*signal*/) { interrupted = 1; };
  sigaction(SIGINT, &action, nullptr);
}

// The lines that a person types. Ctrl-C reaches the program only while it waits for one: a signal
// between showing the prompt and waiting would be lost on the one who waits.
class Keyboard {
 public:
  // A line without its end; nothing at the end of the input or when interrupted.
  std::optional<std::string> ask(const char* prompt) {
    sigset_t interrupt;
    sigset_t others;
    sigemptyset(&interrupt);
    sigaddset(&interrupt, SIGINT);
    sigprocmask(SIG_BLOCK, &interrupt, &others);
    if (interrupted != 0) typed_.clear();  // what was pasted behind a query that was ended
    interrupted = 0;
    printOutput(prompt);
    flushOutput();
    const bool whole = readLine(others);
    sigprocmask(SIG_SETMASK, &others, nullptr);
    std::string line = takeLine();
    if (interrupted != 0 || (!whole && line.empty())) return std::nullopt;
    return line;
  }

 private:
  // Reads until there is a line with its end.
  bool readLine(const sigset_t& mask) {
    while (typed_.find('\n') == std::string::npos) {
      fd_set input;
      FD_ZERO(&input);
      FD_SET(STDIN_FILENO, &input);
      char part[4096];
      ssize_t size = pselect(STDIN_FILENO + 1, &input, nullptr, nullptr, nullptr, &mask);
      if (size > 0) size = read(STDIN_FILENO, part, sizeof part);
      if (size < 0 && errno == EINTR && interrupted == 0) continue;
      if (size <= 0) return false;
      typed_.append(part, static_cast<std::size_t>(size));
    }
    return true;
  }

  std::string takeLine() {
    const std::size_t end = typed_.find('\n');
    std::string line = typed_.substr(0, end);
    typed_.erase(0, end == std::string::npos ? end : end + 1);
    return line;
  }

  std::string typed_;  // and not yet asked for
};

std::vector<std::string> namesOf(const Statement& query) {
  std::vector<std::string> names;
  names.reserve(static_cast<std::size_t>(query.columnCount()));
  for (int i = 0; i < query.columnCount(); ++i) names.push_back(query.columnName(i));
  return names;
}

Row rowOf(const Statement& query) {
  Row row;
  for (int i = 0; i < query.columnCount(); ++i) row.push_back(query.value(i));
  return row;
}

Step printCsv(Statement& query) {
  const std::vector<std::string> names = namesOf(query);
  printOutput(show::csvLine(Row(names.begin(), names.end())));
  Step step = query.step();
  for (; step == Step::Row && outputGoesOn(); step = query.step()) {
    printOutput(show::csvLine(rowOf(query)));
  }
  return step;
}

// Objects have no two values of one name: "serial", "serial_2".
std::vector<std::string> differentNames(std::vector<std::string> names) {
  for (std::size_t i = 1; i < names.size(); ++i) {
    const std::string name = names[i];
    const auto before = names.begin() + static_cast<std::ptrdiff_t>(i);
    for (unsigned number = 2; std::find(names.begin(), before, names[i]) != before; ++number) {
      names[i] = formatString("%s_%u", name.c_str(), number);
    }
  }
  return names;
}

Step printJson(Statement& query) {
  const std::vector<std::string> names = differentNames(namesOf(query));
  const char* separator = "[\n";
  Step step = query.step();
  for (; step == Step::Row && outputGoesOn(); step = query.step()) {
    printOutput(separator + show::jsonObject(names, rowOf(query)));
    separator = ",\n";
  }
  if (step == Step::Failed) return step;
  printOutput(*separator == '[' ? "[]\n" : "\n]\n");
  return step;
}

Step printGrid(Statement& query) {
  constexpr std::size_t kSample = 1000;  // rows that decide how wide columns are
  std::vector<Row> sample;
  Step step = query.step();
  for (; step == Step::Row && sample.size() < kSample; step = query.step()) {
    sample.push_back(rowOf(query));
  }
  if (step == Step::Failed) return step;
  const show::Terminal terminal = outputTerminal();
  const auto width = static_cast<std::size_t>(terminal.terminal ? terminal.width : 0);
  const show::Grid grid(namesOf(query), sample, width);
  printOutput(grid.header());
  for (const Row& row : sample) printOutput(grid.row(row));
  for (; step == Step::Row && outputGoesOn(); step = query.step()) {
    printOutput(grid.row(rowOf(query)));
  }
  return step;
}

class Session {
 public:
  Session(Database& database, const Arguments& arguments)
      : database_(database),
        print_(arguments.csv    ? printCsv
               : arguments.json ? printJson
                                : printGrid) {}

  // Statements with ";" between them, up to the first one that fails.
  int run(std::string_view sql) {
    for (std::size_t at = 0;;) {
      at = sql.find_first_not_of(" \t\r\n;", at);
      if (at == std::string_view::npos) return kDone;
      auto query = compileQuery(database_, sql, at);
      if (!query) return fail(query.error().message);
      if (*query && !print(*query)) return fail(fleet::problemOf(database_));
    }
  }

  // Reads and answers until the end of standard input, which also ends a statement, or ".quit".
  int prompt() {
    printOutput("SQL of SQLite, statements end with \";\"; .tables, .schema TABLE, .quit\n");
    Keyboard keyboard;
    std::string text;
    for (;;) {
      std::optional<std::string> line = keyboard.ask(text.empty() ? "sql> " : "...> ");
      if (line) line->erase(line->find_last_not_of(" \t\r") + 1);
      if (interrupted != 0) {
        text.clear();
        printOutput("\n");
      } else if (!line) {
        printOutput("\n");
        return text.empty() ? kDone : run(text);
      } else if (text.empty() && line->starts_with('.')) {
        if (*line == ".quit") return kDone;
        runDot(*line);
      } else if (!text.empty() || !line->empty()) {
        text += *line + "\n";
        if (!fleet::isComplete(text)) continue;
        run(text);
        text.clear();
      }
    }
  }

 private:
  bool print(Statement& query) {
    const Step step = query.columnCount() == 0 ? query.step() : print_(query);
    return step != Step::Failed;
  }

  static int fail(const std::string& problem) {
    printMessage("sql", problem);
    return kTrouble;
  }

  void runDot(const std::string& line) {
    constexpr std::string_view kSchema = ".schema ";
    if (line == ".tables") {
      for (const std::string& name : fleet::publicNames()) printOutput(name + "\n");
    } else if (line.starts_with(kSchema)) {
      describe(line.substr(kSchema.size()));
    } else {
      fail(line + ": there are .tables, .schema TABLE and .quit");
    }
  }

  // The columns of a table, with what the schema says of them.
  void describe(std::string name) {
    const std::vector<std::string> names = fleet::publicNames();
    if (std::ranges::find(names, name) == names.end()) {
      fail(name + ": there is no such table; see .tables");
      return;
    }
    auto query = database_.prepare("PRAGMA table_info(" + name + ")");
    if (name.ends_with("_now")) name.resize(name.size() - 4);
    const machine::Table* table =
        name == fleet::kFindings.name ? &fleet::kFindings : machine::findTable(name);
    std::vector<Row> rows;
    while (query && query->step() == Step::Row) {
      const std::string column(query->text(1));
      const machine::Column* known = table == nullptr ? nullptr : findColumn(*table, column);
      rows.push_back({column, std::string(query->text(2)),
                      std::string(known == nullptr ? "" : known->meaning)});
    }
    const show::Grid grid({"column", "type", "meaning"}, rows,
                          static_cast<std::size_t>(outputTerminal().width));
    for (const Row& row : rows) printOutput(grid.row(row));
  }

  Database& database_;
  Step (*print_)(Statement&);
};

int answer(Database& database, const Arguments& arguments) {
  catchInterrupts(database);
  Session session(database, arguments);
  if (arguments.query) return session.run(*arguments.query);
  if (isatty(STDIN_FILENO) != 0 && outputTerminal().terminal) return session.prompt();
  const auto text = readBytes("-");
  if (!text) {
    printMessage("-", text.error().message);
    return kTrouble;
  }
  return session.run(*text);
}

int answerFromFiles(const Arguments& arguments) {
  int code = kDone;
  const std::vector<std::string> files = expandFiles(arguments.files, code);
  auto store = fleet::Store::open("");
  if (!store) {
    printMessage("sql", store.error().message);
    return kTrouble;
  }
  const Taken taken = takeIn(files, *store);
  if (taken.leftOut > 0) code = std::max(code, kNo);
  if (store->problem() || !fleet::restrictToReading(store->database())) {
    printMessage("sql", store->database().problem());
    return kTrouble;
  }
  return std::max(code, answer(store->database(), arguments));
}

}  // namespace

int runSql(const Arguments& arguments) {
  if (arguments.database.empty() == arguments.files.empty()) {
    printMessage("sql", "of what? a query and files, or --db FILE alone, which load fills");
    return kTrouble;
  }
  if (arguments.csv && arguments.json) {
    printMessage("sql", "one of --csv and --json");
    return kTrouble;
  }
  if (arguments.database.empty()) return answerFromFiles(arguments);
  auto database = fleet::openForReading(arguments.database);
  if (!database) {
    printMessage(arguments.database, database.error().message);
    return kTrouble;
  }
  return answer(*database, arguments);
}
