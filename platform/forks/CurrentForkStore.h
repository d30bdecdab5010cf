#pragma once

#include "platform/forks/ForkStore.h"

/// The store in use. One is in use at a time; until ForkStoreInUse puts another there, it is the system's:
/// extended attributes on macOS, elsewhere NoForkStore.
ForkStore& currentForkStore();

/// Puts a store into use for as long as this object lives. The store must live longer.
class ForkStoreInUse {
  public:
    explicit ForkStoreInUse(ForkStore& store);
    ~ForkStoreInUse();
    ForkStoreInUse(const ForkStoreInUse&) = delete;
    ForkStoreInUse& operator=(const ForkStoreInUse&) = delete;

  private:
    ForkStore* m_before;
};
