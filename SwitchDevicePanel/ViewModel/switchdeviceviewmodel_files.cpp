// Operations on the whole device: saving and clearing its configuration, exporting it to a file, replaying one.
#include "switchdeviceviewmodel.h"
#include "switchdeviceviewmodel_p.h"

#include "commandblock.h"
#include "debuglog.h"

#include <switchdevicebll/switchdeviceconfig.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTextStream>
#include <QtCore/QUrl>

using ovra::bll::SwitchDeviceConfig;

void SwitchDeviceViewModel::saveSwitchDeviceCmd()
{
    setWaitingResponse(true);
    enqueueCommand(lxTr(QStringLiteral("保存配置")),
                   commandBlock(SwitchDeviceConfig::getInstance()->getSaveCommands()));
}

void SwitchDeviceViewModel::clearAllConfig()
{
    SwitchDeviceConfig *const config = SwitchDeviceConfig::getInstance();
    // The list comes first: it is about the whole device, and the slot counts for what follows only.
    const QStringList commands = config->getClearLinkAggregationCommands();
    config->setBoardNum(_d->inventory.slotNumber);
    enqueueCommand(lxTr(QStringLiteral("清空配置")), commandBlock(commands));
}

void SwitchDeviceViewModel::exportSwitchInfo()
{
    ConfigurationFiles &files = _d->files;
    if (files.isExportRunning || files.exportPath.isEmpty())
        return;
    QFile file(files.exportPath);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        file.resize(0);
        file.close();
    }
    files.isExportRunning = true;
    setWaitingResponse(true);
    const QStringList commands = SwitchDeviceConfig::getInstance()->getExportCommands();
    if (commands.isEmpty()) {
        files.isExportRunning = false;
        return;
    }
    const QString label = lxTr(QStringLiteral("导出配置"));
    const ExportBlocks blocks = exportBlocks(commands);
    for (int i = 0; i < blocks.numbered.size(); ++i) {
        enqueueCommand(label + QString::number(i), blocks.numbered[i]);
        logDebug() << "current cmd" << blocks.numbered[i];
    }
    if (!blocks.rest.isEmpty())
        enqueueCommand(label, blocks.rest);
}

void SwitchDeviceViewModel::setExportPath(const QString &path)
{
    _d->files.exportPath = path;
}

QString SwitchDeviceViewModel::getExportPath()
{
    return _d->files.exportPath;
}

void SwitchDeviceViewModel::importSwitchInfo(const QString &path)
{
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly | QIODevice::Text)) // Qt warns of a file without a name
        return;
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    QStringList commands;
    QString line;
    while (stream.readLineInto(&line)) {
        const QString command = line.trimmed();
        if (!command.isEmpty())
            commands.append(command);
    }
    if (!commands.isEmpty())
        enqueueCommand(lxTr(QStringLiteral("文件配置")), commandBlock(commands));
}

QString SwitchDeviceViewModel::getDefaultConfigPath()
{
    QString path = QCoreApplication::applicationDirPath() + QStringLiteral("/../share/switchconfig");
    if (QFileInfo::exists(path))
        path = QFileInfo(path).canonicalFilePath();
    return QUrl::fromLocalFile(path).toString();
}
