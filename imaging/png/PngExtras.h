#pragma once

#include <QByteArrayView>

/// What stands in a PNG file beside the picture, where libpng has no reader for it.

/// The XMP packet of a PNG file; empty where it has none. Source: ISO/IEC 15948, iTXt; "XMP Specification
/// Part 3", which has it not compressed: one that is compressed is not looked at.
QByteArrayView pngXmp(QByteArrayView file);

/// The number of frames of an animated PNG file; 1 for any other. Source: "Portable Network Graphics (PNG)
/// Specification (Third Edition)", 11.3.6.1 (acTL).
quint32 pngFrames(QByteArrayView file);
