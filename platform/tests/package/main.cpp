#include <basecomm/basecomm.h>
#include <consoleportcomm/consoleportcomm.h>
#include <lxtranslate/translator.h>
#include <ptpv2parser/ptpv2parser.h>
#include <switchdevicebll/switchdevice.h>
#include <switchdevicebll/translatemanage.h>
#include <zrextensionsystem/pluginmanager.h>

#include <Packet.h>
#include <PcapFileDevice.h>

#include <QtCore/QCoreApplication>

#include <cstdio>

// Prints one line when everything answers.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    ConsoleportComm::startComThread();
    const BaseComm *const comm = ovra::bll::SwitchDevice::getInstance()->getCommPtr();
    ZR::ExtensionSystem::PluginManager::setShadowVisible(false);
    const QString text = lumen::trans::translate(OVRA::BLL::TranslateManage::getInstance()->getTranslator(),
                                                 QStringLiteral("SwitchDevice"), QString(), QStringLiteral("vlan"));
    pcpp::PcapFileReaderDevice reader("/no/such/file");
    pcpp::RawPacket raw;
    pcpp::Packet packet(&raw);
    PTPv2::PTPv2Parser parser;
    const bool asExpected = !comm->getIsConnected()
                            && !ZR::ExtensionSystem::PluginManager::instance()->isShadowVisible() && !text.isEmpty()
                            && !reader.open() && !parser.parsePacket(packet);
    ConsoleportComm::stopComThread();
    std::puts(asExpected ? "the platform answers" : "something is wrong");
    return asExpected ? 0 : 1;
}
