#pragma once

#include "commandgrammar.h"
#include "interfacenames.h"

#include <simulator/simulatoroptions.h>
#include <simulator/switchstate.h>

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>
#include <QtCore/QString>

#include <array>
#include <vector>

namespace simulator {

/// Answers to a command line that cannot be carried out. All but `permission` stand below a caret.
struct ErrorTexts
{
    QByteArray unrecognized, incomplete, tooMany, wrong, ambiguous, permission;
};

/// What the console says outside the command line. {name}, {time} and the like are filled in.
struct SessionTexts
{
    QByteArray idle;        ///< the idle banner
    QByteArray loginHeader; ///< behind Enter at the idle banner
    QByteArray userPrompt, userPromptLower, passwordPrompt;
    std::array<QByteArray, 4> failures; ///< by FailureText
    QByteArray locked;
    QByteArray welcome; ///< between a right password and the first prompt
    QByteArray neitherYesNorNo;
    QByteArray initialPassword, oldPassword, newPassword, confirmPassword, passwordsDiffer, passwordTooShort,
        passwordChanged;
    QByteArray firstLogin, firstPassword, firstConfirm;
    QByteArray insecureConfiguration;
    QByteArray automaticConfiguration; ///< repeated while there is no startup configuration; empty: never
};

/// One piece of what a booting switch writes, at a part of the boot time in thousandths.
struct BootStep
{
    int thousandths;
    QByteArray text;
};

enum class LogKind { PortDown, PortUp, VlanInterfaceDown, VlanInterfaceUp, Saved, LoggedIn, Chatter };

/// How log lines look. Heads and texts: {time}, {name}, {n} (a serial number), {port}.
struct LogTexts
{
    QString timeFormat;
    QByteArray head;                  ///< empty kinds of text are not logged
    std::array<QByteArray, 6> events; ///< by LogKind, Chatter left out
    QByteArrayList chatter;           ///< whole lines with their heads
    int wrapAt = 0;                   ///< column at which lines are broken; 0: never
};

struct MaintenanceTexts
{
    QByteArray saveQuestion, saving, saved;
    QByteArray resetQuestion, resetting, reset;
    QByteArray comparing, rebootUnsavedQuestion, rebootQuestion, rebooting;
    QByteArray factoryQuestion, factorySecondQuestion;
    QByteArray uncommittedQuestion;
};

/// Why a command that is written well is not carried out.
struct RefusalTexts
{
    QByteArray snoopingOff, snoopingOn, noVlan, defaultVlan;
    QByteArray isMember, notAccess, notTrunk, renewDefaults, notDefault, otherSpeed, fullTrunk, noTrunk,
        trunkHasMembers;
    QByteArray noObservePort, observePortUsed, noMirrorGroup;
    QByteArray noNegotiation, negotiating, noPower;
};

/// Short answers of commands that succeed.
struct AnswerTexts
{
    QByteArray systemView, pagingOff, slowBegin, slowEnd, monitorOn, monitorOff;
};

/// A switch family's console language: words, shapes and commands, all of them data.
struct Dialect
{
    Family family = Family::Huawei;
    QByteArray factoryName;
    std::vector<InterfaceType> interfaces;
    LinkType defaultLinkType = LinkType::Access;
    QByteArray groupPrompt; ///< of the view of several ports
    QByteArray startupFile;
    ErrorTexts errors;
    SessionTexts session;
    LogTexts log;
    MaintenanceTexts maintenance;
    RefusalTexts refusals;
    AnswerTexts answers;
    std::vector<BootStep> boot;
    std::vector<CommandRow> commands;
    QByteArrayList configurationHead; ///< lines above a configuration
    /// The configuration in its order. Lines of a section without a header stand at the margin.
    std::vector<OtherSection> (*sections)(const ConsoleSession &, const SwitchConfiguration &) = nullptr;
    SwitchConfiguration (*factoryConfiguration)(const SimulatorOptions &, const SwitchHardware &) = nullptr;
};

/// The dialect of the options' family, with the variations that the options ask for.
Dialect makeDialect(const SimulatorOptions &options);

Dialect huaweiDialect(const SimulatorOptions &options);
Dialect huaweiSubDialect(const SimulatorOptions &options);
Dialect hua3Dialect(const SimulatorOptions &options);

} // namespace simulator
