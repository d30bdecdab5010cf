#pragma once

#include "platform/store/StoreError.h"

/// Shows the error in an alert and waits for it to be read. It can't be recovered from: false.
bool presentStoreError(const StoreError& error);
