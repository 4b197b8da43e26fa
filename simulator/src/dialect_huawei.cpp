#include "commands_huawei.h"
#include "configuration_huawei.h"
#include "dialect.h"

namespace simulator {

namespace {

using Kind = InterfaceKind;

ErrorTexts errorTexts()
{
    return {"Error: Unrecognized command found at '^' position.",
            "Error: Incomplete command found at '^' position.",
            "Error:Too many parameters found at '^' position.",
            "Error: Wrong parameter found at '^' position.",
            "Error: Ambiguous command found at '^' position.",
            "Error: You do not have permission to run the command or the command is incomplete."};
}

SessionTexts sessionTexts()
{
    SessionTexts texts;
    texts.idle = "\r\n\r\n\r\n\r\n\r\n\r\r\nUser interface con0 is available\r\n\r\n\r\n\r\nPlease Press ENTER.\r\n";
    texts.loginHeader = "\r\n\r\nLogin authentication\r\n\r\n\r\n";
    texts.userPrompt = texts.userPromptLower = "Username:";
    texts.passwordPrompt = "Password:";
    texts.failures = {QByteArray("Authentication fail\0\r\n", 22), "Error: Username or password error.\r\n",
                      "Error: The password is invalid.\r\n", "Error: Authentication fail\r\n"};
    texts.locked = "Error: The line is locked for a while because of repeated failures.\r\n";
    texts.welcome =
        "\r\nInfo: The max number of VTY users is 15, the number of current VTY users online is 0, and total number of "
        "terminal users is 1.\r\n      The current login time is {time}+00:00.\r\n";
    texts.neitherYesNorNo = "Error: Please choose 'YES' or 'NO' first before pressing 'Enter'. [Y/N]:";
    texts.initialPassword = "\r\nWarning: The initial password poses security risks.\r\n"
                            "The password needs to be changed. Change now? [Y/N]:";
    texts.oldPassword = "Please enter old password:";
    texts.newPassword = "Please enter new password:";
    texts.confirmPassword = "Please confirm new password:";
    texts.passwordsDiffer = "Error: The passwords do not match.\r\n";
    texts.passwordTooShort = "Error: The password must have 8 to 16 characters.\r\n";
    texts.passwordChanged = "The password has been changed successfully.\r\n";
    texts.firstLogin = "\r\n\r\nPlease configure the login password (8-16)\r\n";
    texts.firstPassword = "Enter Password:";
    texts.firstConfirm = "Confirm Password:";
    texts.insecureConfiguration =
        "\r\nWarning: There are security risks in the configuration file. You are advised to save the "
        "configuration immediately. Save now? [Y/N]:";
    return texts;
}

LogTexts logTexts()
{
    LogTexts texts;
    texts.timeFormat = QStringLiteral("MMM d yyyy hh:mm:ss");
    texts.head = "{time}+00:00 {name} %%01";
    texts.events = {
        "IFPDT/4/IF_STATE(l)[{n}]:Interface {port} has turned into DOWN state.",
        "IFPDT/4/IF_STATE(l)[{n}]:Interface {port} has turned into UP state.",
        "IFNET/4/LINK_STATE(l)[{n}]:The line protocol IP on the interface {port} has entered the DOWN state.",
        "IFNET/4/LINK_STATE(l)[{n}]:The line protocol IP on the interface {port} has entered the UP state.",
        "CFM/4/SAVE_FILE(l)[{n}]:When deciding whether to save the configuration to the file, the user chose Y.",
        ""};
    texts.chatter = {
        "{time}+00:00 {name} %%01ENTITYTRAP/4/OPTICALINVALID(l)[{n}]:The optical module is not certified by the "
        "vendor, its diagnosis may be incomplete.",
        "{time}+00:00 {name} L2IFPPI/4/MFLPVLANALARM:OID 1.3.6.1.4.1.2011.5.25.160.3.7 MAC move detected, VLANID = "
        "20, MacAddress = 00e0-fc12-3457, Original-Port = Eth-Trunk1. Please check the network.",
        "{time}+00:00 {name} %%01SSH/4/SSH_FAIL(l)[{n}]:Failed to login through SSH. (IP=10.0.0.7, UserName=root, "
        "Times=1).",
        "{time}+00:00 {name} %%01SNPG/4/DISCARD(l)[{n}]:IGMP messages were discarded because of their rate."};
    texts.wrapAt = 80;
    return texts;
}

MaintenanceTexts maintenanceTexts()
{
    MaintenanceTexts texts;
    texts.saveQuestion = "The current configuration will be written to the device.\r\nAre you sure to continue?[Y/N]";
    texts.saving = "Now saving the current configuration to the slot 0.";
    texts.saved = "\r\nSave the configuration successfully.\r\n";
    texts.resetQuestion = "Warning: The action will delete the saved configuration in the device.\r\n"
                          "The configuration will be erased to reconfigure. Continue? [Y/N]:";
    texts.resetting = "Warning: Now clearing the configuration in the device.\r\n";
    texts.reset = "\r\nInfo: Succeeded in clearing the configuration in the device.\r\n";
    texts.comparing = "Info: The system is now comparing the configuration, please wait.\r\n";
    texts.rebootUnsavedQuestion =
        "Warning: The configuration has been modified, and it will be saved to the next startup "
        "saved-configuration file flash:/vrpcfg.zip. Continue? [Y/N]:";
    texts.rebootQuestion = "System will reboot! Continue?[Y/N]:";
    texts.rebooting = "Info: system is rebooting, please wait...\r\n";
    texts.factoryQuestion =
        "Warning: The command will delete all the configurations and files in the device, and restart it. "
        "Continue? [Y/N]:";
    texts.factorySecondQuestion =
        "Warning: The device will be restored to the factory configuration. Are you sure? [Y/N]:";
    texts.uncommittedQuestion = "Warning: Uncommitted configurations found. Are you sure to commit them before "
                                "exiting? [Y(yes)/N(no)/C(cancel)]:";
    return texts;
}

RefusalTexts refusalTexts()
{
    RefusalTexts texts;
    texts.snoopingOff = "Error: Please enable IGMP snooping in the global view first.";
    texts.snoopingOn = "Error: Please disable IGMP snooping in the VLAN first.";
    texts.noVlan = "Error: The VLAN does not exist.";
    texts.defaultVlan = "Error: The default VLAN can not be deleted.";
    texts.isMember = "Error: The interface is a member of an Eth-Trunk; the operation is not allowed.";
    texts.notAccess = "Error: The link type of the interface is not access.";
    texts.notTrunk = "Error: The link type of the interface is not trunk.";
    texts.renewDefaults = "Error: Please renew the default configurations.";
    texts.notDefault = "Error: Please remove the configurations of interface {port} first.";
    texts.otherSpeed = "Error: The type of the interface differs from that of the Eth-Trunk's members.";
    texts.fullTrunk = "Error: The number of members has reached the maximum of the Eth-Trunk.";
    texts.noTrunk = "Error: The Eth-Trunk does not exist.";
    texts.trunkHasMembers = "Error: The Eth-Trunk has members. Please delete them first.";
    texts.noObservePort = "Error: The observe-port does not exist.";
    texts.observePortUsed = "Error: The observe-port is being used.";
    texts.noNegotiation = "Error: The interface does not support the configuration of auto-negotiation.";
    texts.negotiating = "Error: Please disable auto-negotiation first.";
    texts.noPower = "Error: The interface does not support PoE.";
    return texts;
}

AnswerTexts answerTexts()
{
    return {"Enter system view, return user view with Ctrl+Z.",
            "Info: The configuration takes effect on the current user terminal interface only.",
            "Info: This operation may take a few seconds. Please wait for a moment...",
            "done.",
            "Info: Current terminal monitor is on.",
            "Info: Current terminal monitor is off."};
}

std::vector<BootStep> bootSteps()
{
    return {{2, QByteArray("\xff\x00\xff\xff\x00", 5)},
            {30, "\r\n\r\nBIOS LOADING ...\r\nCopyright (c) 2008-2020 HUAWEI TECH CO., LTD.\r\n(Ver215, Mar 12 2020, "
                 "17:20:33)\r\n\r\n"},
            {80, "Press Ctrl+B to break auto startup ... 3"},
            {90, "\b2"},
            {100, "\b1"},
            {110, "\b0\r\nNow boot from flash:/{board}.cc,\r\n\r\n"},
            {200, "Decompressing VxWorks ........"},
            {300, "...........done\r\nInitializing BSP ..........done\r\nStarting the system now .......\r\n"},
            {500, "\r\nPress any key to get started?...\r\n<IMG version: V200R019C10SPC500>\r\n"},
            {800, "\r\nRecover configuration..."},
            {950, "OK!\r\n"}};
}

std::vector<InterfaceType> logicalInterfaces()
{
    return {{Kind::Management, "MEth", "MEth", "0/0/", 1, 1},
            {Kind::Trunk, "Eth-Trunk", "Eth-Trunk", "", 0, 127},
            {Kind::Vlan, "Vlanif", "Vlanif", "", 1, kLastVlan},
            {Kind::Null, "NULL", "NULL", "", 0, 0}};
}

Dialect commonDialect(const SimulatorOptions &options)
{
    Dialect dialect;
    dialect.family = options.family;
    dialect.interfaces = logicalInterfaces();
    dialect.groupPrompt = "port-group";
    dialect.startupFile = "flash:/vrpcfg.zip";
    dialect.errors = errorTexts();
    dialect.session = sessionTexts();
    dialect.log = logTexts();
    dialect.maintenance = maintenanceTexts();
    dialect.refusals = refusalTexts();
    dialect.answers = answerTexts();
    dialect.boot = bootSteps();
    dialect.commands = huaweiCommands(options.model.poe);
    dialect.sections = huaweiSections;
    dialect.factoryName = "HUAWEI";
    return dialect;
}

void addPorts(Dialect &dialect, const std::vector<InterfaceType> &ports)
{
    dialect.interfaces.insert(dialect.interfaces.begin(), ports.begin(), ports.end());
}

} // namespace

Dialect huaweiDialect(const SimulatorOptions &options)
{
    Dialect dialect = commonDialect(options);
    addPorts(dialect, {{Kind::Gigabit, "GigabitEthernet", "GE", "0/0/"},
                       {Kind::TenGigabit, "XGigabitEthernet", "XGE", "0/0/"},
                       {Kind::FortyGigabit, "40GE", "40GE", "0/0/"}});
    dialect.defaultLinkType = LinkType::Hybrid;
    dialect.factoryConfiguration = huaweiFactoryConfiguration;
    if (options.versionLine)
        dialect.configurationHead << "[V200R009C00SPC500]";
    return dialect;
}

Dialect huaweiSubDialect(const SimulatorOptions &options)
{
    Dialect dialect = commonDialect(options);
    const QByteArray gigabit = options.multiGigabitNames ? "MultiGE" : "GE";
    addPorts(dialect, {{Kind::Gigabit, gigabit, gigabit, "0/0/"},
                       {Kind::TenGigabit, "10GE", "10GE", "0/0/"},
                       {Kind::FortyGigabit, "40GE", "40GE", "0/0/"}});
    dialect.defaultLinkType = LinkType::Access;
    dialect.factoryConfiguration = huaweiSubFactoryConfiguration;
    const std::vector<CommandRow> own = huaweiSubCommands(options.twoStage);
    dialect.commands.insert(dialect.commands.begin(), own.begin(), own.end());
    if (options.versionLine)
        dialect.configurationHead << "!Software Version V200R019C10SPC500";
    return dialect;
}

} // namespace simulator
