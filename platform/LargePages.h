#pragma once

#include <cstddef>

/// Asks for large pages where much memory is about to be filled for the first time: with small ones a good
/// part of the time goes into having them one by one. Does nothing for small buffers and where the system has
/// no such pages.
void preferLargePages(void* memory, std::size_t bytes);
