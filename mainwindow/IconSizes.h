#pragma once

#include "imaging/pixels/ReducedCopies.h"

class Bundle;
class Screen;

/// The sizes of all icons that can be made of a picture: those of the catalogue in `bundle` on a display with
/// the scale of `screen`, and those of the built-in layouts. Not known where there is no catalogue.
ReducedCopies::Renders allIconSizes(const Bundle& bundle, const Screen& screen);
