#include "imaging/svgpipe/SharedMemory.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace {

std::span<const std::byte> bytesOf(std::string_view text) {
    return std::as_bytes(std::span(text));
}

/// The memory as the other side gets it.
SharedMemory received(const SharedMemory& memory) {
    return SharedMemory(::fcntl(memory.descriptor(), F_DUPFD_CLOEXEC, 0));
}

} // namespace

TEST(SharedMemory, what_one_side_writes_the_other_reads) {
    SharedMemory own = SharedMemory::create(3000);
    ASSERT_TRUE(own.isOpen());
    SharedMemory other = received(own);
    std::byte* written = own.map(3000);
    const std::byte* read = other.map(3000);
    ASSERT_TRUE(written != nullptr && read != nullptr);
    EXPECT_TRUE(std::all_of(read, read + 3000, [](std::byte one) { return one == std::byte{0}; }));
    written[2999] = std::byte{7};
    EXPECT_EQ(read[2999], std::byte{7});
}

TEST(SharedMemory, it_holds_bytes_from_its_begin) {
    const std::string_view text = "<svg/>";
    const SharedMemory own = SharedMemory::holding(bytesOf(text));
    SharedMemory other = received(own);
    const std::byte* bytes = other.map(text.size());
    ASSERT_NE(bytes, nullptr);
    EXPECT_TRUE(std::ranges::equal(bytesOf(text), std::span(bytes, text.size())));
}

TEST(SharedMemory, it_may_be_empty) {
    SharedMemory memory = SharedMemory::holding({});
    ASSERT_TRUE(memory.isOpen());
    EXPECT_NE(memory.map(0), nullptr);
}

TEST(SharedMemory, no_more_is_mapped_than_there_is) {
    SharedMemory memory = SharedMemory::create(5000);
    EXPECT_EQ(memory.map(5001), nullptr);
    EXPECT_NE(memory.map(5000), nullptr);
    SharedMemory none(-1);
    EXPECT_FALSE(none.isOpen());
    EXPECT_EQ(none.map(1), nullptr);
}

TEST(SharedMemory, memory_that_no_address_space_has_room_for_is_not_mapped) {
    SharedMemory memory = SharedMemory::create(std::size_t{1} << 60);
    EXPECT_TRUE(!memory.isOpen() || memory.map(std::size_t{1} << 60) == nullptr);
}

TEST(SharedMemory, its_descriptor_is_closed_with_it_and_when_it_is_mapped) {
    int number = -1;
    {
        const SharedMemory memory = SharedMemory::create(1);
        number = memory.descriptor();
        EXPECT_GE(::fcntl(number, F_GETFD), 0);
    }
    EXPECT_LT(::fcntl(number, F_GETFD), 0);
    SharedMemory mapped = SharedMemory::create(1);
    number = mapped.descriptor();
    ASSERT_NE(mapped.map(1), nullptr);
    EXPECT_LT(::fcntl(number, F_GETFD), 0);
}

#ifdef __linux__
TEST(SharedMemory, the_other_side_can_not_change_its_size) {
    const SharedMemory memory = SharedMemory::create(5000);
    EXPECT_NE(::ftruncate(memory.descriptor(), 1), 0);
    EXPECT_NE(::ftruncate(memory.descriptor(), 100000), 0);
}
#endif
