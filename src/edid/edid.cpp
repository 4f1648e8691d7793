#include "edid/edid.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <string_view>
#include <utility>

#include "base/digits.h"
#include "base/formatString.h"
#include "base/text.h"

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kBlockSize = 128;
constexpr std::size_t kMaxBlocks = 256;  // a base block counts its extensions in one byte
constexpr std::size_t kDescriptorSize = 18;
constexpr std::uint32_t kFirstYear = 1990;

// Their sizes are part of the types: constant offsets into them are checked by the compiler.
using Block = std::span<const std::uint8_t, kBlockSize>;
using Descriptor = std::span<const std::uint8_t, kDescriptorSize>;

constexpr std::array<std::uint8_t, 8> kHeader = {0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0};

bool isBaseBlock(Bytes bytes) {
  return bytes.size() >= kBlockSize && std::ranges::equal(bytes.first<8>(), kHeader) &&
         bytes[18] == 1;
}

// The number that the bytes are, the lowest one first.
std::uint32_t numberIn(Bytes bytes) {
  std::uint32_t number = 0;
  for (std::size_t i = bytes.size(); i-- > 0;) number = number << 8 | bytes[i];
  return number;
}

// The text of a descriptor: ASCII up to a line feed, without anything that cannot be printed.
std::string textIn(Descriptor descriptor) {
  std::string text;
  for (const std::uint8_t byte : descriptor.subspan<5>()) {
    if (byte == '\n') break;
    if (byte >= 0x20 && byte < 0x7F) text.push_back(static_cast<char>(byte));
  }
  return text;
}

// Whether a serial number states none. One number is what every built-in panel of Apple silicon
// says.
bool isFiller(std::uint32_t number) {
  constexpr std::uint32_t kFillers[] = {0, 1, 0x01010101, 0xFD626D62, 0xFFFFFFFF};
  return std::ranges::find(kFillers, number) != std::end(kFillers);
}

// The same for its text, which spells the number in decimal or in hexadecimal: the latter with all
// eight digits, or with "0x" before any.
bool isFiller(std::string_view text) {
  const auto isNumberOfNone = [](std::optional<std::uint32_t> number) {
    return number && isFiller(*number);
  };
  const bool isHexadecimal = text.size() == 8 || text.starts_with("0x") || text.starts_with("0X");
  return text.empty() || isNumberOfNone(decimalNumber(text)) ||
         (isHexadecimal && isNumberOfNone(hexadecimalNumber(text)));
}

struct DetailedTiming {
  VideoMode mode;
  unsigned width;  // of the image, in millimetres
  unsigned height;
};

// Twelve bits: eight of their own and four of a byte that is shared with another number.
unsigned twelveBits(unsigned low, unsigned high) {
  return low | (high & 0xF) << 8;
}

// Empty when there is no picture in it, or one byte alone: old blocks fill what they do not use.
std::optional<DetailedTiming> detailedTiming(Descriptor bytes) {
  const double pixelClock = numberIn(bytes.first<2>()) * 10000.0;  // Hz
  const unsigned width = twelveBits(bytes[2], bytes[4] >> 4);
  const unsigned height = twelveBits(bytes[5], bytes[7] >> 4);
  const unsigned lineLength = width + twelveBits(bytes[3], bytes[4]);
  double lines = height + twelveBits(bytes[6], bytes[7]);
  const bool isFilled = std::ranges::count(bytes, bytes[0]) == kDescriptorSize;
  if (width == 0 || height == 0 || isFilled) return std::nullopt;
  const bool interlaced = (bytes[17] & 0x80) != 0;
  if (interlaced) lines += 0.5;  // of one field: two of them make an odd number
  return DetailedTiming{
      {width, interlaced ? 2 * height : height, pixelClock / (lineLength * lines), interlaced},
      twelveBits(bytes[12], bytes[14] >> 4),
      twelveBits(bytes[13], bytes[14])
  };
}

class Decoder {
 public:
  Edid decode(Bytes bytes) {
    const Block base = bytes.first<kBlockSize>();
    readBase(base);
    const std::size_t blocks = std::min(bytes.size() / kBlockSize, kMaxBlocks);
    for (std::size_t i = 1; i < blocks; ++i) {
      const Block extension = bytes.subspan(i * kBlockSize).first<kBlockSize>();
      if (extension[0] == 2) readCta(extension);
    }
    if (edid_.serial.empty()) edid_.serial = serialNumber(numberIn(base.subspan<12, 4>()));
    TrimChars(edid_.name, " ", kTrimBoth);
    collectModes();
    return std::move(edid_);
  }

 private:
  void readBase(Block base) {
    edid_.manufacturer = manufacturerName(static_cast<unsigned>(base[8] << 8 | base[9]));
    edid_.product = numberIn(base.subspan<10, 2>());
    edid_.date = manufactureDate(base[16], kFirstYear + base[17]);
    edid_.version = base[18];
    edid_.revision = base[19];
    edid_.digital = (base[20] & 0x80) != 0;
    if (base[21] != 0 && base[22] != 0) {  // one alone states a ratio
      edid_.width = 10U * base[21];
      edid_.height = 10U * base[22];
    }
    addListed(base.subspan<35, 3>(), establishedModes(), established_);
    addStandard(base.subspan<38, 16>());
    for (const std::size_t at : {54U, 72U, 90U, 108U}) {
      readDescriptor(base.subspan(at).first<kDescriptorSize>());
    }
  }

  void readDescriptor(Descriptor descriptor) {
    if (descriptor[0] == 0 && descriptor[1] == 0) {
      readDisplayDescriptor(descriptor);
    } else if (const auto timing = detailedTiming(descriptor)) {
      addDetailed(*timing);
    }
  }

  void readDisplayDescriptor(Descriptor descriptor) {
    switch (descriptor[3]) {
      case 0xF7:
        addListed(descriptor.subspan<6, 6>(), furtherEstablishedModes(), established_);
        break;
      case 0xFA:
        addStandard(descriptor.subspan<5, 12>());
        break;
      case 0xFC:
        edid_.name += textIn(descriptor);
        break;
      case 0xFD:
        readRanges(descriptor);
        break;
      case 0xFF:
        readSerial(descriptor);
        break;
      default:
        break;
    }
  }

  void readSerial(Descriptor descriptor) {
    std::string text = textIn(descriptor);
    TrimChars(text, " ", kTrimBoth);
    if (edid_.serial.empty() && !isFiller(text)) edid_.serial = text;
  }

  // Since revision 4 a pair of bits adds 255 to a maximum (2) or to both limits (3).
  void readRanges(Descriptor descriptor) {
    const unsigned offsets = edid_.revision >= 4 ? descriptor[4] : 0U;
    const auto limits = [&](std::size_t at, unsigned bits) {
      const unsigned min = descriptor[at];
      const unsigned max = descriptor[at + 1];
      return Edid::Range{(bits & 3) == 3 ? min + 255 : min, (bits & 2) != 0 ? max + 255 : max};
    };
    edid_.vertical = limits(5, offsets);
    edid_.horizontal = limits(7, offsets >> 2);
    if (descriptor[9] != 0xFF) edid_.maxPixelClock = 10U * descriptor[9];
  }

  // A CTA-861 extension: since revision 3 data blocks, then descriptors up to the end or a slot of
  // zeros.
  void readCta(Block block) {
    constexpr std::size_t kStart = 4;
    constexpr std::size_t kEnd = kBlockSize - 1;  // the last byte is the check sum
    const std::size_t timings = block[2];
    if (timings < kStart || timings > kEnd) return;
    if (block[1] >= 3) readDataBlocks(block.subspan(kStart, timings - kStart));
    for (std::size_t at = timings; at + kDescriptorSize <= kEnd; at += kDescriptorSize) {
      const Descriptor descriptor = block.subspan(at).first<kDescriptorSize>();
      if (std::ranges::count(descriptor, 0) == kDescriptorSize) return;
      readDescriptor(descriptor);
    }
  }

  void readDataBlocks(Bytes bytes) {
    constexpr unsigned kVideo = 2;
    constexpr unsigned kExtended = 7;   // the kind is in the next byte
    constexpr unsigned kVideo420 = 14;  // modes in YCbCr 4:2:0 alone
    while (!bytes.empty()) {
      const unsigned kind = bytes[0] >> 5;
      const std::size_t length = bytes[0] & 0x1F;
      if (length >= bytes.size()) return;
      const Bytes content = bytes.subspan(1, length);
      if (kind == kVideo) {
        addNumbered(content);
      } else if (kind == kExtended && length > 0 && content[0] == kVideo420) {
        addNumbered(content.subspan(1));
      }
      bytes = bytes.subspan(1 + length);
    }
  }

  // Numbers up to 64 have a bit that marks native modes; with it they end at 192.
  void addNumbered(Bytes numbers) {
    for (const std::uint8_t number : numbers) {
      const bool isNative = number > 128 && number <= 192;
      if (const auto mode = ctaMode(isNative ? number - 128U : number)) detailed_.push_back(*mode);
    }
  }

  // One bit for each mode of a list, from the highest bit of the first byte on.
  static void addListed(Bytes bits, std::span<const VideoMode> list,
                        std::vector<VideoMode>& modes) {
    for (std::size_t i = 0; i < list.size(); ++i) {
      if ((bits[i / 8] & 0x80 >> i % 8) != 0) modes.push_back(list[i]);
    }
  }

  // Two bytes for each mode: the width, and the shape of the picture with the rate. The first shape
  // was a square before revision 3.
  void addStandard(Bytes codes) {
    struct Shape {
      unsigned width;
      unsigned height;
    };
    constexpr Shape kShapes[] = {
        {16, 10},
        {4,  3 },
        {5,  4 },
        {16, 9 }
    };
    for (std::size_t i = 0; i < codes.size(); i += 2) {
      if (codes[i] <= 1) continue;  // not used
      const unsigned width = (codes[i] + 31U) * 8;
      Shape shape = kShapes[codes[i + 1] >> 6];
      if (edid_.revision < 3 && shape.height == 10) shape = {1, 1};
      const unsigned rate = 60U + (codes[i + 1] & 0x3F);
      standard_.push_back(standardMode(width, width * shape.height / shape.width, rate));
    }
  }

  void addDetailed(const DetailedTiming& timing) {
    constexpr unsigned kSmallest = 10;  // millimetres; below it are ratios, 16 by 9 and 4 by 3
    if (!preferred_) preferred_ = timing.mode;
    detailed_.push_back(timing.mode);
    if (edid_.width == 0 && timing.width >= kSmallest && timing.height >= kSmallest) {
      edid_.width = timing.width;
      edid_.height = timing.height;
    }
  }

  void collectModes() {
    const auto add = [this](const VideoMode& mode) {
      const auto same = [&](const VideoMode& other) { return isSame(mode, other); };
      if (std::ranges::none_of(edid_.modes, same)) edid_.modes.push_back(mode);
    };
    edid_.hasPreferred = preferred_.has_value();
    if (preferred_) add(*preferred_);
    for (const auto* modes : {&established_, &standard_, &detailed_}) {
      std::ranges::for_each(*modes, add);
    }
  }

  Edid edid_;
  std::optional<VideoMode> preferred_;
  std::vector<VideoMode> established_;
  std::vector<VideoMode> standard_;
  std::vector<VideoMode> detailed_;
};

}  // namespace

std::optional<Edid> decodeEdid(std::span<const std::uint8_t> bytes) {
  if (!isBaseBlock(bytes)) return std::nullopt;
  return Decoder().decode(bytes);
}

std::string manufacturerName(std::uint32_t packed) {
  std::string name;
  for (const unsigned shift : {10U, 5U, 0U}) {
    const unsigned letter = packed >> shift & 0x1F;
    if (letter < 1 || letter > 26) return "";
    name.push_back(static_cast<char>('A' + letter - 1));
  }
  return packed <= 0xFFFF ? name : "";
}

std::string serialNumber(std::uint32_t number) {
  return isFiller(number) ? "" : formatString("%u", number);
}

std::string manufactureDate(std::uint32_t week, std::uint32_t year) {
  namespace chrono = std::chrono;
  constexpr std::uint32_t kLastYear = kFirstYear + 255;
  constexpr std::uint32_t kLastWeek = 54;
  const bool hasWeek = week >= 1 && week <= kLastWeek;
  if (year < kFirstYear || year > kLastYear || (year == kFirstYear && !hasWeek)) return "";
  const chrono::year_month_day newYear(chrono::year(static_cast<int>(year)), chrono::January,
                                       chrono::day(1));
  const chrono::weeks completed(hasWeek ? week - 1 : 0);
  const chrono::year_month_day date(chrono::sys_days(newYear) + completed);
  return formatString("%04d-%02u-%02u", static_cast<int>(date.year()),
                      static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
}
