#include "platform/forks/ResourceFork.h"
#include "tests/support/BigEndian.h"
#include "tests/support/Refusals.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

using Refusals::eachBeginning;

namespace {

/// A fork built by hand: two types and three resources. Two resources have names, and two share their data.
struct HandMade {
    QByteArray reserved = QByteArray(112, 's') + QByteArray(128, 'a');
    QByteArray data = big<quint32>(3) + "abc" + big<quint32>(0) + big<quint32>(5) + "12345";
    quint16 attributes = 0x1234;
    QByteArray types = big<quint16>(1) + "icns" + big<quint16>(1) + big<quint16>(18) + "TEXT" +
                       big<quint16>(0) + big<quint16>(42);
    QByteArray references = big<qint16>(-16455) + big<quint16>(0xffff) + big<quint32>(0x20000000) +
                            big<quint32>(0) + big<qint16>(128) + big<quint16>(0) + big<quint32>(11) +
                            big<quint32>(0) + big<qint16>(7) + big<quint16>(5) + big<quint32>(11) +
                            big<quint32>(0);
    QByteArray names = QByteArray("\4four", 5) + QByteArray("\0", 1);

    QByteArray header() const {
        const auto mapLength = static_cast<quint32>(28 + types.size() + references.size() + names.size());
        return big<quint32>(256) + big(static_cast<quint32>(256 + data.size())) +
               big(static_cast<quint32>(data.size())) + big(mapLength);
    }

    QByteArray bytes() const {
        return header() + reserved + data + header() + big<quint32>(0) + big<quint16>(0) + big(attributes) +
               big<quint16>(28) + big(static_cast<quint16>(28 + types.size() + references.size())) + types +
               references + names;
    }
};

void expectDamaged(const QByteArray& bytes) {
    const Result<ResourceFork> fork = ResourceFork::parse(bytes);
    ASSERT_FALSE(fork);
    EXPECT_EQ(fork.error().code, ErrorCode::Damaged);
    EXPECT_FALSE(fork.error().sentence.isEmpty());
}

Resource resource(const char (&type)[5], qint16 number, const QByteArray& data) {
    return {type, number, std::nullopt, 0, data};
}

QByteArray roundTrip(const QByteArray& bytes) {
    const Result<ResourceFork> fork = ResourceFork::parse(bytes);
    return fork ? *fork->data() : QByteArray();
}

} // namespace

TEST(ResourceFork, resources_are_read_with_all_that_belongs_to_them) {
    const Result<ResourceFork> fork = ResourceFork::parse(HandMade().bytes());
    ASSERT_TRUE(fork) << fork.error().sentence.toStdString();
    const std::vector<Resource> expected{{"icns", -16455, std::nullopt, 0x20, "abc"},
                                         {"icns", 128, QByteArray("four"), 0, "12345"},
                                         {"TEXT", 7, QByteArray(""), 0, "12345"}};
    EXPECT_EQ(fork->resources(), expected);
}

TEST(ResourceFork, what_is_read_is_written_again) {
    HandMade fork;
    // Bytes that belong to no resource are not kept, so this fork has none.
    fork.data = big<quint32>(3) + "abc" + big<quint32>(5) + "12345";
    fork.references.replace(QByteArray(big<quint32>(11)), QByteArray(big<quint32>(7)));
    EXPECT_EQ(roundTrip(fork.bytes()), fork.bytes());
}

TEST(ResourceFork, an_empty_fork_is_a_header_and_a_map_without_types) {
    const Result<QByteArray> bytes = ResourceFork().data();
    ASSERT_TRUE(bytes);
    EXPECT_EQ(bytes->size(), 16 + 240 + 28 + 2);
    EXPECT_TRUE(bytes->endsWith("\xff\xff"));
    const Result<ResourceFork> fork = ResourceFork::parse(*bytes);
    ASSERT_TRUE(fork);
    EXPECT_TRUE(fork->resources().empty());
    EXPECT_EQ(*fork, ResourceFork());
}

TEST(ResourceFork, adding_and_removing_changes_nothing_else) {
    Result<ResourceFork> fork = ResourceFork::parse(HandMade().bytes());
    ASSERT_TRUE(fork);
    const ResourceFork before = *fork;
    EXPECT_TRUE(fork->addResource(resource("ICN#", -16455, QByteArray(256, 'i'))));
    EXPECT_EQ(fork->resource("ICN#", -16455)->data, QByteArray(256, 'i'));
    const Result<ResourceFork> again = ResourceFork::parse(*fork->data());
    ASSERT_TRUE(again);
    EXPECT_EQ(again->resources(), fork->resources());
    EXPECT_TRUE(fork->removeResource("ICN#", -16455));
    EXPECT_FALSE(fork->removeResource("ICN#", -16455));
    EXPECT_FALSE(fork->removeResource("icns", 7));
    EXPECT_EQ(*fork, before);
}

TEST(ResourceFork, the_first_of_two_of_one_number_counts) {
    ResourceFork fork;
    EXPECT_TRUE(fork.addResource(resource("icns", 1, "first")));
    EXPECT_TRUE(fork.addResource(resource("icns", 1, "second")));
    EXPECT_EQ(fork.resource("icns", 1)->data, "first");
    EXPECT_TRUE(fork.removeResource("icns", 1));
    EXPECT_EQ(fork.resource("icns", 1)->data, "second");
}

TEST(ResourceFork, types_are_grouped_when_written) {
    ResourceFork fork;
    EXPECT_TRUE(fork.addResource(resource("aaaa", 1, "1")));
    EXPECT_TRUE(fork.addResource(resource("bbbb", 2, "2")));
    EXPECT_TRUE(fork.addResource(resource("aaaa", 3, "3")));
    const Result<ResourceFork> again = ResourceFork::parse(*fork.data());
    ASSERT_TRUE(again);
    const std::vector<Resource> expected{resource("aaaa", 1, "1"), resource("aaaa", 3, "3"),
                                         resource("bbbb", 2, "2")};
    EXPECT_EQ(again->resources(), expected);
}

TEST(ResourceFork, shared_data_stay_shared) {
    HandMade fork;
    const QByteArray written = roundTrip(fork.bytes());
    EXPECT_EQ(written.count("12345"), 1);
}

TEST(ResourceFork, a_fork_cut_off_at_any_byte_is_damaged) {
    eachBeginning(HandMade().bytes(), expectDamaged);
}

TEST(ResourceFork, places_outside_are_damaged) {
    const QByteArray good = HandMade().bytes();
    for (const qsizetype at : {0, 4, 8, 12}) {
        for (const quint32 value : {0xffffffffU, 0x7fffffffU, static_cast<quint32>(good.size() + 1)}) {
            QByteArray bytes = good;
            bytes.replace(at, 4, big(value));
            expectDamaged(bytes);
        }
    }
    const qsizetype map = 256 + HandMade().data.size();
    for (const qsizetype at : {24, 26, 34, 36, 42, 44}) {
        QByteArray bytes = good;
        bytes.replace(map + at, 2, big<quint16>(0xfffe));
        expectDamaged(bytes);
    }
    // A name's offset, the offset of a resource's data, and the length of that data.
    QByteArray name = good;
    name.replace(map + 46 + 12 + 2, 2, big<quint16>(0x7fff));
    expectDamaged(name);
    QByteArray data = good;
    data.replace(map + 46 + 4, 4, big<quint32>(0x00ffffff));
    expectDamaged(data);
    QByteArray length = good;
    length.replace(256, 4, big<quint32>(0xffffffff));
    expectDamaged(length);
}

TEST(ResourceFork, parts_that_begin_in_the_header_are_damaged) {
    QByteArray bytes = HandMade().bytes();
    bytes.replace(0, 4, big<quint32>(8));
    expectDamaged(bytes);
}

TEST(ResourceFork, data_that_begin_inside_of_others_are_damaged) {
    HandMade fork;
    fork.data = big<quint32>(8) + big<quint32>(1) + "abcd" + "----";
    fork.references.replace(QByteArray(big<quint32>(11)), QByteArray(big<quint32>(4)));
    expectDamaged(fork.bytes());
}

TEST(ResourceFork, lists_that_share_bytes_stand_for_no_more_than_there_are) {
    HandMade fork;
    // 2,000 types that all point at one list of 500 references.
    fork.types = big<quint16>(1999);
    const QByteArray type = "aaaa" + big<quint16>(499) + big<quint16>(2 + 2000 * 8);
    for (int i = 0; i < 2000; ++i)
        fork.types += type;
    fork.references = QByteArray();
    for (int i = 0; i < 500; ++i)
        fork.references += big<qint16>(1) + big<quint16>(0xffff) + big<quint32>(0) + big<quint32>(0);
    expectDamaged(fork.bytes());
}

TEST(ResourceFork, what_does_not_fit_is_refused) {
    ResourceFork longName;
    EXPECT_TRUE(longName.addResource({"icns", 1, QByteArray(256, 'n'), 0, {}}));
    EXPECT_EQ(longName.data().error().code, ErrorCode::Unsupported);

    ResourceFork manyNames;
    for (int i = 0; i < 300; ++i)
        EXPECT_TRUE(manyNames.addResource(
            {"icns", static_cast<qint16>(i), QByteArray(250, 'n') + QByteArray::number(1000 + i), 0, {}}));
    EXPECT_EQ(manyNames.data().error().code, ErrorCode::Unsupported);

    ResourceFork manyOfOneType;
    for (int i = 0; i < 6000; ++i)
        EXPECT_TRUE(manyOfOneType.addResource(resource("icns", static_cast<qint16>(i), {})));
    EXPECT_EQ(manyOfOneType.data().error().code, ErrorCode::Unsupported);

    ResourceFork manyTypes;
    for (quint32 i = 0; i < 6000; ++i)
        EXPECT_TRUE(manyTypes.addResource({FourCharCode(i), 1, std::nullopt, 0, {}}));
    EXPECT_EQ(manyTypes.data().error().code, ErrorCode::Unsupported);

    ResourceFork muchData;
    EXPECT_TRUE(muchData.addResource(resource("icns", 1, QByteArray(0x1000000, 'd'))));
    ASSERT_TRUE(muchData.data());
    EXPECT_TRUE(muchData.addResource(resource("icns", 2, "2")));
    EXPECT_EQ(muchData.data().error().code, ErrorCode::Unsupported);
}

TEST(ResourceFork, chosen_types_take_no_longer_than_others) {
    // The quickest of some rounds: what else the machine does must not count.
    const auto nanoseconds = [](quint32 step) {
        constexpr quint32 count = 2800;
        ResourceFork fork;
        for (quint32 i = 1; i <= count; ++i)
            EXPECT_TRUE(fork.addResource({FourCharCode(i * step), 1, std::nullopt, 0, {}}));
        qint64 quickest = std::numeric_limits<qint64>::max();
        for (int round = 0; round < 15; ++round) {
            QElapsedTimer timer;
            timer.start();
            EXPECT_TRUE(fork.data());
            quickest = std::min(quickest, timer.nsecsElapsed());
        }
        return quickest;
    };
    // A number of buckets that the standard library's hash tables grow to.
    EXPECT_LT(nanoseconds(5087), 3 * nanoseconds(5081));
}
