// Life of a request object, and the operations that only device classes fill with life.

#include "koine/BaseRequest.h"
#include "request/object_lock.h"
#include "request/transport_traces.h"

#include <cstdlib>

using namespace koine;

BaseRequest::BaseRequest() {
    vm_mutex_set_invalid(&lock_);
    vm_mutex_init(&lock_);
    const ObjectLock lock(*this);
    httpClient_ = CreateIHttpClient();
    if (httpClient_ == nullptr)
        transport_trace::noClientMade(settingChannel_);
}

BaseRequest::~BaseRequest() {
    {
        const ObjectLock lock(*this);
        for (DeviceCache* cache :
             {&login_, &capability_, &media_, &video_, &camera_, &notification_, &misc_, &videoAnalytics_})
            cache->map.clear();
        if (httpClient_ != nullptr)
            httpClient_->Release();
        httpClient_ = nullptr;
    }
    vm_mutex_destroy(&lock_);
}

vm_mutex* BaseRequest::getLock() { return &lock_; }

void BaseRequest::freeData(char* data) { std::free(data); }

int BaseRequest::testOK(char* /*text*/, unsigned long /*length*/, char* /*username*/, char* /*password*/) {
    const ObjectLock lock(*this);
    return kOk;
}

int BaseRequest::forbiRequest() { return 0; }

int BaseRequest::CallJoystickCmd(const char* /*command*/, const char* /*parameter*/, unsigned int /*first*/,
                                 unsigned int /*second*/, int /*third*/) {
    return kRefused;
}

void BaseRequest::HandleMultiCmd(const std::string& /*command*/, void* /*context*/, unsigned int /*length*/) {
}

void BaseRequest::PTZCmdCB(unsigned int /*uid*/, __QaHttpErr /*error*/, const unsigned char* /*data*/,
                           unsigned int /*length*/, const void* /*context*/) {}

int BaseRequest::ParsingBaseNotification(const unsigned char* /*data*/, unsigned int /*length*/,
                                         bool* /*first*/, bool* /*second*/, bool* /*third*/) {
    return kOk;
}
