/// @file
/// The recursive lock of a request object, held for a scope.
#pragma once

#include "koine/BaseRequest.h"

namespace koine {

class ObjectLock {
public:
    explicit ObjectLock(BaseRequest& request) : mutex_(request.getLock()) { vm_mutex_lock(mutex_); }
    ~ObjectLock() { vm_mutex_unlock(mutex_); }
    ObjectLock(const ObjectLock&) = delete;
    ObjectLock& operator=(const ObjectLock&) = delete;

private:
    vm_mutex* mutex_;
};

} // namespace koine
