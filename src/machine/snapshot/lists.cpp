#include <string>
#include <string_view>

#include "machine/cleanText.h"
#include "machine/snapshot/item.h"
#include "machine/snapshot/sections.h"

namespace machine::snapshot {

namespace {

constexpr std::size_t kSoftwareTable = tableAt("software");
constexpr std::size_t kPluginsTable = tableAt("plugins");
constexpr std::size_t kUsersTable = tableAt("users");
constexpr std::size_t kProcessesTable = tableAt("processes");
constexpr std::size_t kEnvironmentTable = tableAt("environment");

// "20240501" as "2024-05-01".
Value day(std::string_view text) {
  if (text.size() != 8 || text.find_first_not_of("0123456789") != std::string_view::npos) return {};
  std::string date(text);
  date.insert(6, 1, '-').insert(4, 1, '-');
  return date;
}

Value origin(std::string_view appStore) {
  return appStore == "1" ? Value("app_store") : Value();
}

// An account's names, the short one first.
Value shortName(std::string_view names) {
  return textValue(names.substr(0, names.find_first_of(" \r\t")));
}

// "/users/mara", which stands for a folder in /Users.
Value folder(std::string_view path) {
  constexpr std::string_view kUsers = "/users/";
  if (path.size() <= kUsers.size() || !path.starts_with(kUsers)) return {};
  return textValue("/Users/" + std::string(path.substr(kUsers.size())));
}

// Nothing is taken off what a command line or a variable says.
Value whole(std::string_view text) {
  return text.empty() ? Value() : Value(cleanText(text));
}

constexpr Line kApplicationLines[] = {
    {"path",        {"path"},      text  },
    {"version",     {"version"},   text  },
    {"origin",      {"app-store"}, origin},
    {"modified_on", {"inst-date"}, day   },
    {"info",        {"info"},      text  },
};
constexpr auto kApplication = cells("software", kApplicationLines);
constexpr Line kPluginLines[] = {
    {"path",        {"path"},    text},
    {"version",     {"version"}, text},
    {"description", {"descr"},   text},
};
constexpr auto kPlugin = cells("plugins", kPluginLines);
constexpr Line kUserLines[] = {
    {"full_name", {"fullname"}, text   },
    {"uid",       {"id"},       integer},
    {"gid",       {"group"},    integer},
    {"home",      {"hdir"},     folder },
    {"shell",     {"shell"},    text   },
};
constexpr auto kUser = cells("users", kUserLines);
constexpr Line kProcessLines[] = {
    {"user",    {"user"},     text   },
    {"pid",     {"pid"},      integer},
    {"ppid",    {"ppid"},     integer},
    {"command", {"cmd-line"}, whole  },
};
constexpr auto kProcess = cells("processes", kProcessLines);
constexpr Line kVariableLines[] = {
    {"value", {"value"}, whole},
};
constexpr auto kVariable = cells("environment", kVariableLines);

// Tags that a section holds: each one's value, converted, is a column, its attributes are others.
struct List {
  const char* section;
  const char* prefix;
  std::size_t table;
  std::size_t nameColumn;
  Convert name;
  std::span<const Cell<Convert>> cells;
};
constexpr List kLists[] = {
    {"Software",      "Soft:",    kSoftwareTable,    columnAt("software",    "name"), text,      kApplication},
    {"Libraries",     "library:", kPluginsTable,     columnAt("plugins",     "name"), text,      kPlugin     },
    {"User-accounts", "usr-acc:", kUsersTable,       columnAt("users",       "name"), shortName, kUser       },
    {"Processes",     "process:", kProcessesTable,   columnAt("processes",   "name"), text,      kProcess    },
    {"Environment",   "env-var:", kEnvironmentTable, columnAt("environment", "name"), text,
     kVariable                                                                                               },
};

// What tells for which processor an application is, on systems of its time.
void writeArchitecture(const TagView& application, Row& row) {
  constexpr std::size_t kArchitecture = columnAt("software", "architecture");
  constexpr std::size_t kIs64Bit = columnAt("software", "is_64bit");
  const auto stated = application.attribute("64bit-app");
  const bool assumed = propertyOf(application, "64bit-app", "type") == "unknown";
  if (!assumed) row[kIs64Bit] = stated == "1";
  const auto environment = application.attribute("runtime-environment");
  if (environment == "universal") row[kArchitecture] = "universal";
  if (environment == "arch_ppc") row[kArchitecture] = "ppc";
  if (environment == "arch_x86" && !assumed) {
    row[kArchitecture] = stated == "1" ? "x86_64" : "i386";
  }
}

}  // namespace

void readLists(const TagView& top, Description& machine) {
  for (const List& list : kLists) {
    const auto section = top.child(list.section);
    if (!section) continue;
    TableData& table = machine[list.table];
    table.recorded = true;
    forEach(*section, list.prefix, [&](const TagView& tag) {
      Row& row = addRow(table, list.table);
      write(list.cells, tag, row);
      row[list.nameColumn] = list.name(tag.value());
      if (list.table == kSoftwareTable) writeArchitecture(tag, row);
    });
  }
}

}  // namespace machine::snapshot
