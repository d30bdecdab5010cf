#include "imaging/svgpipe/SharedPart.h"
#include "imaging/svgpipe/SvgMessages.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <memory>

namespace {

using SvgPipe::placeBytes;

/// Memory of two places.
class SharedPartTest : public testing::Test {
  public:
    SharedPartTest() { EXPECT_EQ(::ftruncate(memory(), 2 * placeBytes), 0); }

  protected:
    int memory() const { return ::fileno(m_file.get()); }

  private:
    std::unique_ptr<FILE, decltype(&std::fclose)> m_file{std::tmpfile(), std::fclose};
};

} // namespace

TEST_F(SharedPartTest, what_one_side_writes_the_other_reads) {
    const SharedPart own = sharedPart(memory(), placeBytes, 3000);
    const SharedPart other = sharedPart(memory(), placeBytes, 3000);
    const SharedPart whole = sharedPart(memory(), 0, 2 * placeBytes);
    ASSERT_TRUE(own && other && whole);
    EXPECT_TRUE(
        std::all_of(other.get(), other.get() + 3000, [](std::byte one) { return one == std::byte{}; }));
    own[2999] = std::byte{7};
    EXPECT_EQ(other[2999], std::byte{7});
    EXPECT_EQ(whole[placeBytes + 2999], std::byte{7});
}

TEST_F(SharedPartTest, no_more_is_mapped_than_there_is) {
    EXPECT_NE(sharedPart(memory(), placeBytes, placeBytes), nullptr);
    EXPECT_EQ(sharedPart(memory(), placeBytes, placeBytes + 1), nullptr);
    EXPECT_EQ(sharedPart(memory(), 2 * placeBytes, 1), nullptr);
    EXPECT_EQ(sharedPart(memory(), placeBytes, std::numeric_limits<std::size_t>::max()), nullptr);
    EXPECT_EQ(sharedPart(memory(), 0 - placeBytes, 2 * placeBytes), nullptr);
    EXPECT_EQ(sharedPart(-1, 0, 1), nullptr);
}
