#include "imaging/svg/SvgTime.h"

namespace {
SvgRequest* openRequest = nullptr;
} // namespace

SvgRequest::SvgRequest(double seconds) : SvgCount{seconds} {
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
