#include "base/LongWork.h"

#include <utility>

LongWork* LongWork::current = nullptr;

LongWork::LongWork(Milliseconds patience, std::function<void()> tell)
    : m_due(Clock::now() + patience), m_tell(std::move(tell)) {
    current = this;
}

LongWork::~LongWork() {
    current = nullptr;
}

void LongWork::look(Milliseconds ahead) {
    if (m_tell && Clock::now() + ahead >= m_due)
        std::exchange(m_tell, nullptr)();
}
