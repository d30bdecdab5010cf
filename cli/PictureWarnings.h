#pragma once

#include "imaging/io/ImageSource.h"

#include <QStringList>

/// Warnings about a picture before icons of up to `largestSide` pixels are made from it: it is smaller than
/// that, it is not square, or the reader had to ignore a part of it.
QStringList pictureWarnings(const LoadedPicture& picture, double largestSide);
