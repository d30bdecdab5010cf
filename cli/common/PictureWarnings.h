#pragma once

#include "imaging/io/ImageSource.h"

#include <QSize>
#include <QStringList>

#include <vector>

/// Warnings about a picture before icons of these sizes, in pixels, are made from it: it is smaller than one
/// of them, it is not square, or the reader had to ignore a part of it.
QStringList pictureWarnings(const LoadedPicture& picture, const std::vector<QSize>& sizes);
