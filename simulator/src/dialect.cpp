#include "dialect.h"

#include "consolesession.h"

namespace simulator {

Dialect makeDialect(const SimulatorOptions &options)
{
    switch (options.family) {
    case Family::Huawei:
        return huaweiDialect(options);
    case Family::HuaweiSub:
        return huaweiSubDialect(options);
    case Family::Hua3:
        return hua3Dialect(options);
    }
    return {};
}

} // namespace simulator
