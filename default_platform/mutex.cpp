#include "platform/mutex.h"

#include "koine/types.h"

namespace {

bool usable(const vm_mutex* mutex) { return mutex != nullptr && mutex->is_valid == 1; }

/// Attributes of a mutex that its owner may take again.
class RecursiveAttributes {
public:
    RecursiveAttributes()
        : ready_(pthread_mutexattr_init(&attributes_) == 0),
          recursive_(ready_ && pthread_mutexattr_settype(&attributes_, PTHREAD_MUTEX_RECURSIVE) == 0) {}
    ~RecursiveAttributes() {
        if (ready_)
            pthread_mutexattr_destroy(&attributes_);
    }
    RecursiveAttributes(const RecursiveAttributes&) = delete;
    RecursiveAttributes& operator=(const RecursiveAttributes&) = delete;

    /// Null when the system could not make them.
    const pthread_mutexattr_t* get() const { return recursive_ ? &attributes_ : nullptr; }

private:
    pthread_mutexattr_t attributes_{};
    bool ready_;
    bool recursive_;
};

} // namespace

void vm_mutex_set_invalid(vm_mutex* mutex) {
    if (mutex != nullptr)
        mutex->is_valid = 0;
}

int vm_mutex_init(vm_mutex* mutex) {
    if (mutex == nullptr)
        return koine::kRefused;
    // What the mark holds before is of no account: the memory may never have been written.
    mutex->is_valid = 0;
    const RecursiveAttributes attributes;
    if (attributes.get() == nullptr || pthread_mutex_init(&mutex->handle, attributes.get()) != 0)
        return koine::kNoResource;
    mutex->is_valid = 1;
    return koine::kOk;
}

int vm_mutex_lock(vm_mutex* mutex) {
    if (!usable(mutex) || pthread_mutex_lock(&mutex->handle) != 0)
        return koine::kRefused;
    return koine::kOk;
}

int vm_mutex_unlock(vm_mutex* mutex) {
    if (!usable(mutex) || pthread_mutex_unlock(&mutex->handle) != 0)
        return koine::kRefused;
    return koine::kOk;
}

void vm_mutex_destroy(vm_mutex* mutex) {
    if (!usable(mutex))
        return;
    mutex->is_valid = 0;
    pthread_mutex_destroy(&mutex->handle);
}
