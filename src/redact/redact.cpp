#include "redact/redact.h"

#include <algorithm>
#include <cstdint>

#include "base/bytes.h"
#include "base/formatString.h"
#include "base/text.h"
#include "huxread/check.h"
#include "huxread/layout.h"
#include "keva/deflate.h"
#include "machine/describe.h"
#include "redact/finder.h"
#include "redact/secrets.h"

namespace redact {

namespace {

using huxread::Container;
using huxread::Error;
using huxread::Result;
using huxread::Section;
using huxread::SectionType;

Form formOf(SectionType type) {
  return type == SectionType::CustomData ? Form::Profile : Form::Document;
}

// Hands over the text of every section, one at a time: the profiler's can be large.
template <typename Take>
std::optional<Error> forEachText(const Container& file, const Take& take) {
  for (const Section& section : file.sections()) {
    if (section.type == SectionType::Unknown) {
      return Error{
          formatString("section %u is of a type that is not known: what it holds cannot be told",
                       section.number)};
    }
    auto text = file.text(section.number);
    if (!text) return text.error();
    take(section, std::move(*text));
  }
  return std::nullopt;
}

std::string edited(std::string_view text, const std::vector<Edit>& edits) {
  std::string result;
  result.reserve(text.size());
  std::size_t at = 0;
  for (const Edit& edit : edits) {
    result.append(text.substr(at, edit.begin - at)).append(edit.text);
    at = edit.end;
  }
  return result.append(text.substr(at));
}

// Replaces secrets and counts them; what is found in the result all the same is told of.
class Editor {
 public:
  Editor(Secrets& secrets, const Finder& finder, Redacted& result)
      : secrets_(secrets), finder_(finder), result_(result) {}

  std::string edit(std::string_view text, Form form) {
    const std::vector<Edit> edits = finder_.find(text, form);
    for (const Edit& edit : edits) {
      ++secrets_[edit.secret].places;
      if (edit.part) result_.parts.insert(toLower(text.substr(edit.begin, edit.end - edit.begin)));
    }
    std::string result = edited(text, edits);
    for (const Edit& edit : finder_.find(result, form))
      result_.left.insert(secrets_[edit.secret].kind);
    return result;
  }

 private:
  Secrets& secrets_;
  const Finder& finder_;
  Redacted& result_;
};

std::string stored(std::string_view text, SectionType type) {
  std::string data = deflateOrEnd(text, kDocumentSite);
  if (type != SectionType::CustomData) data += huxread::kBlockTrailer;
  return data;
}

// The header without secrets, with the places that the sections have now. What its keys are called
// is no secret, whoever is called so too.
std::string headerWith(std::string_view header, const std::vector<Section>& sections,
                       Editor& editor) {
  constexpr std::string_view kKeys[] = {"count", "snapshotcount", "timestamp", "snaptype", "ID"};
  std::string text;
  const Section* section = nullptr;
  for (std::size_t at = 0; at < header.size();) {
    const std::size_t end = std::min(header.find('\n', at), header.size());
    const std::string line(header.substr(at, end - at));
    at = end + 1;
    if (line.starts_with('[')) {
      const auto found = std::ranges::find_if(sections, [&line](const Section& each) {
        return line == formatString("[%u]", each.number);
      });
      section = found == sections.end() ? nullptr : &*found;
    }
    const std::string key = line.substr(0, line.find('='));
    if (section != nullptr && key == "offset") {
      text += formatString("offset=%u", section->offset);
    } else if (section != nullptr && key == "length") {
      text += formatString("length=%u", section->length);
    } else if (section != nullptr && key == "type") {
      text += formatString("type=%s", huxread::typeName(section->type));
    } else if (key != line && std::ranges::find(kKeys, key) != std::end(kKeys)) {
      text += key + "=" + editor.edit(line.substr(key.size() + 1), Form::None);
    } else {
      text += editor.edit(line, Form::None);
    }
    text += '\n';
  }
  return text;
}

// docs/hux-format.md draws it.
std::string fileOf(std::string sections, std::string_view header) {
  constexpr char kVersion = 3;
  std::string file = std::move(sections);
  const std::uint64_t offset = file.size();
  file += deflateOrEnd(header, kFileSite);
  appendInteger(file, offset, true);
  file += kVersion;
  file += '\1';  // the header is compressed
  file += huxread::kMagic;
  return file;
}

void report(const Secrets& secrets, Redacted& result) {
  result.everybodys = secrets.everybodys();
  result.tokens = secrets.tokens();
  result.counts.resize(kindNames().size());
  result.kept.resize(kindNames().size());
  for (std::size_t kind = 0; kind < kindNames().size(); ++kind) {
    for (std::size_t id = 0; id < secrets.size(); ++id) {
      const Secret& secret = secrets[id];
      if (static_cast<std::size_t>(secret.kind) != kind) continue;
      if (secrets.keeps(secret.kind)) {
        ++result.kept[kind].values;
        continue;
      }
      if (secret.places == 0) continue;
      ++result.counts[kind].values;
      result.counts[kind].places += secret.places;
      result.pairs.emplace_back(secret.text, shownToken(secret));
      if (secret.common && !isWhole(secret.kind)) result.common.push_back(secret.text);
    }
  }
}

// Whether every section can be read.
bool canBeRead(const std::string& bytes) {
  const auto file = Container::parse(bytes);
  if (!file) return false;
  return std::ranges::none_of(huxread::check(*file), [](const huxread::Problem& problem) {
    return problem.kind == huxread::Problem::Kind::Stream ||
           problem.kind == huxread::Problem::Kind::Text;
  });
}

}  // namespace

Result<Redacted> redact(const Container& file, platform::Host& host, const std::set<Kind>& kept,
                        std::string_view name) {
  const auto machine = machine::describe(file, host);
  if (!machine) return machine.error();
  if (machine->lacksItems()) return Error{"a part of the profiler's report cannot be read"};
  Secrets secrets(kept);
  secrets.addTables(*machine);
  secrets.addVocabulary(*machine);
  bool hidden = false;
  const auto failure = forEachText(file, [&](const Section& section, const std::string& text) {
    const Form form = formOf(section.type);
    collect(text, form, secrets);
    hidden = hidden || (form == Form::Profile && text.find("<![CDATA[") != std::string::npos);
  });
  if (failure) return *failure;
  collect(file.headerText(), Form::None, secrets);
  if (hidden) return Error{"has CDATA, which the profiler never writes, and names may be split by"};
  forEachText(file, [&](const Section& section, const std::string& text) {
    collectWhole(text, formOf(section.type), secrets);
  });
  secrets.giveTokens();
  const auto finder = Finder::make(secrets);
  if (!finder) return Error{"holds more names than can be looked for"};

  Redacted result;
  Editor editor(secrets, *finder, result);
  std::string data;
  std::vector<Section> sections;
  forEachText(file, [&](const Section& section, const std::string& text) {
    const std::string part = stored(editor.edit(text, formOf(section.type)), section.type);
    sections.push_back(section);
    sections.back().offset = static_cast<std::uint32_t>(data.size());
    sections.back().length = static_cast<std::uint32_t>(part.size());
    data += part;
  });
  const std::string header = headerWith(file.headerText(), sections, editor);
  result.file = fileOf(std::move(data), header);
  if (!canBeRead(result.file)) return Error{"cannot be read, or not with its names replaced"};
  for (const Edit& edit : finder->find(name, Form::None))
    result.inName.insert(secrets[edit.secret].kind);
  report(secrets, result);
  return result;
}

}  // namespace redact
