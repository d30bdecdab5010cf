#include "imaging/svg/SvgTime.h"

namespace {
SvgRequest* openRequest = nullptr;
} // namespace

SvgRequest::SvgRequest(double seconds) : m_seconds(seconds) {
    if (openRequest == nullptr)
        openRequest = this;
}

SvgRequest::~SvgRequest() {
    if (openRequest == this)
        openRequest = nullptr;
}

SvgRequest* SvgRequest::open() {
    return openRequest;
}
