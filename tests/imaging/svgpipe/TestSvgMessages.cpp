#include "imaging/svgpipe/SvgMessages.h"

#include <gtest/gtest.h>

#include <limits>

using namespace SvgPipe;

TEST(SvgMessages, a_drawing_has_pixels_and_a_place) {
    const auto drawing = [](int width, int height) { return Request{width, height, {0, 0, 5, 7}}; };
    EXPECT_TRUE(isValid(drawing(1, 1)));
    EXPECT_TRUE(isValid(drawing(16384, 16384)));
    for (const Request& request : {drawing(0, 1), drawing(1, -1), drawing(16385, 16384), drawing(1000001, 1)})
        EXPECT_FALSE(isValid(request)) << request.width << " x " << request.height;
    Request request = drawing(5, 7);
    EXPECT_EQ(request.bytes(), 140U);
    request.place = 3 * placeBytes;
    EXPECT_TRUE(isValid(request));
    request.place += 1;
    EXPECT_FALSE(isValid(request));
    request = drawing(5, 7);
    request.viewport[2] = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(isValid(request));
}

TEST(SvgMessages, drawings_are_the_same_wherever_their_pixels_are) {
    const Request request{5, 7, {0, 0, 5, 7}};
    Request other = request;
    other.place = placeBytes;
    EXPECT_TRUE(request.drawsAs(other));
    other.viewport[0] = 1;
    EXPECT_FALSE(request.drawsAs(other));
    EXPECT_FALSE(request.drawsAs({5, 8, {0, 0, 5, 7}}));
}

TEST(SvgMessages, a_document_has_a_size) {
    Answer answer;
    EXPECT_TRUE(isValid(answer));
    answer.kind = AnswerKind::Size;
    EXPECT_FALSE(isValid(answer));
    answer.width = answer.height = 0.5;
    EXPECT_TRUE(isValid(answer));
    answer.height = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(isValid(answer));
    answer.mark += 1;
    answer.kind = AnswerKind::Drawn;
    EXPECT_FALSE(isValid(answer));
}
