#pragma once

#include "du/RefCounted.h"

namespace dom {

/// Something that travels through a `dom::MessageQueue` to an observer. Its contents are for sender and receiver.
class Message : public virtual du::RefCounted {};

}  // namespace dom
