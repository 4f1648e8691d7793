#include "page/parts.h"

#include <algorithm>

#include "base/text.h"
#include "show/changes.h"
#include "show/facts.h"
#include "show/figures.h"

namespace page {

using machine::Description;
using show::at;
using show::joined;

std::string asTitle(std::string_view text) {
  return toUpper(text.substr(0, 1)) +
         std::string(text.substr(std::min<std::size_t>(1, text.size())));
}

Html::Open beginSection(Html& html, std::string_view id, std::string_view title) {
  const std::string heading = std::string(id) + "-title";
  Html::Open section = html.in("section", {"id", id}, {"aria-labelledby", heading});
  html.element("h2", title, {"id", heading});
  return section;
}

Html::Open beginFold(Html& html, std::string_view title, std::size_t rows, bool open) {
  Html::Open details = html.in("details", {"open", open ? "open" : std::string_view()});
  const auto summary = html.in("summary");
  html.element("h3", title);
  html.text(" ");
  html.element("small", show::count(rows, "row"));
  return details;
}

bool hasRows(Html& html, const Description& machine, std::string_view table) {
  const machine::TableData& data = machine[machine::tableAt(table)];
  if (!data.rows.empty()) return true;
  html.element("p", data.recorded ? "None." : "Not recorded in this file.", {"class", "dim"});
  return false;
}

std::string scanWords(const Description& machine) {
  const std::string when = show::scanTime(machine);
  const char* kind = machine.source() == machine::Source::Debug ? "debug file" : "snapshot";
  return kind + (when.empty() ? "" : " of " + when);
}

void writeIdentity(Html& html, const Description& machine, std::string_view file) {
  const auto words = [&machine](std::size_t column) {
    return show::figureOf(machine::schema::kMachine[column], machine.machine(column));
  };
  const std::string scanned = words(at("machine", "scanned_at"));
  const auto took = show::integer(machine.machine(at("machine", "scan_ms")));
  const std::string agent = words(at("machine", "agent_version"));
  const auto line = html.in("p");
  html.isolated(file);
  html.text(": " +
            joined({machine.source() == machine::Source::Debug ? "debug file" : "snapshot",
                    scanned.empty() ? "time of the scan not known" : "scanned at " + scanned,
                    took ? "in " + std::to_string(*took / 1000) + " s" : "",
                    agent.empty() ? "version of the agent not known" : "by agent " + agent}) +
            ".");
}

void writeMaker(Html& html, std::string_view program) {
  const auto line = html.in("p");
  html.text("This page was made by " + std::string(program) +
            "; it loads nothing and runs nothing. ");
  html.unknown();
  html.text(" stands where something is not known.");
}

}  // namespace page
