#pragma once

#include "imaging/io/ImageSource.h"

#include <QStringList>

/// What is to be said of a picture before icons of up to `largestSide` pixels are made of it: that it is
/// smaller, not square, and what could not be honoured when it was read.
QStringList pictureWarnings(const LoadedPicture& picture, double largestSide);
