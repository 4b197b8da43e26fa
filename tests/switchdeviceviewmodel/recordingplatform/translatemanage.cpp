#include "scriptedplatform.h"

#include <switchdevicebll/switchdevice.h>
#include <switchdevicebll/translatemanage.h>

using recording::script;

namespace OVRA {
namespace BLL {

TranslateManage *TranslateManage::getInstance()
{
    static TranslateManage *const manager = new TranslateManage;
    return manager;
}

lumen::trans::Translator *TranslateManage::getTranslator()
{
    _translator.switchLanguage(getLanguageTypeFromConfig());
    return &_translator;
}

QString TranslateManage::getLanguageTypeFromConfig()
{
    const std::lock_guard<std::mutex> guard(script().lock);
    return script().language;
}

bool TranslateManage::setLanguage(const QString &code)
{
    RecordingPlatform::instance().setLanguage(code);
    _translator.switchLanguage(code);
    emit ovra::bll::SwitchDevice::getInstance()->signal_languageChange(code);
    return true;
}

} // namespace BLL
} // namespace OVRA
