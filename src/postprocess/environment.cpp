#include "postprocess/environment.h"

#include "collect/commandRunner.h"
#include "postprocess/mapping.h"

void PostProcessEnvironment(kevaDoc& snapshot, platform::Host& host) {
  constexpr std::int32_t kChunkSize = 300;  // bytes
  std::uint32_t length = 0;
  const std::string output = runCommand(host, "env", length, kChunkSize);
  for (const Variable& variable : parseEnvironment(output)) {
    Tag& tag = markedChild(branch(snapshot, {"Environment"}),
                           normalizedText("env-var:" + std::string(variable.name)));
    tag.setValue(TagValue(variable.name));
    const bool list = variable.name == "PATH";
    tag.setAttribute("value", TagValue(variable.value), list ? "split" : nullptr, ":");
    tag.setAttribute("system", TagValue("1"));
  }
}

std::vector<Variable> parseEnvironment(std::string_view output) {
  std::vector<Variable> variables;
  std::size_t start = 0;
  for (std::size_t end = output.find('\n'); end != std::string_view::npos && end != start;
       end = output.find('\n', start)) {
    const std::string_view line = output.substr(start, end - start);
    const std::size_t equals = line.find('=');
    if (equals != std::string_view::npos) {
      variables.push_back({line.substr(0, equals), line.substr(equals + 1)});
    }
    start = end + 1;
  }
  return variables;
}
