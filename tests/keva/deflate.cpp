#include "keva/deflate.h"

#include <algorithm>
#include <random>

#include "bytes.h"

// Few different letters in any order: the last level looks furthest for the longest repetition.
TEST(Deflate, IsOfLevelNine) {
  std::string letters(100'000, '\0');
  std::minstd_rand random;
  std::ranges::generate(letters, [&random] { return "abc"[random() % 3]; });
  const auto sizeAt = [&letters](int level) {
    uLongf size = compressBound(letters.size());
    std::string stream(size, '\0');
    compress2(reinterpret_cast<Bytef*>(stream.data()), &size,
              reinterpret_cast<const Bytef*>(letters.data()), letters.size(), level);
    return size;
  };
  ASSERT_NE(sizeAt(8), sizeAt(9));
  EXPECT_EQ(deflateOrEnd(letters, kDocumentSite).size(), sizeAt(9));
}

TEST(Deflate, MakesAWholeStreamOfAnyLength) {
  for (const std::size_t size : {0U, 1U, 16384U, 16385U, 1000000U}) {
    std::string noise(size, '\0');  // does not get shorter: the output takes many rounds too
    std::ranges::generate(noise, std::minstd_rand());
    for (const std::string& input : {std::string(size, 'a'), noise}) {
      const std::string stream = deflateOrEnd(input, kDocumentSite);
      EXPECT_EQ(stream.substr(0, 2), "\x78\xDA");  // zlib, window of 32 KB, best compression
      std::string_view rest = stream;
      EXPECT_EQ(takeStream(rest), input) << size;
      EXPECT_EQ(rest, "");
    }
  }
}
