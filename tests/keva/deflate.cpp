#include "keva/deflate.h"

#include <algorithm>
#include <random>

#include "bytes.h"

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
