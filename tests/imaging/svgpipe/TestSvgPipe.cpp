#include "imaging/svgpipe/SvgMessages.h"
#include "imaging/svgpipe/SvgPipe.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <limits>
#include <utility>

using namespace SvgPipe;

namespace {

/// Two connected ends of a pipe, as a program and its worker have them.
class Pipe : public testing::Test {
  public:
    Pipe() { EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, m_ends.data()), 0); }
    ~Pipe() override {
        close(0);
        close(1);
    }

  protected:
    int end(std::size_t index) const { return m_ends.at(index); }
    void close(std::size_t index) {
        if (m_ends.at(index) >= 0)
            ::close(std::exchange(m_ends.at(index), -1));
    }

  private:
    std::array<int, 2> m_ends{-1, -1};
};

int lowestFreeDescriptor() {
    const int descriptor = ::dup(STDERR_FILENO);
    ::close(descriptor);
    return descriptor;
}

Request drawing(int width, int height) {
    Request request;
    request.kind = RequestKind::Drawing;
    request.width = width;
    request.height = height;
    request.viewport = {0, 0, 5, 7};
    return request;
}

} // namespace

TEST_F(Pipe, records_come_one_by_one_with_their_descriptors) {
    const int memory = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    ASSERT_TRUE(send(end(0), bytesOf(drawing(5, 7)), memory));
    ASSERT_TRUE(send(end(0), bytesOf(drawing(11, 13))));
    ::close(memory);
    Request request;
    int descriptor = -1;
    EXPECT_EQ(receive(end(1), writableBytesOf(request), &descriptor), sizeof request);
    EXPECT_TRUE(request == drawing(5, 7));
    EXPECT_EQ(::fcntl(descriptor, F_GETFD), FD_CLOEXEC);
    ::close(descriptor);
    EXPECT_EQ(receive(end(1), writableBytesOf(request), &descriptor), sizeof request);
    EXPECT_TRUE(request == drawing(11, 13));
    EXPECT_EQ(descriptor, -1);
}

TEST_F(Pipe, a_descriptor_that_nobody_expects_is_closed) {
    const int memory = ::open("/dev/null", O_RDONLY);
    ASSERT_TRUE(send(end(0), bytesOf(drawing(5, 7)), memory));
    ::close(memory);
    const int firstFree = lowestFreeDescriptor();
    Request request;
    EXPECT_EQ(receive(end(1), writableBytesOf(request)), sizeof request);
    EXPECT_EQ(lowestFreeDescriptor(), firstFree);
}

TEST_F(Pipe, a_part_of_a_record_shows_by_its_length) {
    const Request request = drawing(5, 7);
    ASSERT_TRUE(send(end(0), bytesOf(request).first(9)));
    Request part;
    EXPECT_EQ(receive(end(1), writableBytesOf(part)), 9U);
}

TEST_F(Pipe, the_end_of_the_other_side_shows_at_once) {
    close(0);
    Request request;
    EXPECT_EQ(receive(end(1), writableBytesOf(request)), 0U);
    EXPECT_FALSE(send(end(1), bytesOf(request)));
}

TEST_F(Pipe, an_end_that_does_not_wait_tells_where_there_is_no_room) {
    ASSERT_EQ(::fcntl(end(0), F_SETFL, O_NONBLOCK), 0);
    int count = 0;
    while (count < 1000000 && send(end(0), bytesOf(drawing(5, 7))))
        ++count;
    // More than a program ever asks for ahead of the answers.
    EXPECT_GE(count, 34);
    EXPECT_LT(count, 1000000);
}

TEST(SvgMessages, a_drawing_has_pixels_and_a_place) {
    EXPECT_TRUE(isValid(drawing(1, 1)));
    EXPECT_TRUE(isValid(drawing(16384, 16384)));
    for (const Request& request : {drawing(0, 1), drawing(1, -1), drawing(16385, 16384), drawing(1000001, 1)})
        EXPECT_FALSE(isValid(request)) << request.width << " x " << request.height;
    Request request = drawing(5, 7);
    EXPECT_EQ(request.sharedBytes(), 140U);
    request.viewport[2] = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(isValid(request));
    request = drawing(5, 7);
    request.mark += 1;
    EXPECT_FALSE(isValid(request));
}

TEST(SvgMessages, a_document_has_a_largest_size) {
    Request request;
    EXPECT_TRUE(isValid(request));
    request.documentBytes = mostDocumentBytes;
    EXPECT_TRUE(isValid(request));
    EXPECT_EQ(request.sharedBytes(), std::size_t{64} << 20);
    request.documentBytes += 1;
    EXPECT_FALSE(isValid(request));
}
