#pragma once

#include <zrextensionsystem/zrextensionsystem_export.h>

#include <QtCore/QObject>

#include <atomic>

namespace ZR {
namespace ExtensionSystem {

/// What a plugin may ask of the application that hosts it: at present, to draw or to drop the shadow around its window.
///
/// A host subscribes once, with an object that lives on the thread of its windows:
///
///     auto *manager = ZR::ExtensionSystem::PluginManager::instance();
///     window.setShadow(manager->isShadowVisible());            // what was asked for before the host was there
///     QObject::connect(manager, &PluginManager::shadowVisibleRequested, &window, &Window::setShadow);
///
/// Without a subscriber the wish is remembered and nothing else happens.
class ZREXTENSIONSYSTEM_EXPORT PluginManager final : public QObject
{
    Q_OBJECT

public:
    /// The one manager of the process, created on the first call and never deleted. Any thread.
    static PluginManager *instance();

    /// Asks the host to draw (true) or to drop (false) the shadow of its window. Any thread.
    static void setShadowVisible(bool visible);

    /// The last wish, true before the first. Any thread.
    bool isShadowVisible() const;

signals:
    /// Emitted on every setShadowVisible(), also with an unchanged value: the host may have changed its window
    /// meanwhile. Comes from the calling thread, so a subscriber on another one gets it queued.
    void shadowVisibleRequested(bool visible);

private:
    PluginManager() = default;

    std::atomic<bool> _shadowVisible{true};
};

} // namespace ExtensionSystem
} // namespace ZR
