#include "querycommand.h"

#include "switchcommand.h"
#include "userio.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <algorithm>

namespace {

struct Kind
{
    const char *name;
    const char *label; // of the panel's page, in the view model's own source language
};

constexpr Kind kKinds[] = {
    {"vlan", "vlan"},     {"multicast", "组播"},     {"ports", "端口状态监测"},    {"speed", "接口速率"},
    {"optics", "光模块"}, {"ip-conflict", "IP冲突"}, {"forwarding", "组播转发表"},
};

constexpr Text kUnknownKind{"there is no query '%1': %2", "没有名为“%1”的查询：可用 %2"};
constexpr Text kNotNumber{"--multicast-vlan takes a whole number, not '%1'", "--multicast-vlan 需要整数，不能是“%1”"};
constexpr Text kNotTaken{"--multicast-vlan %1 is not taken: 1 to 4093", "--multicast-vlan %1 无效：1至4093"};
constexpr Text kNothing{"the switch has nothing to tell about that", "交换机没有这方面的信息"};

const SwitchCommand &queryCommand()
{
    static const SwitchCommand kCommand{
        "query",
        {{"usage: switchpanel query KIND --port P [OPTIONS]", "用法：switchpanel query 种类 --port P [选项]"},
         {"Asks a switch for one kind of status and prints its answer.\n"
          "KIND: vlan, multicast, ports, speed (of the ports), optics (modules), ip-conflict, forwarding (of "
          "multicast).",
          "查询交换机的一种状态并输出结果。\n"
          "种类：vlan、multicast（组播）、ports（端口状态）、speed（接口速率）、optics（光模块）、ip-"
          "conflict（IP冲突）、\n"
          "forwarding（组播转发表）。"},
         kSwitchStatuses},
        {{"multicast-vlan",
          "ID",
          {"the VLAN that 'multicast' asks about (default 1)", "multicast 查询的VLAN（默认1）"}},
         {"json", nullptr, {"print a JSON document", "输出JSON文档"}}},
        std::chrono::seconds(120),
        true,
        1,
        {"query needs to know what to ask for: vlan, multicast, ports, speed, optics, ip-conflict, forwarding",
         "query 缺少种类：vlan、multicast、ports、speed、optics、ip-conflict、forwarding"}};
    return kCommand;
}

const Kind *findKind(const QString &name)
{
    const auto *const found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                           [&name](const Kind &kind) { return name == QLatin1String(kind.name); });
    return found == std::end(kKinds) ? nullptr : found;
}

QString kindNames()
{
    QStringList names;
    for (const Kind &kind : kKinds)
        names.append(QLatin1String(kind.name));
    return names.join(QStringLiteral(", "));
}

// Sets the VLAN where one is given; what is wrong with it, or nothing.
QString takeVlan(const Arguments &arguments, SwitchDeviceViewModel &viewModel, Language language)
{
    if (!arguments.has("multicast-vlan"))
        return {};
    bool isNumber = false;
    const QString text = arguments.value("multicast-vlan");
    const int id = text.toInt(&isNumber);
    if (!isNumber)
        return inLanguage(kNotNumber, language, {text});
    viewModel.setMulticastVlanId(id);
    return viewModel.multicastVlanId() == id ? QString() : inLanguage(kNotTaken, language, {text});
}

ExitStatus print(SwitchSession &session, const Kind &kind, bool isJson)
{
    // The view model reads port listings into its inventory.
    const bool isInventory = qstrcmp(kind.name, "ports") == 0;
    if (isInventory)
        return isJson ? printJson(QJsonDocument(inventoryJson(session.inventory())))
                      : printLines(inventoryLines(session.inventory(), session.language(), Painter(hasColours())));
    if (isJson)
        return printJson(
            QJsonDocument(QJsonObject{{QStringLiteral("kind"), QLatin1String(kind.name)},
                                      {QStringLiteral("lines"), QJsonArray::fromStringList(session.results())}}));
    if (!session.results().isEmpty())
        return printLines(session.results());
    printError(inLanguage(kNothing, session.language()));
    return ExitStatus::Done;
}

} // namespace

ExitStatus runQuery(const QStringList &words, Language language)
{
    const SwitchCommandLine line = readCommandLine(queryCommand(), words, language);
    if (line.end)
        return *line.end;
    const QString name = line.arguments.operands.first();
    const Kind *const kind = findKind(name);
    if (!kind)
        return refuseUsage(queryCommand(), inLanguage(kUnknownKind, line.connection.language, {name, kindNames()}),
                           line.connection.language);
    const SwitchAction ask = [&line, kind](SwitchDeviceViewModel &viewModel) {
        QString error = takeVlan(line.arguments, viewModel, line.connection.language);
        if (error.isEmpty())
            viewModel.queryDeviceStatus(viewModel.lxTr(QString::fromUtf8(kind->label)));
        return error;
    };
    if (line.arguments.has("dry-run"))
        return printDryRun(line, ask);
    return withSwitch(line.connection, [&line, &ask, kind](SwitchSession &session) -> Outcome {
        Outcome outcome = session.run(ask);
        if (outcome.status == ExitStatus::Done || outcome.status == ExitStatus::Refused)
            outcome.status = worse(outcome.status, print(session, *kind, line.arguments.has("json")));
        return outcome;
    });
}
