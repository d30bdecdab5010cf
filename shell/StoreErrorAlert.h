#pragma once

#include "platform/store/StoreError.h"

/// Shows the error in an alert and waits until the alert is closed. Always false: the program can't recover
/// from the error.
bool presentStoreError(const StoreError& error);
