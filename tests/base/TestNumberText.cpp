#include "base/NumberText.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <system_error>

using NumberText::Number;

namespace {

void expectNumber(std::string_view text, double value, std::size_t length) {
    const Number found = NumberText::leading(text);
    EXPECT_TRUE(found.isInRange) << text;
    EXPECT_EQ(found.value, value) << text;
    EXPECT_EQ(std::signbit(found.value), std::signbit(value)) << text;
    EXPECT_EQ(found.length, length) << text;
}

void expectNone(std::string_view text) {
    EXPECT_EQ(NumberText::leading(text).length, 0U) << text;
}

void expectOutOfRange(std::string_view text) {
    const Number found = NumberText::leading(text);
    EXPECT_FALSE(found.isInRange) << text;
    EXPECT_EQ(found.length, text.size()) << text;
}

} // namespace

TEST(NumberText, digits_with_point_and_exponent) {
    expectNumber("40", 40, 2);
    expectNumber("-40.25", -40.25, 6);
    expectNumber(".5", 0.5, 2);
    expectNumber("-.5", -0.5, 3);
    expectNumber("5.", 5, 2);
    expectNumber("1e3", 1000, 3);
    expectNumber("1.5E+3", 1500, 6);
    expectNumber("25.e-2", 0.25, 6);
    expectNumber("007", 7, 3);
    expectNumber("-0", -0.0, 2);
    expectNumber("0e999999999999999999999", 0, 23);
}

TEST(NumberText, what_follows_a_number_is_left) {
    expectNumber("40px", 40, 2);
    expectNumber("1.2.3", 1.2, 3);
    expectNumber("1-2", 1, 1);
    expectNumber("1e", 1, 1);
    expectNumber("1e+", 1, 1);
    expectNumber("1.e-x", 1, 2);
    expectNumber("0x10", 0, 1);
    expectNumber("1,5", 1, 1);
    expectNumber("7 ", 7, 1);
}

TEST(NumberText, no_number) {
    for (const std::string_view text :
         {"", "-", ".", "-.", "+1", " 1", "--1", "e5", ".e5", "in", "na", "-in", "px", "x1", "- 1"})
        expectNone(text);
}

TEST(NumberText, words) {
    const double infinity = std::numeric_limits<double>::infinity();
    expectNumber("inf", infinity, 3);
    expectNumber("-INFinite", -infinity, 4);
    expectNumber("Infinity", infinity, 8);
    for (const auto& [text, length] :
         {std::pair("nan", 3U), std::pair("NaN(x", 3U), std::pair("nan(a_1)2", 8U), std::pair("-nan()", 6U),
          std::pair("nan(-)", 3U)}) {
        EXPECT_TRUE(std::isnan(NumberText::leading(text).value)) << text;
        EXPECT_EQ(NumberText::leading(text).length, length) << text;
    }
}

TEST(NumberText, the_ends_of_the_range) {
    expectNumber("1.7976931348623157e308", std::numeric_limits<double>::max(), 22);
    expectNumber("5e-324", std::numeric_limits<double>::denorm_min(), 6);
    expectNumber("2.2250738585072011e-308", 0x0.fffffffffffffp-1022, 23);
    for (const std::string_view text : {"1e400", "-1e400", "1.8e308", "1e-400", "-1e-400", "2e-324",
                                        "1e99999999999999999999", "1e-99999999999999999999"})
        expectOutOfRange(text);
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(NumberText::leading("1e400").value, infinity);
    EXPECT_EQ(NumberText::leading("-1e400").value, -infinity);
    EXPECT_EQ(NumberText::leading("1e-400").value, 0);
    EXPECT_EQ(NumberText::leading("-1e-99999999999999999999").value, 0);
    EXPECT_EQ(NumberText::leading("1.8E+308").value, infinity);
    EXPECT_EQ(NumberText::leading("2e-324").value, 0);
    EXPECT_EQ(NumberText::leading(std::string(400, '9')).value, infinity);
    EXPECT_EQ(NumberText::leading(std::string("0.").append(400, '0').append("1")).value, 0);
    EXPECT_EQ(NumberText::leading(std::string("0.").append(400, '0').append("1e800")).value, infinity);
    EXPECT_EQ(NumberText::leading(std::string("1").append(400, '0').append(".5e-800")).value, 0);
}

TEST(NumberText, the_nearest_double) {
    expectNumber("0.1", 0.1, 3);
    expectNumber("9007199254740993", 9007199254740992, 16);
    // Half way between two doubles, and a little more than half way.
    expectNumber("9007199254740993.0000000000000000000000000000000000000000001", 9007199254740994, 60);
    expectNumber(std::string("0.").append(400, '0').append("1e401"), 1, 407);
    expectNumber(std::string("1").append(400, '0').append("e-400"), 1, 406);
}

#ifdef __cpp_lib_to_chars
TEST(NumberText, reads_as_the_c_plus_plus_library_does) {
    std::mt19937 random(1);
    const std::string_view alphabet = "0123456789012345678901234567890123456789..--+eEeEinfatyINFN()_ x";
    for (int i = 0; i < 300000; ++i) {
        std::string text;
        const std::size_t length = 1 + random() % (i % 10 == 0 ? 60 : 12);
        while (text.size() < length)
            text += alphabet[random() % alphabet.size()];
        if (i % 4 == 0)
            text.append("e").append(std::to_string(static_cast<int>(random() % 700) - 350));
        double value = 0;
        const std::from_chars_result wanted = std::from_chars(text.data(), text.data() + text.size(), value);
        const Number found = NumberText::leading(text);
        ASSERT_EQ(found.length, static_cast<std::size_t>(wanted.ptr - text.data())) << text;
        ASSERT_EQ(found.isInRange, wanted.ec != std::errc::result_out_of_range) << text;
        if (found.isInRange) {
            ASSERT_TRUE(found.value == value || (std::isnan(found.value) && std::isnan(value)))
                << text << ": " << found.value << " and " << value;
            ASSERT_EQ(std::signbit(found.value), std::signbit(value)) << text;
        }
    }
}
#endif
