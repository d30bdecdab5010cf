#pragma once

#include <QString>

#include <string>

/// The name of a picture's file without its ending: for its folder below --out, and for apps. That of
/// standard input is "icon". "." and ".." are never names.
QString pictureName(const std::string& path);
