#include "huxread/salvage.h"

#include <algorithm>
#include <utility>

#include "base/formatString.h"
#include "huxread/document.h"
#include "huxread/inflate.h"

namespace huxread {

namespace {

using Damage = Salvaged::Damage;
using End = Inflated::End;

enum class Content { Other, Document, Report, Header };

constexpr std::size_t kNowhere = std::string_view::npos;

// What a text is, or that of which it is the beginning.
Content contentOf(std::string_view text) {
  constexpr std::size_t kMark = 3;  // a shorter beginning tells nothing
  const auto begins = [&](std::string_view with) {
    return text.starts_with(with) || (text.size() >= kMark && with.starts_with(text));
  };
  if (begins(Document::kFirstLine)) return Content::Document;
  if (begins("<?xml")) return Content::Report;
  if (begins("[H]\n")) return Content::Header;
  return Content::Other;
}

SectionType typeOf(Content content, std::string_view text) {
  if (content == Content::Report) return SectionType::CustomData;
  text.remove_prefix(std::min(text.size(), Document::kFirstLine.size() + 1));
  if (text.starts_with("Snapshot=")) return SectionType::Snapshot;
  if (text.starts_with("AssetInfo=")) return SectionType::AssetInfo;
  return SectionType::Unknown;
}

// What is in the stream that begins at byte `at`, if one does: told by its first few bytes of text,
// which no stream needs more than 512 bytes for.
Content peek(std::string_view file, std::size_t at) {
  constexpr std::size_t kEnough = 512;
  constexpr std::size_t kFirstBytes = 16;
  return contentOf(inflateAll(file.substr(at, kEnough), kFirstBytes).text);
}

// Reads a file from its start, without its header.
class Walk {
 public:
  Walk(std::string_view file, std::size_t limit) : file_(file), room_(limit) {}

  void run() {
    std::size_t at = nextStream(0);
    while (at != kNowhere && sections_.size() < kMaxSections) at = readStream(at);
  }

  std::vector<SalvagedSection>& sections() { return sections_; }
  std::optional<Layout>& layout() { return layout_; }

  // The byte behind the last stream that was found.
  std::size_t end() const { return end_; }

  // Whether what is there is right up to the end of the file.
  bool ranOut() const {
    if (ranOut_ || end_ == file_.size()) return true;
    const std::string_view rest = file_.substr(end_);
    if (layout_) return rest.size() < kTrailerSize;
    return inflateAll(rest.substr(0, kMaxHeaderSize), kMaxHeaderSize).end == End::CutOff;
  }

 private:
  static constexpr std::size_t kMaxSections = 1000;
  static constexpr int kMaxTries = 65536;           // of places where a stream might begin
  static constexpr std::size_t kBlindness = 32768;  // bytes that damage may go unnoticed for

  // The first byte from `from` on where a stream of a snapshot file begins; kNowhere when there is
  // none.
  std::size_t nextStream(std::size_t from) {
    constexpr char kDeflate = 0x78;  // window of 32 kB, as all streams of snapshot files
    for (std::size_t at = file_.find(kDeflate, from); at != kNowhere && tries_ < kMaxTries;
         at = file_.find(kDeflate, at + 1)) {
      if (at + 1 == file_.size()) break;
      const unsigned flags = static_cast<unsigned char>(file_[at + 1]);
      if ((kDeflate << 8 | flags) % 31 != 0) continue;  // the check bits of RFC 1950
      ++tries_;
      if (peek(file_, at) != Content::Other) return at;
    }
    return kNowhere;
  }

  // Reads the stream at `at`; gives the place of the next one, kNowhere when there is none.
  std::size_t readStream(std::size_t at) {
    Inflated stream = inflateAll(file_.substr(at), room_);
    room_ -= stream.text.size();
    end_ = at + stream.used;
    ranOut_ = stream.end == End::CutOff;
    const bool complete = stream.end == End::Complete;
    const Content content = contentOf(stream.text);
    if (content == Content::Header) {
      if (!complete) return kNowhere;
      Result<Layout> layout = layOut(std::move(stream.text), at);
      if (layout) layout_ = std::move(*layout);
      return kNowhere;
    }
    SalvagedSection& section = sections_.emplace_back();
    section.number = static_cast<std::uint32_t>(sections_.size() - 1);
    section.type = typeOf(content, stream.text);
    section.offset = at;
    section.used = stream.used;
    section.complete = complete;
    section.text = std::move(stream.text);
    section.problem = std::move(stream.problem);
    if (ranOut_) return kNowhere;
    if (!complete) return nextStream(std::max(at + 1, end_ - std::min(end_, kBlindness)));
    if (content == Content::Document) passBlockTrailer(section);
    return nextStream(end_);
  }

  void passBlockTrailer(SalvagedSection& section) {
    const std::string_view behind = file_.substr(end_, kBlockTrailer.size());
    if (behind == kBlockTrailer) {
      end_ += behind.size();
    } else if (kBlockTrailer.starts_with(behind)) {
      ranOut_ = true;
      section.problem = "the end of its block is cut off";
    } else {
      section.problem = "the end of its block is damaged";
    }
  }

  std::string_view file_;
  std::vector<SalvagedSection> sections_;
  std::optional<Layout> layout_;
  std::size_t room_;  // for texts
  std::size_t end_ = 0;
  bool ranOut_ = false;
  int tries_ = 0;
};

std::vector<SalvagedSection> readSections(std::string_view file, const Layout& layout,
                                          std::size_t room) {
  std::vector<SalvagedSection> sections;
  for (const Section& listed : layout.sections) {
    const std::string_view stored = file.substr(listed.offset, listed.length);
    const Result<std::string_view> wrapped = unwrapSection(listed.type, stored);
    Inflated stream = inflateAll(wrapped ? *wrapped : stored, room);
    room -= stream.text.size();
    SalvagedSection& section = sections.emplace_back();
    section.number = listed.number;
    section.type = listed.type;
    section.offset = listed.offset;
    section.used = stream.used;
    section.length = listed.length;
    section.text = std::move(stream.text);
    section.complete = stream.end == End::Complete;
    section.problem = std::move(stream.problem);
    if (!section.complete) continue;
    if (!wrapped) {
      section.problem = wrapped.error().message;
    } else if (stream.used != wrapped->size()) {
      section.problem = formatString("%zu bytes stand behind the end of the zlib stream",
                                     wrapped->size() - stream.used);
    }
  }
  return sections;
}

// Of what does not stand where the header says, as when a byte was lost before it, what was found
// instead takes the place.
void takeFound(std::vector<SalvagedSection>& sections, std::vector<SalvagedSection>& found) {
  for (SalvagedSection& section : sections) {
    if (section.complete) continue;
    const auto other = std::ranges::find(found, section.type, &SalvagedSection::type);
    if (other == found.end() || other->text.size() <= section.text.size()) continue;
    other->number = section.number;
    other->length = section.length;
    section = std::move(*other);
    found.erase(other);
  }
}

bool isWhole(const std::vector<SalvagedSection>& sections) {
  return std::ranges::all_of(sections, &std::string::empty, &SalvagedSection::problem);
}

// The file without zeros at its end: a system that went down may leave them for what it had not
// written.
std::string_view withoutZeros(std::string_view file) {
  constexpr std::size_t kFew = 16;  // may be data
  const std::string_view data = file.substr(0, file.find_last_not_of('\0') + 1);
  return file.size() - data.size() > kFew ? data : file;
}

// What is wrong with a file without a readable layout that was walked.
std::string damageOf(std::string_view file, const Walk& walk, const Error& error) {
  if (file.ends_with(kMagic)) return error.message;
  const std::size_t end = walk.end() + kTrailerSize;
  if (file.size() > end && file.substr(0, end).ends_with(kMagic)) {
    return formatString("%zu bytes stand behind the trailer", file.size() - end);
  }
  return "the trailer is damaged or missing";
}

}  // namespace

std::string extentOf(const SalvagedSection& section) {
  constexpr std::size_t kWhole = 100;
  if (section.complete) return formatString("section %u can be read whole", section.number);
  if (section.length) {
    const std::size_t share = section.used * kWhole / std::max<std::size_t>(*section.length, 1);
    return formatString("section %u can be read to %zu %%", section.number,
                        std::min(share, kWhole - 1));
  }
  const auto lines = std::ranges::count(section.text, '\n');
  return formatString("section %u can be read to line %td", section.number, lines);
}

Salvaged salvage(std::string_view file, std::size_t limit) {
  Salvaged result;
  const Result<Layout> layout = readLayout(file);
  if (layout) {
    result.sections = readSections(file, *layout, limit);
    if (isWhole(result.sections)) {
      result.damage = Damage::None;
      return result;
    }
    result.damage = Damage::Damaged;
    result.what = "damaged";
  } else if (file.size() > kMaxFileSize) {
    result.what = layout.error().message;
    return result;
  } else {
    const std::string_view data = withoutZeros(file);
    Walk walk(data, limit);
    walk.run();
    if (walk.layout()) {
      result.sections = readSections(file, *walk.layout(), limit);
      takeFound(result.sections, walk.sections());
    } else {
      result.sections = std::move(walk.sections());
    }
    if (result.sections.empty() && !walk.layout() && !file.ends_with(kMagic)) {
      result.what = layout.error().message;
      return result;
    }
    if (!file.ends_with(kMagic) && walk.ranOut()) {
      result.damage = Damage::Cut;
      result.what = formatString("cut after byte %zu%s", data.size(),
                                 data.size() < file.size() ? ", only zeros follow" : "");
    } else {
      result.damage = Damage::Damaged;
      result.what = damageOf(file, walk, layout.error());
    }
  }
  constexpr std::size_t kNamed = 8;  // a file of the agent has two
  for (std::size_t i = 0; i < std::min(kNamed, result.sections.size()); ++i) {
    result.what += "; " + extentOf(result.sections[i]);
  }
  if (result.sections.size() > kNamed) {
    result.what += formatString("; %zu more sections", result.sections.size() - kNamed);
  }
  return result;
}

}  // namespace huxread
