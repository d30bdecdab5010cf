#include "generation/Platforms.h"
#include "tests/cli/CliTest.h"

#include <QDir>
#include <QJsonArray>

#include <map>
#include <set>

namespace {

class PlatformOption : public CliTest {
  protected:
    /// The number of files in each idiom's folder after a run with these platforms.
    std::map<std::string, int> filesPerFolder(const QStringList& platforms) const {
        QStringList arguments;
        for (const QString& platform : platforms)
            arguments << u"--platform"_s << platform;
        generated(sample(u"svg"_s), arguments);
        std::map<std::string, int> count;
        for (const std::string& name : tree())
            ++count[name.substr(0, name.find('/'))];
        return count;
    }
};

using Counts = std::map<std::string, int>;
const Counts everything{{"iphone", 9}, {"ipad", 10}, {"watch", 17}, {"mac", 11}, {"android", 7}};

} // namespace

TEST_F(PlatformOption, iphone_makes_the_iPhones_set_alone) {
    EXPECT_EQ(filesPerFolder({u"iphone"_s}), (Counts{{"iphone", 9}}));
}

TEST_F(PlatformOption, ipad_makes_the_iPads_set_alone) {
    EXPECT_EQ(filesPerFolder({u"ipad"_s}), (Counts{{"ipad", 10}}));
}

TEST_F(PlatformOption, watch_makes_the_watchs_set_alone) {
    EXPECT_EQ(filesPerFolder({u"watch"_s}), (Counts{{"watch", 17}}));
}

TEST_F(PlatformOption, mac_makes_the_Macs_set_and_the_container_alone) {
    EXPECT_EQ(filesPerFolder({u"mac"_s}), (Counts{{"mac", 11}}));
}

TEST_F(PlatformOption, android_makes_Androids_set_alone) {
    EXPECT_EQ(filesPerFolder({u"android"_s}), (Counts{{"android", 7}}));
}

TEST_F(PlatformOption, universal_makes_iPhone_and_iPad) {
    EXPECT_EQ(filesPerFolder({u"universal"_s}), (Counts{{"iphone", 9}, {"ipad", 10}}));
}

TEST_F(PlatformOption, all_makes_everything) {
    EXPECT_EQ(filesPerFolder({u"all"_s}), everything);
}

TEST_F(PlatformOption, everything_is_made_without_it) {
    EXPECT_EQ(filesPerFolder({}), everything);
}

TEST_F(PlatformOption, every_choice_of_the_table_is_a_word) {
    for (const Platforms::Choice& choice : Platforms::choices()) {
        Counts expected;
        for (const Platform platform : choice.platforms) {
            const std::string idiom = Platforms::idiom(platform).toStdString();
            expected[idiom] = everything.at(idiom);
        }
        EXPECT_EQ(filesPerFolder({QString::fromLatin1(choice.word)}), expected) << choice.word;
        QDir(out()).removeRecursively();
    }
}

TEST_F(PlatformOption, the_help_names_every_word) {
    const QString help = QString::fromUtf8(runCli({u"generate"_s, u"--help"_s}).output).simplified();
    EXPECT_TRUE(
        help.contains(u"-p, --platform NAME whose icons to make: iphone, ipad, universal (iphone and ipad), "
                      "watch, mac, android or all; several with commas (default: all)"_s))
        << help.toStdString();
}

TEST_F(PlatformOption, several_add_up) {
    EXPECT_EQ(filesPerFolder({u"watch"_s, u"android"_s}), (Counts{{"watch", 17}, {"android", 7}}));
}

TEST_F(PlatformOption, what_is_named_twice_is_made_once) {
    const QStringList words{u"--platform"_s, u"ipad"_s, u"--platform"_s, u"universal"_s,
                            u"--platform"_s, u"ipad"_s, u"--verbose"_s,  u"--json"_s};
    const ProcessResult result = generate(sample(u"svg"_s), words);
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(printedJson(result)[u"files"_s].toArray().size(), 19);
    // The log has one line for each set that begins and one for each set that is done.
    EXPECT_EQ(otherErrorLines(result).size(), 4) << result.errors.toStdString();
}

TEST_F(PlatformOption, sets_are_made_in_the_order_in_which_they_are_named) {
    const ProcessResult result =
        generated(sample(u"svg"_s), {u"--platform"_s, u"watch"_s, u"--platform"_s, u"iphone"_s, u"--json"_s});
    const QJsonArray files = printedJson(result)[u"files"_s].toArray();
    ASSERT_EQ(files.size(), 26);
    EXPECT_EQ(files.first().toObject()[u"platform"_s].toString().toStdString(), "watch");
    EXPECT_EQ(files.last().toObject()[u"platform"_s].toString().toStdString(), "iphone");
}

TEST_F(PlatformOption, several_platforms_are_written_with_commas) {
    EXPECT_EQ(filesPerFolder({u"mac,android"_s, u"watch"_s}),
              (Counts{{"mac", 11}, {"android", 7}, {"watch", 17}}));
}

TEST_F(PlatformOption, an_empty_part_of_a_list_is_refused) {
    const ProcessResult result = generate(sample(u"svg"_s), {u"--platform"_s, u"mac,"_s});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_TRUE(result.errors.contains("there is no platform ''")) << result.errors.toStdString();
    EXPECT_TRUE(tree().empty());
}

TEST_F(PlatformOption, names_are_taken_in_any_case) {
    EXPECT_EQ(filesPerFolder({u"MAC"_s, u"Android"_s}), (Counts{{"mac", 11}, {"android", 7}}));
}

TEST_F(PlatformOption, ios_is_universal) {
    EXPECT_EQ(filesPerFolder({u"iOS"_s}), (Counts{{"iphone", 9}, {"ipad", 10}}));
}

TEST_F(PlatformOption, short_options_are_the_long_ones) {
    const QString folder = path(u"short"_s);
    const ProcessResult result = runCli({u"generate"_s, sample(u"svg"_s), u"-qpmac"_s, u"-o"_s, folder});
    EXPECT_EQ(result.exitStatus, 0) << result.errors.toStdString();
    EXPECT_EQ(result.output.toStdString(), "");
    EXPECT_EQ(tree(folder).size(), 11U);
    const ProcessResult verbose =
        runCli({u"generate"_s, sample(u"svg"_s), u"-v"_s, u"-p"_s, u"mac"_s, u"-o"_s, folder});
    EXPECT_TRUE(verbose.output.contains("  mac/Application.icns  "));
    EXPECT_EQ(runCli({u"-V"_s}).output.toStdString(), runCli({u"--version"_s}).output.toStdString());
    EXPECT_EQ(runCli({u"-h"_s}).output.toStdString(), runCli({u"--help"_s}).output.toStdString());
}
