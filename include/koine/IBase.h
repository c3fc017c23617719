/// @file
/// Root of the object tree.
#pragma once

#include "koine/export.h"

/// Root class of request objects and of the host's stream objects.
///
/// It has no virtual functions on purpose: slot 0 of `IBaseRequest` is that interface's own first
/// operation. A `boost::shared_ptr<IBase>` remembers how the object was created and destroys it right.
class KOINE_EXPORT IBase {};
