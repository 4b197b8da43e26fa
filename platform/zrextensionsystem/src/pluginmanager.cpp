#include <zrextensionsystem/pluginmanager.h>

namespace ZR {
namespace ExtensionSystem {

PluginManager *PluginManager::instance()
{
    // Never deleted: plugins may speak up until the very end of the process.
    static PluginManager *const manager = new PluginManager;
    return manager;
}

void PluginManager::setShadowVisible(bool visible)
{
    PluginManager *const manager = instance();
    manager->_shadowVisible = visible;
    emit manager->shadowVisibleRequested(visible);
}

bool PluginManager::isShadowVisible() const
{
    return _shadowVisible;
}

} // namespace ExtensionSystem
} // namespace ZR
