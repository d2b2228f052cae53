#pragma once

#include "base/LocalizedError.h"

namespace lumaphone {

/// An error of the sound server or of a device, shown with the text the service gave.
class CaptureServiceError : public PlatformError
{
public:
    using PlatformError::PlatformError;
};

} // namespace lumaphone
