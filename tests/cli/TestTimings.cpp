#include "tests/cli/CliTest.h"

#include <QRegularExpression>

namespace {

class Timings : public CliTest {};

const QStringList stages{u"decode"_s, u"reduce"_s,   u"decorate"_s, u"tiff"_s,  u"choose"_s,
                         u"filter"_s, u"compress"_s, u"write"_s,    u"other"_s, u"total"_s};

} // namespace

TEST_F(Timings, a_table_follows_the_summary) {
    const ProcessResult result = generated(sample(u"png"_s), {u"--platform"_s, u"iphone"_s, u"--timings"_s});
    const QStringList lines = QString::fromUtf8(result.output).trimmed().split(u'\n');
    ASSERT_EQ(lines.size(), 2 + stages.size());
    static const QRegularExpression row(u"^(\\w+) +([0-9.]+) ms$"_s);
    for (qsizetype i = 0; i < stages.size(); ++i) {
        const QRegularExpressionMatch match = row.match(lines[2 + i]);
        ASSERT_TRUE(match.hasMatch()) << lines[2 + i].toStdString();
        EXPECT_EQ(match.captured(1), stages[i]);
    }
}

TEST_F(Timings, json_holds_them_and_the_stages_add_up_to_the_total) {
    const ProcessResult result = generated(sample(u"png"_s), {u"--platform"_s, u"mac"_s, u"--round-corner"_s,
                                                              u"0.2"_s, u"--timings"_s, u"--json"_s});
    const QJsonObject times = printedJson(result)[u"timings"_s].toObject();
    double sum = 0;
    for (const QString& stage : stages) {
        const double milliseconds = times[stage].toDouble(-1);
        EXPECT_GT(milliseconds, 0) << stage.toStdString();
        sum += stage == u"total"_s ? 0 : milliseconds;
    }
    EXPECT_NEAR(sum, times[u"total"_s].toDouble(), 0.01);
    EXPECT_EQ(times.size(), stages.size());
}

TEST_F(Timings, nobody_who_does_not_ask_is_told) {
    EXPECT_FALSE(printedJson(generated(sample(u"png"_s), {u"--platform"_s, u"iphone"_s, u"--json"_s}))
                     .contains(u"timings"_s));
}
