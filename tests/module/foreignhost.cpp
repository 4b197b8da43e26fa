// A host that was not built with the plugin: imports the module from qml/ beside its own folder, creates both view
// models and prints what it finds, one "key=value" per line.
#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>

#include <cstdio>
#include <memory>

namespace {

void print(const char *key, const QString &value)
{
    std::printf("%s=%s\n", key, value.toUtf8().constData());
}

//! The shared libraries of this process, where the system tells them.
QStringList loadedLibraries()
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    if (!maps.open(QIODevice::ReadOnly))
        return {};
    QStringList libraries;
    for (const QString &line : QString::fromUtf8(maps.readAll()).split(QLatin1Char('\n'))) {
        const QString path = line.mid(line.indexOf(QLatin1Char('/')));
        if (line.contains(QLatin1Char('/')) && !libraries.contains(path))
            libraries.append(path);
    }
    return libraries;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QDir prefix(QDir(QCoreApplication::applicationDirPath()).absoluteFilePath(QStringLiteral("..")));

    QQmlEngine engine;
    engine.addImportPath(prefix.filePath(QStringLiteral("qml")));
    QQmlComponent component(&engine);
    component.setData("import OVRAQuick.SwitchDevicePanel.ViewModel 1.0\n"
                      "SwitchDeviceViewModel {\n"
                      "    property PacketAnalysisViewModel analysis: PacketAnalysisViewModel {}\n"
                      "    property string text: lxTr(\"已断开连接\")\n"
                      "    property string status: analysis.syncIntervalStatus\n"
                      "}\n",
                      QUrl());
    const std::unique_ptr<QObject> object(component.create());
    if (!object) {
        print("error", component.errorString());
        return 1;
    }
    print("type", QLatin1String(object->metaObject()->superClass()->className()));
    print("text", object->property("text").toString());
    print("status", object->property("status").toString());
    for (const char *folder : {"devices", "translations", "switchconfig"}) {
        const QDir share(prefix.filePath(QStringLiteral("share/%1").arg(QLatin1String(folder))));
        print(folder, share.exists() ? QStringLiteral("present") : QStringLiteral("missing"));
    }
    for (const QString &library : loadedLibraries())
        print("library", library);
    return 0;
}
