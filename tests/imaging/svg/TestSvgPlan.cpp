#include "imaging/image/FittedRep.h"
#include "imaging/pixels/Raster.h"
#include "imaging/svg/SvgPlan.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

/// A drawing that keeps what it is asked for.
class AskedRep final : public ImageRep {
  public:
    QSize pixelSize() const override { return {}; }
    Result<QImage> rendered(AxisMapping x, AxisMapping y) const override {
        asked.push_back(*SvgPlan::drawing(x, y));
        return newRaster(QSize(x.targetLength, y.targetLength), QImage::Format_RGBA8888_Premultiplied);
    }

    mutable std::vector<SvgPipe::Request> asked;
};

} // namespace

TEST(SvgPlan, what_is_planned_for_an_icon_is_what_is_drawn_on_it) {
    const std::vector<QSizeF> icons{{16, 16}, {1024, 1024}, {33, 57}, {310, 150}};
    const QSizeF document(400, 90.5);
    for (const PictureFit& fit :
         {PictureFit{}, PictureFit{PictureFit::Shape::Stretch, 0.1},
          PictureFit{PictureFit::Shape::Contain, 0}, PictureFit{PictureFit::Shape::Contain, 0.2},
          PictureFit{PictureFit::Shape::Cover, 0.07}}) {
        SCOPED_TRACE(testing::Message() << static_cast<int>(fit.shape) << ' ' << fit.padding);
        const auto rep = std::make_shared<AskedRep>();
        Image picture(document);
        picture.addRepresentation(rep);
        picture = fitted(picture, fit);
        const std::deque<SvgPipe::Request> planned = SvgPlan::drawings({icons, fit}, document);
        ASSERT_EQ(planned.size(), icons.size());
        for (std::size_t i = 0; i < icons.size(); ++i) {
            const int width = static_cast<int>(icons[i].width());
            const int height = static_cast<int>(icons[i].height());
            ASSERT_TRUE(picture.bestRepresentation(icons[i])->rendered(fillingMapping(0, width),
                                                                       fillingMapping(0, height)));
            EXPECT_TRUE(planned[i].drawsAs(rep->asked.back())) << i;
        }
    }
}

TEST(SvgPlan, icons_of_no_whole_number_of_pixels_and_enormous_ones_are_left_out) {
    const std::vector<QSizeF> icons{{16.5, 16}, {0, 16}, {-1, 5}, {1e300, 1}, {100000, 100000}, {7, 8}};
    const std::deque<SvgPipe::Request> planned = SvgPlan::drawings({icons}, {9, 9});
    ASSERT_EQ(planned.size(), 1U);
    EXPECT_EQ(planned[0].width, 7);
    EXPECT_EQ(planned[0].height, 8);
}
