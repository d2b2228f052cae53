#pragma once

#include <type_traits>

namespace lumaphone {

/// Gives a published member its value and emits `changed`, if that is another one. Tells whether it is.
template<typename Object, typename Value>
bool setAndNotify(
    Object *object, Value &member, const std::type_identity_t<Value> &value, void (Object::*changed)())
{
    if (member == value) {
        return false;
    }
    member = value;
    (object->*changed)();
    return true;
}

} // namespace lumaphone
