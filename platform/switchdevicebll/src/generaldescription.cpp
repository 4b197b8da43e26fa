#include "generaldescription.h"

namespace ovra {
namespace bll {

namespace {

SessionFacts generalFacts()
{
    SessionFacts facts;
    facts.prompts = {{true, "<", ">", {}}, {false, "[", "]", "~*"}};
    facts.promptNameCharacters = ".-_/:@()";
    facts.promptPrefixes = {"(M)", "HRP_A", "HRP_M", "HRP_S"};
    facts.userNamePrompts = {"Username:", "login:"};
    facts.passwordPrompts = {"Password:"};
    facts.failureTexts = {"Authentication fail", "authentication failed",   "Username or password error",
                          "Login incorrect",     "The password is invalid", "Invalid password"};
    facts.pressEnterTexts = {"Press ENTER"};
    facts.interruptTexts = {"Automatic configuration is running"};
    facts.pagerTexts = {"---- More ----"};
    facts.pagerErasures = {PagerErasure::CursorLeft, PagerErasure::CarriageReturn, PagerErasure::Backspace};
    facts.errorTexts = {"Error:", "Error[", "% "};
    facts.questionEndings = {"[Y/N]:",    "[Y/N]",     "[y/n]:",       "[y/n]",
                             "(y/n)[n]:", "(y/n)[y]:", "/C(cancel)]:", "press the enter key):"};
    facts.questions = {{{}, "Change now?", "N"}};
    return facts;
}

ReplyRule replaceAtLineStart(const char *text, const char *with)
{
    ReplyRule rule;
    rule.text = text;
    rule.with = with;
    rule.atLineStart = true;
    return rule;
}

} // namespace

std::shared_ptr<const DeviceDescription> generalDescription()
{
    static const auto description = [] {
        auto made = std::make_shared<DeviceDescription>();
        made->session = generalFacts();
        made->replyRules = {replaceAtLineStart("username:", "Username:"), replaceAtLineStart("login:", "Username:"),
                            replaceAtLineStart("Login:", "Username:"), replaceAtLineStart("password:", "Password:")};
        return std::shared_ptr<const DeviceDescription>(std::move(made));
    }();
    return description;
}

} // namespace bll
} // namespace ovra
