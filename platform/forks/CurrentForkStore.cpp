#include "platform/forks/CurrentForkStore.h"

#include "platform/forks/ExtendedAttributeForkStore.h"
#include "platform/forks/NoForkStore.h"

#include <utility>

namespace {

ForkStore*& inUse() {
#ifdef Q_OS_MACOS
    static ExtendedAttributeForkStore systemStore;
#else
    static NoForkStore systemStore;
#endif
    static ForkStore* store = &systemStore;
    return store;
}

} // namespace

ForkStore& currentForkStore() {
    return *inUse();
}

ForkStoreInUse::ForkStoreInUse(ForkStore& store) : m_before(std::exchange(inUse(), &store)) {}

ForkStoreInUse::~ForkStoreInUse() {
    inUse() = m_before;
}
