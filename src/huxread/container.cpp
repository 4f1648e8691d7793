#include "huxread/container.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <utility>

#include "base/formatString.h"
#include "huxread/inflate.h"

namespace huxread {

namespace {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

Result<std::string> readFile(const std::string& path) {
  const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "rb"));
  if (!file) return Error{std::strerror(errno)};
  return readFile(file.get());
}

Result<std::string> readFile(std::FILE* file) {
  std::string bytes;
  std::array<char, 65536> chunk{};
  while (const std::size_t count = std::fread(chunk.data(), 1, chunk.size(), file)) {
    bytes.append(chunk.data(), count);
    if (bytes.size() > kMaxFileSize) break;  // whoever reads them says so
  }
  if (std::ferror(file) != 0) return Error{std::strerror(errno)};
  return bytes;
}

Container::Container(std::string bytes, Layout layout)
    : bytes_(std::move(bytes)), layout_(std::move(layout)) {}

Result<Container> Container::open(const std::string& path) {
  Result<std::string> bytes = readFile(path);
  return bytes ? take(*bytes) : bytes.error();
}

Result<Container> Container::parse(std::string bytes) {
  return take(bytes);
}

Result<Container> Container::take(std::string& bytes) {
  Result<Layout> layout = readLayout(bytes);
  if (!layout) return layout.error();
  return Container(std::move(bytes), std::move(*layout));
}

Result<std::string> Container::text(std::uint32_t number) const {
  const auto section = std::ranges::lower_bound(sections(), number, {}, &Section::number);
  if (section == sections().end() || section->number != number) {
    return Error{formatString("there is no section %u", number)};
  }
  const std::string_view stored = std::string_view(bytes_).substr(section->offset, section->length);
  const Result<std::string_view> stream = unwrapSection(section->type, stored);
  Result<std::string> text = stream ? inflateText(*stream, kMaxTextSize) : stream.error();
  if (!text) return Error{formatString("section %u: ", number) + text.error().message};
  return text;
}

}  // namespace huxread
