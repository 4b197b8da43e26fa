#include "commandhelp.h"

namespace {

constexpr Text kOptionList{"options:", "选项："};

} // namespace

QStringList helpLines(const CommandHelp &help, const std::vector<Option> &options, Language language)
{
    QStringList lines{inLanguage(help.usage, language), QString(), inLanguage(help.purpose, language), QString(),
                      inLanguage(kOptionList, language)};
    lines += optionLines(options, language);
    lines += {QString(), inLanguage(help.statuses, language)};
    return lines;
}
