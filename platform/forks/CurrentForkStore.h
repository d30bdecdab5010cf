#pragma once

#include "platform/forks/ForkStore.h"

/// The store in use. Until ForkStoreInUse puts another one in its place, it is the system's: extended
/// attributes on macOS, NoForkStore elsewhere.
ForkStore& currentForkStore();

/// Puts a store into use until this object is destroyed. The store must live longer.
class ForkStoreInUse {
  public:
    explicit ForkStoreInUse(ForkStore& store);
    ~ForkStoreInUse();
    ForkStoreInUse(const ForkStoreInUse&) = delete;
    ForkStoreInUse& operator=(const ForkStoreInUse&) = delete;

  private:
    ForkStore* m_before;
};
