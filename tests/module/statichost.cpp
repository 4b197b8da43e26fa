// A host that keeps a view model in a static object: it is destroyed, or something is logged, after main() has returned
// and with it after the plugin's own static objects. "destroy" or "log" says which; the import path comes first.
#include <QtCore/QCoreApplication>
#include <QtCore/QLoggingCategory>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>

#include <cstdio>
#include <cstring>

namespace {

//! Constructed before the plugin is loaded, and thus destroyed after its static objects.
class LateEnd
{
public:
    LateEnd() = default;
    ~LateEnd()
    {
        if (isLogged)
            qWarning("logged late");
        else
            delete viewModel;
        std::puts("done");
        std::fflush(stdout);
    }
    LateEnd(const LateEnd &) = delete;
    LateEnd &operator=(const LateEnd &) = delete;

    QObject *viewModel = nullptr;
    bool isLogged = false;
};

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    static LateEnd end;
    end.isLogged = std::strcmp(argv[2], "log") == 0;
    const QCoreApplication application(argc, argv);
    QQmlEngine engine;
    engine.addImportPath(QString::fromLocal8Bit(argv[1]));
    QQmlComponent component(&engine);
    component.setData("import OVRAQuick.SwitchDevicePanel.ViewModel 1.0\nSwitchDeviceViewModel {}\n", QUrl());
    end.viewModel = component.create();
    if (end.viewModel == nullptr)
        return 1;
    QQmlEngine::setObjectOwnership(end.viewModel, QQmlEngine::CppOwnership);
    return 0;
}
