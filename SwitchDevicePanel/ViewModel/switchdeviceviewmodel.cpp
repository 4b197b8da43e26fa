// Construction, destruction and language. The other concerns of the class: switchdeviceviewmodel_properties.cpp,
// _connection.cpp, _queue.cpp, _replies.cpp, _log.cpp, _inventory.cpp, _configuration.cpp, _status.cpp, _files.cpp.
#include "switchdeviceviewmodel.h"
#include "switchdeviceviewmodel_p.h"

#include <consoleportcomm/consoleportcomm.h>
#include <lxtranslate/translator.h>
#include <switchdevicebll/switchdevice.h>
#include <switchdevicebll/translatemanage.h>
#include <zrextensionsystem/pluginmanager.h>

#include <QtCore/QMutexLocker>

namespace {

SwitchDeviceViewModel::LanguageType languageOfCode(const QString &code)
{
    // Any code but "en" is Chinese, the language of the source texts.
    return code == QLatin1String("en") ? SwitchDeviceViewModel::En : SwitchDeviceViewModel::Zh;
}

// The bare names stand in the signals' signatures; receivers on other threads and signal spies look them up by these.
void registerSignalTypes()
{
    qRegisterMetaType<SwitchDeviceViewModel::ConnectType>("ConnectType");
    qRegisterMetaType<SwitchDeviceViewModel::ParseState>("ParseState");
}

} // namespace

SwitchDeviceViewModel::SwitchDeviceViewModel(QObject *parent)
    : QObject(parent)
    , _d(new Private)
{
    registerSignalTypes();
    _d->self->viewModel = this;
    _d->translator = OVRA::BLL::TranslateManage::getInstance()->getTranslator();
    _d->packetAnalysis = std::make_unique<PacketAnalysisViewModel>();

    startLogRouting();

    _d->device = ovra::bll::SwitchDevice::getInstance();
    connect(this, &SwitchDeviceViewModel::signal_loadLanguage, _d->device,
            &ovra::bll::SwitchDevice::signal_loadLanguage);
    connect(_d->device, &ovra::bll::SwitchDevice::signal_languageChange, this,
            &SwitchDeviceViewModel::slot_languageChange);
    connect(this, &SwitchDeviceViewModel::signal_threadFinished, this, &SwitchDeviceViewModel::slot_threadFinished);
    connect(this, &SwitchDeviceViewModel::signal_deviceCommunicate, this,
            &SwitchDeviceViewModel::slot_deviceCommunicate);
    connect(this, &SwitchDeviceViewModel::parseStateChanged, this, &SwitchDeviceViewModel::slot_handleParseState);

    loadLanguage(OVRA::BLL::TranslateManage::getInstance()->getLanguageTypeFromConfig());

    ConsoleportComm::startComThread();
    for (QThread *&thread : _d->auxiliaryThreads) {
        thread = new QThread(this);
        thread->start();
    }
    startLogBatching();
}

SwitchDeviceViewModel::~SwitchDeviceViewModel()
{
    {
        // An opening in progress and a read-back go on without this object.
        const QMutexLocker locker(&_d->self->lock);
        _d->self->viewModel = nullptr;
    }
    stopLogRouting();
    stopLogBatching();
    for (QThread *&thread : _d->auxiliaryThreads) {
        thread->quit();
        thread->wait(); // nothing ever runs on it but its event loop
        delete thread;
        thread = nullptr;
    }
    _d->packetAnalysis.reset();
    ConsoleportComm::stopComThread();
    disconnectDevice();
}

void SwitchDeviceViewModel::loadLanguage(const QString &code)
{
    emit signal_loadLanguage(code);
    _d->languageType = languageOfCode(code);
}

void SwitchDeviceViewModel::slot_languageChange(const QString &type)
{
    _d->translator->switchLanguage(type);
    emit changeLanguage();
    _d->languageType = languageOfCode(type);
    emit languageTypeChanged();
}

QString SwitchDeviceViewModel::lxTr(const QString &text) const
{
    return lumen::trans::translate(_d->translator, QStringLiteral("SwitchDevice"), QString(), text);
}

void SwitchDeviceViewModel::setShadowVisible(bool isVisible)
{
    ZR::ExtensionSystem::PluginManager::setShadowVisible(isVisible);
}

PacketAnalysisViewModel *SwitchDeviceViewModel::packetAnalysis() const
{
    return _d->packetAnalysis.get();
}
