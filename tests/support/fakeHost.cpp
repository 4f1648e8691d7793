#include "support/fakeHost.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <utility>

#include "platform/portable/bundleFolder.h"
#include "platform/portable/calendar.h"
#include "platform/portable/propertyListReader.h"

namespace {

// Every read returns the next text of a list, cut to the size asked for; the end is known once the
// list is used up.
class ScriptedOutput : public platform::CommandOutput {
 public:
  ScriptedOutput(std::vector<std::string> texts, std::vector<std::size_t>& sizes)
      : texts_(texts.begin(), texts.end()), sizes_(sizes) {}

  std::size_t read(char* buffer, std::size_t size) override {
    sizes_.push_back(size);
    if (texts_.empty()) return 0;
    std::string& text = texts_.front();
    const std::size_t count = std::min(size, text.size());
    std::memcpy(buffer, text.data(), count);
    text.erase(0, count);
    if (text.empty()) texts_.pop_front();
    return count;
  }

  bool atEnd() const override { return texts_.empty(); }

 private:
  std::deque<std::string> texts_;
  std::vector<std::size_t>& sizes_;
};

}  // namespace

FakeHost::FakeHost() {
  setenv("TZ", "TST-3", 1);
  tzset();
}

std::unique_ptr<platform::CommandOutput> FakeHost::startCommand(const std::string& command) {
  commands.push_back(command);
  std::vector<std::string> texts;
  if (auto& scripted = reads[command]; !scripted.empty()) {
    texts = std::move(scripted.front());
    scripted.pop_front();
  } else if (const auto output = outputs.find(command); output != outputs.end()) {
    texts = {output->second};
  }
  return std::make_unique<ScriptedOutput>(std::move(texts), readSizes);
}

std::optional<platform::PropertyList> FakeHost::parsePropertyList(std::string document) {
  return platform::readPropertyList(std::move(document));
}

std::vector<platform::Bundle> FakeHost::bundles(const std::string& folder,
                                                std::span<const std::string_view> keys) {
  std::vector<platform::Bundle> bundles = bundleFolders[folder];
  for (platform::Bundle& bundle : bundles) bundle.info = platform::scalarsAt(keys, bundle.info);
  return bundles;
}

double FakeHost::now() {
  if (times.empty()) return 0;
  const double time = times.front();
  if (times.size() > 1) times.pop_front();
  return time;
}

std::string FakeHost::formatDate(double seconds, std::string_view pattern) {
  return platform::formatLocalDate(seconds, pattern);
}
