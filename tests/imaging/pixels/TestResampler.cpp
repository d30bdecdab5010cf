#include "imaging/drawing/GraphicsContext.h"
#include "imaging/pixels/Resampler.h"
#include "imaging/pixels/ResamplerWeights.h"
#include "tests/support/Pictures.h"
#include "tests/support/Process.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <map>
#include <numbers>
#include <numeric>
#include <vector>

namespace {

QImage resampled(const QImage& source, int width, int height) {
    return *resampled(source, fillingMapping(source.width(), width), fillingMapping(source.height(), height));
}

/// Renders as for an icon: through the loaded picture's reduced copies.
QImage rendered(const QImage& source, int width, int height) {
    return *drawnRaster(Pictures::loadedImage(source), QSizeF(width, height));
}

/// cos(π r² ÷ n): a wave whose frequency grows with the distance from the middle, up to the Nyquist limit.
QImage zonePlate(int side) {
    return Pictures::raster(side, side, [side](int x, int y) {
        const double dx = x + 0.5 - side / 2.0;
        const double dy = y + 0.5 - side / 2.0;
        const double wave = std::cos(std::numbers::pi * (dx * dx + dy * dy) / side);
        const int grey = static_cast<int>(std::lround(127.5 + 127.5 * wave));
        return QColor(grey, grey, grey);
    });
}

/// The standard deviation of grey outside of a circle. The circle's radius is `factor` times the radius at
/// which a zone plate reduced by `ratio` reaches the result's Nyquist limit. What is left outside is
/// aliasing.
double aliasing(const QImage& reduced, double ratio, double factor) {
    // The local frequency of the plate at radius r of the source is r / n; the limit of the result is 1 / (2
    // ratio).
    const double limit = factor * reduced.width() / 2.0 / ratio;
    double sum = 0;
    double squares = 0;
    double count = 0;
    for (int y = 0; y < reduced.height(); ++y) {
        for (int x = 0; x < reduced.width(); ++x) {
            const double radius =
                std::hypot(x + 0.5 - reduced.width() / 2.0, y + 0.5 - reduced.height() / 2.0);
            if (radius <= limit)
                continue;
            const double grey = Pictures::pixel(reduced, x, y).red;
            sum += grey;
            squares += grey * grey;
            ++count;
        }
    }
    return std::sqrt(squares / count - sum / count * (sum / count));
}

const std::vector<std::array<int, 4>> sizes{{1, 1, 16, 16},     {1, 1, 1, 1},       {2, 3, 7, 5},
                                            {64, 64, 64, 64},   {97, 61, 13, 29},   {61, 97, 61, 12},
                                            {128, 128, 16, 16}, {130, 127, 64, 33}, {33, 33, 100, 101},
                                            {500, 20, 50, 50},  {20, 500, 50, 50},  {257, 263, 255, 1}};

} // namespace

TEST(Resampler, equal_samples_keep_their_exact_value_at_every_size) {
    const QColor color(201, 57, 3, 155);
    for (const auto& [sw, sh, tw, th] : sizes) {
        const QImage result = resampled(Pictures::flat(sw, sh, color), tw, th);
        EXPECT_TRUE(Pictures::same(result, Pictures::flat(tw, th, color)))
            << sw << "x" << sh << " to " << tw << "x" << th;
    }
}

TEST(Resampler, a_mirrored_picture_gives_the_mirrored_bytes) {
    for (const auto& [sw, sh, tw, th] : sizes) {
        const QImage source = Pictures::translucentNoise(sw, sh, 7);
        const QImage result = resampled(source, tw, th);
        EXPECT_TRUE(Pictures::same(resampled(Pictures::mirroredLeftRight(source), tw, th),
                                   Pictures::mirroredLeftRight(result)))
            << sw << "x" << sh << " to " << tw << "x" << th;
        EXPECT_TRUE(Pictures::same(resampled(Pictures::mirroredTopBottom(source), tw, th),
                                   Pictures::mirroredTopBottom(result)))
            << sw << "x" << sh << " to " << tw << "x" << th;
    }
}

TEST(Resampler, the_same_size_gives_the_same_bytes) {
    const QImage source = Pictures::translucentNoise(61, 43, 3);
    EXPECT_TRUE(Pictures::same(resampled(source, 61, 43), source));
}

TEST(Resampler, no_colour_exceeds_its_alpha) {
    for (const auto& [sw, sh, tw, th] : sizes) {
        const QImage result = resampled(Pictures::translucentNoise(sw, sh, 5), tw, th);
        for (int y = 0; y < th; ++y) {
            for (int x = 0; x < tw; ++x) {
                const Pictures::Pixel p = Pictures::pixel(result, x, y);
                ASSERT_LE(std::max({p.red, p.green, p.blue}), p.alpha);
            }
        }
    }
}

TEST(Resampler, agrees_with_the_filter_computed_in_double_precision) {
    int compared = 0;
    for (const auto& [sw, sh, tw, th] : sizes) {
        const QImage source = Pictures::noise(sw, sh, 11);
        const QImage result = resampled(source, tw, th);
        const auto lanczos = [](double x) {
            if (x == 0)
                return 1.0;
            if (std::abs(x) >= 3)
                return 0.0;
            const double a = std::numbers::pi * x;
            return 3 * std::sin(a) * std::sin(a / 3) / (a * a);
        };
        const auto weights = [&](int target, int sourceLength, int targetLength) {
            const double ratio = static_cast<double>(sourceLength) / targetLength;
            const double stretch = std::max(1.0, ratio);
            std::vector<double> w(static_cast<std::size_t>(sourceLength));
            for (int i = 0; i < sourceLength; ++i)
                w[static_cast<std::size_t>(i)] = lanczos((i + 0.5 - (target + 0.5) * ratio) / stretch);
            const double sum = std::accumulate(w.begin(), w.end(), 0.0);
            for (double& value : w)
                value /= sum;
            return w;
        };
        // From 2:1 on, pixels whose taps an edge cuts off get a further correction.
        const auto isCut = [](int target, int sourceLength, int targetLength) {
            const double ratio = static_cast<double>(sourceLength) / targetLength;
            const double centre = (target + 0.5) * ratio;
            return ratio >= 2 && (centre < 3 * ratio || centre > sourceLength - 3 * ratio);
        };
        for (int y = 0; y < th; y += 3) {
            const std::vector<double> rows = weights(y, sh, th);
            for (int x = 0; x < tw; x += 3) {
                if (isCut(x, sw, tw) || isCut(y, sh, th))
                    continue;
                ++compared;
                const std::vector<double> columns = weights(x, sw, tw);
                double green = 0;
                for (int j = 0; j < sh; ++j) {
                    for (int i = 0; i < sw; ++i)
                        green += rows[static_cast<std::size_t>(j)] * columns[static_cast<std::size_t>(i)] *
                                 Pictures::pixel(source, i, j).green;
                }
                // Weights of 14 bits: one step of rounding and a little more.
                ASSERT_NEAR(Pictures::pixel(result, x, y).green, std::clamp(green, 0.0, 255.0), 1.0)
                    << sw << "x" << sh << " to " << tw << "x" << th << " at " << x << ", " << y;
            }
        }
    }
    EXPECT_GT(compared, 2000);
}

TEST(Resampler, a_ramp_that_runs_into_the_edge_is_reduced_as_without_the_correction_there) {
    // The usual filter scales the other taps where an edge cuts taps off. For a smooth picture the correction
    // gives nearly the same.
    const QImage ramp =
        Pictures::raster(64, 64, [](int x, int y) { return QColor(4 * x, 4 * y, 2 * (x + y)); });
    const QImage result = resampled(ramp, 32, 32);
    EXPECT_NEAR(Pictures::pixel(result, 0, 16).red, 2.0, 1.5);
    EXPECT_NEAR(Pictures::pixel(result, 1, 16).red, 10.0, 1.5);
    EXPECT_NEAR(Pictures::pixel(result, 31, 16).red, 250.0, 1.5);
}

TEST(Resampler, sums_between_the_two_filters_fit_in_16_bits) {
    // A sample of 255 has 6 fractional bits. It leaves room for weights whose absolute values add up to less
    // than twice their sum.
    static constexpr int most = 2 * ResamplerWeights::one;
    const auto expectFit = [](const AxisMapping& mapping) {
        const ResamplerWeights weights(mapping);
        for (int x = 0; x < mapping.targetLength; ++x) {
            const std::int16_t* row = weights.weights(x);
            int sum = 0;
            for (int i = 0; i < 2 * weights.pairs(); ++i)
                sum += std::abs(row[i]);
            EXPECT_LT(sum, most) << mapping.sourceLength << " to " << mapping.targetLength;
        }
    };
    for (const ResampleFilter filter :
         {ResampleFilter::Lanczos3, ResampleFilter::Cubic, ResampleFilter::Linear}) {
        for (int source = 1; source < 300; source += source < 20 ? 1 : 13) {
            for (int target = 1; target < 200; target += target < 20 ? 1 : 11) {
                const double length = target;
                expectFit({source, 0, length, target, filter});
                expectFit({source, -0.3 * length, 1.7 * length, target, filter});
                expectFit({source, 0.37, 0.61 * length, target, filter});
                expectFit({source, -7.77, length + 3.3, target, filter});
            }
        }
    }
}

TEST(Resampler, weights_sum_to_one_and_mirror_each_other) {
    for (const auto& [source, ignored, target, ignoredToo] : sizes) {
        const ResamplerWeights weights(fillingMapping(source, target));
        for (int i = 0; i < target; ++i) {
            int sum = 0;
            for (int tap = 0; tap < 2 * weights.pairs(); ++tap)
                sum += weights.weights(i)[tap];
            EXPECT_EQ(sum, ResamplerWeights::one);
            EXPECT_GE(weights.start(i), 0);
            EXPECT_LT(weights.start(i), source);
        }
    }
}

TEST(Resampler, a_zone_plate_reduced_eight_times_hardly_aliases) {
    const QImage plate = zonePlate(1024);
    const QImage singlePass = resampled(plate, 128, 128);
    const QImage ours = rendered(plate, 128, 128);
    for (const double factor : {1.25, 1.5, 2.0})
        EXPECT_LE(aliasing(ours, 8, factor), 1.35 * aliasing(singlePass, 8, factor) + 0.3) << factor;
    // Beyond the filter's transition band, one pass of Lanczos 3 leaves roughly half a grey level.
    EXPECT_NEAR(aliasing(singlePass, 8, 2), 0.5, 0.15);
}

TEST(Resampler, the_aliasing_measure_sees_a_box_filter) {
    QImage plate = zonePlate(1024);
    const QImage box = Pictures::raster(128, 128, [&](int x, int y) {
        int sum = 0;
        for (int j = 0; j < 8; ++j) {
            for (int i = 0; i < 8; ++i)
                sum += Pictures::pixel(plate, 8 * x + i, 8 * y + j).red;
        }
        const int grey = (sum + 32) / 64;
        return QColor(grey, grey, grey);
    });
    EXPECT_GT(aliasing(box, 8, 1.25), 5);
    EXPECT_GT(aliasing(box, 8, 2), 4);
}

TEST(Resampler, a_checkerboard_of_single_pixels_becomes_flat_grey) {
    const QImage board = Pictures::raster(
        256, 256, [](int x, int y) { return (x + y) % 2 == 0 ? QColor(Qt::white) : QColor(Qt::black); });
    for (const int side : {128, 100, 64, 60, 29, 16}) {
        const QImage result = rendered(board, side, side);
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                ASSERT_NEAR(Pictures::pixel(result, x, y).red, 127.5, 1.5)
                    << "at " << x << ", " << y << " of " << side;
            }
        }
    }
}

TEST(Resampler, an_opaque_picture_stays_opaque_to_the_last_pixel) {
    const QImage source = Pictures::noise(1000, 700, 2);
    for (const QSize size :
         {QSize(512, 512), QSize(167, 167), QSize(87, 87), QSize(16, 16), QSize(1100, 33)}) {
        const QImage result = rendered(source, size.width(), size.height());
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x)
                ASSERT_EQ(Pictures::pixel(result, x, y).alpha, 255);
        }
    }
}

TEST(Resampler, hidden_colours_make_no_fringe) {
    // The visible parts are pure red, the transparent parts pure green.
    const QImage source = Pictures::raster(240, 240, [](int x, int y) {
        return (x / 40 + y / 40) % 2 == 0 ? QColor(255, 0, 0) : QColor(0, 255, 0, 0);
    });
    for (const int side : {120, 87, 40, 16, 300}) {
        const QImage result = rendered(source, side, side);
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                const Pictures::Pixel p = Pictures::pixel(result, x, y);
                ASSERT_EQ(p.green, 0);
                ASSERT_EQ(p.red, p.alpha);
            }
        }
    }
}

TEST(Resampler, agrees_with_another_programs_Lanczos_filter) {
    const QTemporaryDir folder;
    const QImage source = Pictures::raster(512, 512, [](int x, int y) {
        const double wave = std::sin(x * 0.07) * std::cos(y * 0.05 + x * 0.01);
        return QColor(static_cast<int>(127 + 120 * wave), x / 2, (x + y) / 4);
    });
    source.save(folder.filePath(QStringLiteral("source.png")), "PNG");
    for (const int side : {256, 180, 64, 16}) {
        const QString out = folder.filePath(QStringLiteral("%1.png").arg(side));
        const ProcessResult run = runProcess(
            QStringLiteral("convert"),
            {folder.filePath(QStringLiteral("source.png")), QStringLiteral("-filter"),
             QStringLiteral("Lanczos"), QStringLiteral("-resize"), QStringLiteral("%1x%1!").arg(side), out});
        ASSERT_EQ(run.exitStatus, 0) << run.errors.toStdString();
        QImage theirs(out);
        theirs.convertTo(QImage::Format_RGBA8888_Premultiplied);
        // The single pass differs by rounding; the reduced copies add the difference between a filter applied
        // once and applied in steps.
        EXPECT_LE(Pictures::largestDifference(resampled(source, side, side), theirs), 1) << side;
        EXPECT_LE(Pictures::largestDifference(rendered(source, side, side), theirs), 4) << side;
    }
}

TEST(Resampler, a_pixel_that_the_picture_hardly_reaches_takes_the_nearest_sample) {
    for (const auto& [source, length] :
         {std::pair{31, 16.04}, {16, 10.03}, {40, 20.01}, {33, 20.05}, {64, 29.01}}) {
        const int target = static_cast<int>(std::ceil(length));
        const AxisMapping axis{source, 0, length, target};
        const QImage result = *resampled(Pictures::flat(source, source, QColor(9, 80, 200)), axis, axis);
        EXPECT_TRUE(Pictures::same(result, Pictures::flat(target, target, QColor(9, 80, 200))))
            << source << " " << length;
    }
}

TEST(Resampler, even_starts_change_no_weight) {
    for (const auto& [source, ignored, target, ignoredToo] : sizes) {
        const ResamplerWeights weights(fillingMapping(source, target));
        const ResamplerWeights even = weights.withEvenStarts();
        const auto taps = [](const ResamplerWeights& of, int i) {
            std::map<int, int> found;
            for (int tap = 0; tap < 2 * of.pairs(); ++tap) {
                if (of.weights(i)[tap] != 0)
                    found[of.start(i) + tap] = of.weights(i)[tap];
            }
            return found;
        };
        for (int i = 0; i < target; ++i) {
            EXPECT_EQ(even.start(i) % 2, 0);
            EXPECT_EQ(taps(even, i), taps(weights, i));
        }
    }
}
