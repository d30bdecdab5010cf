#include "platform/fork/ForkStore.h"

#include "platform/fork/ExtendedAttributeForkStore.h"
#include "platform/fork/NoForkStore.h"

#include <utility>

ForkStore*& ForkStore::inUse() {
#ifdef Q_OS_MACOS
    static ExtendedAttributeForkStore systemStore;
#else
    static NoForkStore systemStore;
#endif
    static ForkStore* store = &systemStore;
    return store;
}

ForkStore& ForkStore::current() {
    return *inUse();
}

ForkStoreInUse::ForkStoreInUse(ForkStore& store) : m_before(std::exchange(ForkStore::inUse(), &store)) {}

ForkStoreInUse::~ForkStoreInUse() {
    ForkStore::inUse() = m_before;
}
