#pragma once

#include "devicedescription.h"

#include <memory>

namespace ovra {
namespace bll {

/// What holds for the switches of all families, for a session that begins before a description is loaded: prompts,
/// pagers, the login dialogue. It has no commands.
std::shared_ptr<const DeviceDescription> generalDescription();

} // namespace bll
} // namespace ovra
