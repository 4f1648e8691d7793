#include "postprocess/environment.h"

#include "collect/commandRunner.h"
#include "postprocess/mapping.h"

void PostProcessEnvironment(kevaDoc& snapshot, platform::Host& host) {
  constexpr std::int32_t kChunkSize = 300;  // bytes
  std::uint32_t length = 0;
  for (const Variable& variable : parseEnvironment(runCommand(host, "env", length, kChunkSize))) {
    Tag& tag =
        markedChild(branch(snapshot, {"Environment"}), normalizedText("env-var:" + variable.name));
    tag.setValue(TagValue(variable.name));
    const bool list = variable.name == "PATH";
    tag.setAttribute("value", TagValue(variable.value), list ? "split" : nullptr, ":");
    tag.setAttribute("system", TagValue("1"));
  }
}

std::vector<Variable> parseEnvironment(const std::string& output) {
  std::vector<Variable> variables;
  std::size_t start = 0;
  for (std::size_t end = output.find('\n'); end != std::string::npos && end != start;
       end = output.find('\n', start)) {
    const std::string line = output.substr(start, end - start);
    const std::size_t equals = line.find('=');
    if (equals != std::string::npos) {
      variables.push_back({line.substr(0, equals), line.substr(equals + 1)});
    }
    start = end + 1;
  }
  return variables;
}
