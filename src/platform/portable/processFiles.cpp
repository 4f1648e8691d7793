#include "platform/portable/processFiles.h"

#include <charconv>
#include <filesystem>
#include <string>
#include <system_error>

#include "platform/portable/fileText.h"

namespace platform {

namespace {

std::optional<std::int32_t> leadingNumber(std::string_view text) {
  std::int32_t number = 0;
  const auto [last, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) return std::nullopt;
  return number;
}

bool isProcessFolder(const std::string& name) {
  return !name.empty() && name.find_first_not_of("0123456789") == std::string::npos;
}

}  // namespace

std::optional<Process> parseProcessStat(std::string_view stat) {
  const std::size_t open = stat.find('(');
  const std::size_t close = stat.rfind(')');
  constexpr std::size_t kToParent = 4;  // ") S " stands between name and parent
  if (open == std::string_view::npos || close == std::string_view::npos || close < open ||
      stat.size() < close + kToParent) {
    return std::nullopt;
  }
  const std::optional<std::int32_t> pid = leadingNumber(stat);
  const std::optional<std::int32_t> ppid = leadingNumber(stat.substr(close + kToParent));
  if (!pid || !ppid) return std::nullopt;
  return Process{*pid, *ppid, std::string(stat.substr(open + 1, close - open - 1))};
}

std::vector<Process> readProcessFiles() {
  namespace fs = std::filesystem;
  std::vector<Process> processes;
  std::error_code error;
  for (fs::directory_iterator entry("/proc", error), end; !error && entry != end;
       entry.increment(error)) {
    if (!isProcessFolder(entry->path().filename().string())) continue;
    const std::string stat = readFileText(entry->path() / "stat").value_or("");
    if (std::optional<Process> process = parseProcessStat(stat)) {
      processes.push_back(std::move(*process));
    }
  }
  return processes;
}

}  // namespace platform
