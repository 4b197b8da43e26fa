#include "commands_hua3.h"
#include "configuration_hua3.h"
#include "dialect.h"

namespace simulator {

namespace {

using Kind = InterfaceKind;

ErrorTexts errorTexts()
{
    return {" % Unrecognized command found at '^' position.", " % Incomplete command found at '^' position.",
            " % Too many parameters found at '^' position.",  " % Wrong parameter found at '^' position.",
            " % Ambiguous command found at '^' position.",    " Permission denied."};
}

SessionTexts sessionTexts()
{
    SessionTexts texts;
    texts.idle = "\r\n\r\n\r\nLine con0 is available.\r\n\r\n\r\nPress ENTER to get started.\r\n";
    texts.loginHeader = "\r\n\r\n";
    texts.userPrompt = "Username:";
    texts.userPromptLower = "login: ";
    texts.passwordPrompt = "Password: ";
    texts.failures = {QByteArray("AAA authentication failed.\0\r\n", 29), "% Login failed: authentication failed.\r\n",
                      "Invalid password.\r\n", "AAA authentication failed.\r\n"};
    texts.locked = "% Too many failures, the line is blocked for a while.\r\n";
    texts.welcome = "\r\n******************************************************************************\r\n"
                    "* Copyright (c) 2004-2020 New H3C Technologies Co., Ltd. All rights reserved.*\r\n"
                    "* Without the owner's prior written consent,                                 *\r\n"
                    "* no decompiling or reverse-engineering shall be allowed.                    *\r\n"
                    "******************************************************************************\r\n\r\n";
    texts.neitherYesNorNo = "Please input Y or N. [Y/N]:";
    texts.initialPassword = "First login or password reset. For security reason, you need to change your password.\r\n";
    texts.newPassword = "Enter new password:";
    texts.confirmPassword = "Re-enter new password:";
    texts.passwordsDiffer = "The passwords do not match.\r\n";
    texts.passwordTooShort = "The password must have 8 to 16 characters.\r\n";
    texts.passwordChanged = "The password has been changed.\r\n";
    texts.firstLogin = "\r\n\r\nPlease set the login password (8-16).\r\n";
    texts.firstPassword = "Enter new password:";
    texts.firstConfirm = "Re-enter new password:";
    texts.insecureConfiguration = "\r\nThere are security risks in the configuration file. Continue? [Y/N]:";
    texts.automaticConfiguration = "\r\nAutomatic configuration is running, press CTRL_C or CTRL_D to break.\r\n";
    return texts;
}

LogTexts logTexts()
{
    LogTexts texts;
    texts.timeFormat = QStringLiteral("MMM d hh:mm:ss:zzz yyyy");
    texts.head = "%{time} {name} ";
    texts.events = {"IFNET/3/PHY_UPDOWN: Physical state on the interface {port} changed to down.",
                    "IFNET/3/PHY_UPDOWN: Physical state on the interface {port} changed to up.",
                    "IFNET/5/LINK_UPDOWN: Line protocol state on the interface {port} changed to down.",
                    "IFNET/5/LINK_UPDOWN: Line protocol state on the interface {port} changed to up.",
                    "CFGMAN/5/CFGMAN_OPTCOMPLETION: Operation completed.",
                    "SHELL/5/SHELL_LOGIN: Console logged in from con0."};
    texts.chatter = {
        "%{time} {name} OPTMOD/4/MODULE_ALARM: The transceiver is not certified, its diagnosis may be incomplete.",
        "%{time} {name} MAC/4/MAC_MOVE: MAC address 00e0-fc12-3457 in VLAN 20 has moved between two ports.",
        "%{time} {name} SSHS/6/SSHS_LOG: Authentication of user root from 10.0.0.7 did not succeed."};
    return texts;
}

MaintenanceTexts maintenanceTexts()
{
    MaintenanceTexts texts;
    texts.saveQuestion = "The current configuration will be written to the device. Are you sure? [Y/N]:";
    texts.saving = "Validating file. Please wait";
    texts.saved = "\r\nSaved the current configuration to mainboard device successfully.\r\n";
    texts.resetQuestion = "The saved configuration file will be erased. Are you sure? [Y/N]:";
    texts.resetting = "Configuration file in flash: is being cleared.\r\nPlease wait ...\r\n";
    texts.reset = "\r\nMainBoard:\r\n Configuration file is cleared.\r\n";
    texts.comparing =
        "Start to check configuration with next startup configuration file, please wait.........DONE!\r\n";
    texts.rebootUnsavedQuestion =
        "Current configuration may be lost after the reboot, save current configuration? [Y/N]:";
    texts.rebootQuestion = "This command will reboot the device. Continue? [Y/N]:";
    texts.rebooting = "Now rebooting, please wait...\r\n";
    texts.factoryQuestion =
        "This command will restore the system to the factory default configuration and clear the operation "
        "data. Continue [Y/N]:";
    return texts;
}

RefusalTexts refusalTexts()
{
    RefusalTexts texts;
    texts.snoopingOff = " Please enable IGMP snooping globally first.";
    texts.snoopingOn = " Please disable IGMP snooping in the VLAN first.";
    texts.noVlan = " The VLAN does not exist.";
    texts.defaultVlan = " The default VLAN can not be deleted.";
    texts.isMember = " The interface is already in an aggregation group.";
    texts.notAccess = " The link type of the interface is not access.";
    texts.notTrunk = " The link type of the interface is not trunk.";
    texts.otherSpeed = " The interface differs from the members of the aggregation group.";
    texts.fullTrunk = " The aggregation group is full.";
    texts.noTrunk = " The aggregation group does not exist.";
    texts.noObservePort = texts.noMirrorGroup = " The mirroring group does not exist.";
    texts.noPower = " The interface does not support PoE.";
    return texts;
}

std::vector<BootStep> bootSteps()
{
    return {{2, QByteArray("\xff\x00\xff", 3)},
            {20, "\r\n\r\nStarting......\r\nPress Ctrl+D to access BASIC BOOT MENU\r\n"},
            {120, "\r\n********************************************************************************\r\n"
                  "*                                                                              *\r\n"
                  "*                    H3C {board} BOOTROM, Version 147\r\n"
                  "*                                                                              *\r\n"
                  "********************************************************************************\r\n"},
            {200, "Press Ctrl+B to access EXTENDED BOOT MENU...0\r\nLoading the main image files...\r\n"},
            {400, ".............................................................Done.\r\n"},
            {800, "System image is starting...\r\nCryptographic algorithms tests passed.\r\n"}};
}

} // namespace

Dialect hua3Dialect(const SimulatorOptions &options)
{
    Dialect dialect;
    dialect.family = Family::Hua3;
    dialect.factoryName = "H3C";
    dialect.interfaces = {{Kind::Gigabit, "GigabitEthernet", "GE", "1/0/"},
                          {Kind::TenGigabit, "Ten-GigabitEthernet", "XGE", "1/0/"},
                          {Kind::FortyGigabit, "FortyGigE", "FGE", "1/0/"},
                          {Kind::Management, "M-GigabitEthernet", "M-GE", "0/0/", 0, 0},
                          {Kind::Trunk, "Bridge-Aggregation", "BAGG", "", 1, 128},
                          {Kind::Vlan, "Vlan-interface", "Vlan", "", 1, kLastVlan},
                          {Kind::Null, "NULL", "NULL", "", 0, 0}};
    dialect.defaultLinkType = LinkType::Access;
    dialect.groupPrompt = "if-range";
    dialect.startupFile = "flash:/startup.cfg";
    dialect.errors = errorTexts();
    dialect.session = sessionTexts();
    dialect.log = logTexts();
    dialect.maintenance = maintenanceTexts();
    dialect.refusals = refusalTexts();
    dialect.answers = {"System View: return to User View with Ctrl+Z.",
                       {},
                       {},
                       {},
                       "The current terminal is enabled to display logs.",
                       "The current terminal is disabled to display logs."};
    dialect.boot = bootSteps();
    dialect.commands = hua3Commands(options.model.poe);
    dialect.sections = hua3Sections;
    dialect.factoryConfiguration = hua3FactoryConfiguration;
    return dialect;
}

} // namespace simulator
