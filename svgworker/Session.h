#pragma once

/// Serves one program: reads its document from the pipe, then draws what it asks for, until the pipe is
/// closed. Returns the status with which the worker ends.
int serve(int socket);
