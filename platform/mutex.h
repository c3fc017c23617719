/// @file
/// The lock of a request object.
#pragma once

#include "koine/export.h"

#include <pthread.h>

/// A recursive mutex with a note whether it may be used.
///
/// The struct is plain so that it can be a member; only the operations below touch its fields.
struct vm_mutex {
    pthread_mutex_t handle;
    int is_valid;
};

/// Marks the mutex as not initialised. Every operation but `vm_mutex_init` then does nothing.
KOINE_EXPORT void vm_mutex_set_invalid(vm_mutex* mutex);

/// Makes the mutex ready for use.
/// @retval 1 ready
/// @retval -2 null pointer
/// @retval -8 the system has no mutex to give
KOINE_EXPORT int vm_mutex_init(vm_mutex* mutex);

/// Takes the mutex; one thread may take it several times.
/// @retval 1 taken
/// @retval -2 null or not initialised
KOINE_EXPORT int vm_mutex_lock(vm_mutex* mutex);

/// Gives back what one `vm_mutex_lock` took.
/// @retval 1 given back
/// @retval -2 null, not initialised, or not held by this thread
KOINE_EXPORT int vm_mutex_unlock(vm_mutex* mutex);

/// Ends the mutex; it must not be held. Doing it twice is harmless.
KOINE_EXPORT void vm_mutex_destroy(vm_mutex* mutex);
