#pragma once

#include "imaging/pixels/AxisMapping.h"
#include "imaging/pixels/ReducedCopies.h"
#include "imaging/svgpipe/SvgMessages.h"

#include <QSizeF>

#include <deque>
#include <optional>

/// The drawings that a worker is asked for.
namespace SvgPlan {

/// A drawing of x.targetLength × y.targetLength pixels with the document where the mappings say. None where
/// it has no pixels or too many.
std::optional<SvgPipe::Request> drawing(const AxisMapping& x, const AxisMapping& y);

/// The drawings of a document of that size for icons, in their order. Those for icons of no whole number of
/// pixels are left out.
std::deque<SvgPipe::Request> drawings(const ReducedCopies::Renders& renders, const QSizeF& document);

} // namespace SvgPlan
