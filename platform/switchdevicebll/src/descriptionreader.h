#pragma once

#include "devicedescription.h"

#include <memory>

namespace ovra {
namespace bll {

/// A description, or none and a sentence with file, line and reason.
struct ReadDescription
{
    std::shared_ptr<const DeviceDescription> description;
    QString error;
};

/// Reads a description file of at most 1 MiB and checks it as a whole: every element, attribute, value and placeholder
/// has to be known, every command list has to be there, and no reply rule may touch the export of a configuration. The
/// format is explained in share/devices/device-description.xsd.
ReadDescription readDescription(const QString &path);

/// The same for a file's content. `path` is what errors name.
ReadDescription parseDescription(const QByteArray &content, const QString &path);

} // namespace bll
} // namespace ovra
