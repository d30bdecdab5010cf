#pragma once

#include <QByteArrayView>

/// The XMP packet of a PNG file; empty where it has none. Source: ISO/IEC 15948, iTXt; "XMP Specification
/// Part 3", which has it not compressed: one that is compressed is not looked at.
QByteArrayView pngXmp(QByteArrayView file);
