#pragma once

#include <cstddef>

/// Serves one program: reads its document, which lies at the begin of `memory`, then draws what it asks for,
/// until `input` is closed. The arguments are descriptors. Returns the status with which the worker ends.
int serve(int input, int output, int memory, std::size_t documentBytes);
